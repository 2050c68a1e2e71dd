#include "platform/ServiceConfiguration.h"

#include "platform/Files.h"
#include "platform/StrictUrl.h"

#include <QStringDecoder>

#include <algorithm>
#include <cerrno>

namespace quorvane::platform {

namespace {

constexpr qint64 largestFile = 64 * 1024;

/// White space in a file is what ASCII has of it.
bool isWhite(QChar c) {
    return c == u' ' || (c >= u'\t' && c <= u'\r' && c != u'\n');
}

QString trimmed(const QString &text) {
    const auto begin = std::find_if_not(text.begin(), text.end(), isWhite);
    const auto end = std::find_if_not(text.rbegin(), text.rend(), isWhite).base();
    return begin < end ? QString(begin, end - begin) : QStringLiteral("");
}

/// Large letters of ASCII become small; others are in no host, and stay.
QString inSmallLetters(QString text) {
    for (QChar &c : text) {
        if (c >= u'A' && c <= u'Z') {
            c = QChar(c.unicode() - u'A' + u'a');
        }
    }
    return text;
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool isSmallAlphanumeric(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9');
}

/// A part of a host name between dots.
bool isLabel(QStringView text) {
    return !text.isEmpty() && text.size() <= 63 && isSmallAlphanumeric(text.front()) &&
           isSmallAlphanumeric(text.back()) &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return isSmallAlphanumeric(c) || c == u'-'; });
}

/// A number in its only way of writing.
bool isNumber(QStringView text, int largest) {
    return !text.isEmpty() && text.size() <= 5 && std::all_of(text.begin(), text.end(), isDigit) &&
           (text.size() == 1 || text.front() != u'0') && text.toInt() <= largest;
}

/// Whether the text would be read as the last number of an IPv4 address.
bool endsAnAddress(QStringView label) {
    if (!label.startsWith(QStringLiteral("0x"))) {
        return std::all_of(label.begin(), label.end(), isDigit);
    }
    return std::all_of(label.begin() + 2, label.end(),
                       [](QChar c) { return isDigit(c) || (c >= u'a' && c <= u'f'); });
}

/// A name, or an IPv4 address in its only way of writing.
bool isHostName(QStringView text) {
    const auto labels = text.split(u'.');
    if (text.size() > 253 || !std::all_of(labels.begin(), labels.end(), isLabel)) {
        return false;
    }
    return !endsAnAddress(labels.back()) ||
           (labels.size() == 4 && std::all_of(labels.begin(), labels.end(),
                                              [](QStringView label) { return isNumber(label, 255); }));
}

/// What may be between the brackets of an IPv6 address.
bool isIPv6Text(QStringView text) {
    return text.size() >= 2 && text.size() <= 45 && std::all_of(text.begin(), text.end(), [](QChar c) {
               return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || c == u':' || c == u'.';
           });
}

/// A colon and a port.
bool isPort(QStringView text) {
    return text.startsWith(u':') && isNumber(text.mid(1), 65535) && text != QStringLiteral(":0");
}

/// A host name or IPv4 address, or an IPv6 address in brackets, with an optional port. Without regular
/// expressions: this runs at every start, and their library would be loaded into memory for this alone.
bool isHost(const QString &text, bool portAllowed) {
    const QStringView all(text);
    const bool isBracketed = all.startsWith(u'[');
    const qsizetype end = isBracketed ? all.indexOf(u']') + 1 : all.indexOf(u':');
    const QStringView host = end < 0 ? all : all.left(end);
    const QStringView port = all.mid(host.size());
    const bool hostFits =
        isBracketed ? isIPv6Text(host.mid(1).chopped(host.isEmpty() ? 0 : 1)) : isHostName(host);
    const bool portFits = port.isEmpty() || (portAllowed && isPort(port));
    // Numbers that an URL would write as another address cannot be requested.
    return hostFits && portFits && strictUrl("https://" + text.toLatin1() + "/").has_value();
}

/// Takes one key's value; the complaint when it will not do.
QString take(ServiceConfiguration &configuration, const QString &key, const QString &value) {
    if (key == QStringLiteral("ca_file")) {
        if (!value.isEmpty() && !value.startsWith(u'/')) {
            return QStringLiteral("ca_file is no absolute path");
        }
        configuration.caFile = value;
        return {};
    }
    QString *place = nullptr;
    if (key == QStringLiteral("api_host")) {
        place = &configuration.apiHost;
    } else if (key == QStringLiteral("web_host")) {
        place = &configuration.webHost;
    } else if (key == QStringLiteral("reachability_host")) {
        place = &configuration.reachabilityHost;
    }
    if (place == nullptr) {
        return QStringLiteral("unknown key \"%1\"").arg(key);
    }
    // URLs are sent byte for byte, and their form has small letters in the host.
    const QString host = inSmallLetters(value);
    // The lent address is requested from the web host over IPv4.
    const bool wrongKind = place == &configuration.webHost && host.startsWith(u'[');
    if (wrongKind || !isHost(host, place != &configuration.reachabilityHost)) {
        return QStringLiteral("%1 is no host: \"%2\"").arg(key, value);
    }
    *place = host;
    return {};
}

void readLines(ServiceConfiguration &configuration, const QString &path, const QString &text) {
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = trimmed(lines[i].section(u'#', 0, 0));
        if (line.isEmpty()) {
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        const QString complaint =
            equals < 0 ? QStringLiteral("no \"key = value\" line")
                       : take(configuration, trimmed(line.left(equals)), trimmed(line.mid(equals + 1)));
        if (!complaint.isNull()) {
            configuration.problems.append(
                QStringLiteral("%1, line %2: %3").arg(path, QString::number(i + 1), complaint));
        }
    }
}

} // namespace

ServiceConfiguration ServiceConfiguration::read(const QStringList &paths) {
    ServiceConfiguration configuration;
    for (const QString &path : paths) {
        QByteArray bytes;
        const int failure = readPlainFile(path, largestFile, bytes);
        if (failure == ENOENT || failure == ENOTDIR) {
            continue;
        }
        QStringDecoder decoder(QStringDecoder::Utf8);
        const QString text = decoder(bytes);
        if (failure != 0) {
            configuration.problems.append(QStringLiteral("%1: %2").arg(path, qt_error_string(failure)));
        } else if (decoder.hasError() || bytes.contains('\0')) {
            configuration.problems.append(QStringLiteral("%1 is not UTF-8 text").arg(path));
        } else {
            readLines(configuration, path, text);
        }
    }
    return configuration;
}

} // namespace quorvane::platform
