#pragma once

#include <QByteArray>
#include <QUrl>
#include <optional>

namespace quorvane::platform {

/// Parses a URL that can be sent byte for byte: http or https with a host, without a user name, and without
/// anything that would be encoded differently, removed or refused (blanks, '#', non-ASCII characters, broken
/// or unusual escapes, path segments that begin with a dot). Absent for any other text.
[[nodiscard]] std::optional<QUrl> strictUrl(const QByteArray &text);

} // namespace quorvane::platform
