#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace quorvane {

/// The texts of the service's request URLs.
namespace RequestUrls {

/// The common query of every API request, on the given host.
[[nodiscard]] QString base(const QString &host, const QString &version, const QString &identifier);
/// The "parameters" request: the text is appended as it is, so "cmd" stands twice in the query.
[[nodiscard]] QString parameters(const QString &baseUrl, const QString &text);
/// The request for a VPN configuration; nothing in it is escaped.
[[nodiscard]] QString configuration(const QString &host, const QString &version, const QString &address,
                                    const QString &user, const QString &identifier, const QString &transport);

/// Percent-escapes a whole URL text: what may stand in a URL stays, blanks, percent signs, other
/// characters and all non-ASCII become escapes of their UTF-8 bytes, and every plus sign becomes %2B so
/// that it arrives as a plus. Absent for a text that is no valid UTF-16.
[[nodiscard]] std::optional<QByteArray> escaped(const QString &text);

} // namespace RequestUrls

} // namespace quorvane
