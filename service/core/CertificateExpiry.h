#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quorvane::service {

/// The end of validity of the first certificate in a PEM file, in seconds since 1970. Nothing when the file
/// cannot be read or contains none.
[[nodiscard]] std::optional<std::int64_t> certificateExpiry(const std::string &path);

} // namespace quorvane::service
