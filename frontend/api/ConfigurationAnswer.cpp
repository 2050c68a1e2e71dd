#include "ConfigurationAnswer.h"

namespace quorvane {

namespace {

constexpr QLatin1String lineEnd("<br />");

QString nonNull(const QString &text) {
    return text.isEmpty() ? QStringLiteral("") : text;
}

} // namespace

bool ConfigurationAnswer::isArgumentError(const QString &text) {
    return text == QLatin1String("ERR: Argument parsing error");
}

QString ConfigurationAnswer::getCertificate(const QString &text) {
    constexpr QLatin1String marker("VPNConfig: ");
    const qsizetype at = text.indexOf(marker);
    if (at < 0) {
        return {};
    }
    QString configuration = text.sliced(at + marker.size());
    configuration.replace(lineEnd, QLatin1String("\n"));
    return nonNull(configuration);
}

QString ConfigurationAnswer::getIPAdress(const QString &text) {
    constexpr QLatin1String marker("remote ");
    const qsizetype at = text.indexOf(marker);
    if (at < 0) {
        return {};
    }
    const qsizetype end = text.indexOf(lineEnd, at);
    if (end < 0) {
        return {};
    }
    const qsizetype start = at + marker.size();
    return nonNull(text.sliced(start, end - start));
}

} // namespace quorvane
