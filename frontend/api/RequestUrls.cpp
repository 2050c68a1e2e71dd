#include "RequestUrls.h"

#include <cstring>

namespace quorvane {

QString RequestUrls::base(const QString &host, const QString &version, const QString &identifier) {
    return QStringLiteral("https://") + host + QStringLiteral("/?cmd=MRTSL&ver=") + version +
           QStringLiteral("&device=1&systamp=MacOS,user,mobilebox&uniqueid=") + identifier;
}

QString RequestUrls::parameters(const QString &baseUrl, const QString &text) {
    return baseUrl + QStringLiteral("&cmd=phs") + text;
}

QString RequestUrls::configuration(const QString &host, const QString &version, const QString &address,
                                   const QString &user, const QString &identifier, const QString &transport) {
    // The empty parameter before systamp is part of the request's form.
    return QStringLiteral("https://") + host + QStringLiteral("/?cmd=VPNC&ver=") + version +
           QStringLiteral("&device=1&server=571&desiredip=") + address + QStringLiteral("&sessid=") + user +
           QStringLiteral("&&systamp=MacOS,user,mobilebox&uniqueid=") + identifier +
           QStringLiteral("&proto=") + transport;
}

std::optional<QByteArray> RequestUrls::escaped(const QString &text) {
    if (!text.isValidUtf16()) {
        return std::nullopt;
    }
    static constexpr char digits[] = "0123456789ABCDEF";
    static constexpr char kept[] = ";/?:@&=+$,-_.!~*'()";
    QByteArray result;
    const QByteArray bytes = text.toUtf8();
    result.reserve(bytes.size());
    for (const char c : bytes) {
        const bool alphanumeric = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (alphanumeric || (c != '\0' && std::strchr(kept, c) != nullptr)) {
            result += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            result += '%';
            result += digits[byte >> 4];
            result += digits[byte & 15];
        }
    }
    result.replace('+', "%2B");
    return result;
}

} // namespace quorvane
