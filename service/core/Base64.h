#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvane::service {

/// RFC 4648 with padding, on one line.
[[nodiscard]] std::string base64Of(std::string_view bytes);

/// Nothing for a text that base64Of() would not make.
[[nodiscard]] std::optional<std::string> bytesInBase64(std::string_view text);

} // namespace quorvane::service
