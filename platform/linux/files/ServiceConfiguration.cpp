#include "platform/ServiceConfiguration.h"

#include "AtomicFile.h"
#include "platform/StrictUrl.h"

#include <QRegularExpression>
#include <QStringDecoder>

#include <cerrno>

namespace quorvane::platform {

namespace {

constexpr qint64 maximumFileSize = 64 * 1024;

/// A host name or IPv4 address, or an IPv6 address in brackets, with an optional port.
bool isHost(const QString &text, bool portAllowed) {
    static const QRegularExpression form(QStringLiteral(
        R"(\A(?:(?=[^:]{1,253}(?::|\z))[a-z0-9](?:[a-z0-9-]{0,61}[a-z0-9])?(?:\.[a-z0-9](?:[a-z0-9-]{0,61}[a-z0-9])?)*|\[[0-9a-f:.]{2,45}\])(?::([0-9]{1,5}))?\z)"));
    const auto match = form.match(text);
    if (!match.hasMatch()) {
        return false;
    }
    const QString port = match.captured(1);
    const bool portFits = port.isNull() || (portAllowed && port.toInt() >= 1 && port.toInt() <= 65535);
    // A number that a URL would turn into another address cannot be requested.
    return portFits && strictUrl("https://" + text.toLatin1() + "/").has_value();
}

/// Sets the value of one key. Returns the problem if the value is not acceptable.
QString setEntry(ServiceConfiguration &configuration, const QString &key, const QString &value) {
    if (key == QStringLiteral("ca_file")) {
        if (!value.isEmpty() && !value.startsWith(u'/')) {
            return QStringLiteral("ca_file is not an absolute path");
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
    // URLs are sent byte for byte, and their normal form has lower-case letters in the host.
    const QString host = value.toLower();
    if (!isHost(host, place != &configuration.reachabilityHost)) {
        return QStringLiteral("%1 is not a host: \"%2\"").arg(key, value);
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
        const QString problem =
            equals < 0 ? QStringLiteral("no \"key = value\" line")
                       : setEntry(configuration, line.left(equals).trimmed(), line.mid(equals + 1).trimmed());
        if (!problem.isNull()) {
            configuration.problems.append(
                QStringLiteral("%1, line %2: %3").arg(path, QString::number(i + 1), problem));
        }
    }
}

} // namespace

ServiceConfiguration ServiceConfiguration::read(const QStringList &paths) {
    ServiceConfiguration configuration;
    for (const QString &path : paths) {
        QByteArray bytes;
        const int failure = readPlainFile(path, maximumFileSize, bytes);
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
