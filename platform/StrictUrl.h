#pragma once

#include <QByteArray>
#include <QUrl>
#include <optional>

namespace quorvane::platform {

/// The URL of a text that can be sent byte for byte: http or https with a host, no user, and nothing in it
/// that would be written otherwise, cut off or refused (blanks, '#', non-ASCII characters, broken or
/// unusual escapes, path segments that begin with a dot). Absent otherwise.
[[nodiscard]] std::optional<QUrl> strictUrl(const QByteArray &text);

} // namespace quorvane::platform
