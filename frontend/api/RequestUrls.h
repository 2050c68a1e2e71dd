#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace quorvane {

/// Builds the URLs of the requests to the service.
namespace RequestUrls {

/// The common query of every API request, on the given host.
[[nodiscard]] QString base(const QString &host, const QString &version, const QString &identifier);
/// The "parameters" request: the text is appended unchanged, so the query contains "cmd" twice.
[[nodiscard]] QString parameters(const QString &baseUrl, const QString &text);
/// The request for a VPN configuration; nothing in it is escaped.
[[nodiscard]] QString configuration(const QString &host, const QString &version, const QString &address,
                                    const QString &user, const QString &identifier, const QString &transport);

/// Percent-escapes a whole URL. Characters that a URL may contain stay; blanks, percent signs, other
/// characters and all non-ASCII become escapes of their UTF-8 bytes, and every plus sign becomes %2B, which
/// the service reads as a plus. Absent for a text that is no valid UTF-16.
[[nodiscard]] std::optional<QByteArray> escaped(const QString &text);

} // namespace RequestUrls

} // namespace quorvane
