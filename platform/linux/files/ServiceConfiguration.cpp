#include "platform/ServiceConfiguration.h"

#include "AtomicFile.h"
#include "platform/StrictUrl.h"

#include <QStringDecoder>

#include <algorithm>
#include <cerrno>

namespace quorvane::platform {

namespace {

constexpr qint64 largestFile = 64 * 1024;

bool isSmallAlphanumeric(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9');
}

/// A part of a host name between dots.
bool isLabel(QStringView text) {
    return !text.isEmpty() && text.size() <= 63 && isSmallAlphanumeric(text.front()) &&
           isSmallAlphanumeric(text.back()) &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return isSmallAlphanumeric(c) || c == u'-'; });
}

bool isHostName(QStringView text) {
    const auto labels = text.split(u'.');
    return text.size() <= 253 && std::all_of(labels.begin(), labels.end(), isLabel);
}

/// What may be between the brackets of an IPv6 address.
bool isIPv6Text(QStringView text) {
    return text.size() >= 2 && text.size() <= 45 && std::all_of(text.begin(), text.end(), [](QChar c) {
               return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || c == u':' || c == u'.';
           });
}

/// A colon and a port.
bool isPort(QStringView text) {
    const QStringView number = text.mid(1);
    const bool isNumber =
        text.startsWith(u':') && !number.isEmpty() && number.size() <= 5 &&
        std::all_of(number.begin(), number.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    return isNumber && number.toInt() >= 1 && number.toInt() <= 65535;
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
    const QString host = value.toLower();
    if (!isHost(host, place != &configuration.reachabilityHost)) {
        return QStringLiteral("%1 is no host: \"%2\"").arg(key, value);
    }
    *place = host;
    return {};
}

void readLines(ServiceConfiguration &configuration, const QString &path, const QString &text) {
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].section(u'#', 0, 0).trimmed();
        if (line.isEmpty()) {
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        const QString complaint =
            equals < 0 ? QStringLiteral("no \"key = value\" line")
                       : take(configuration, line.left(equals).trimmed(), line.mid(equals + 1).trimmed());
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
        } else if (decoder.hasError()) {
            configuration.problems.append(QStringLiteral("%1 is not UTF-8").arg(path));
        } else {
            readLines(configuration, path, text);
        }
    }
    return configuration;
}

} // namespace quorvane::platform
