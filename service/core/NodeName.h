#pragma once

#include <string_view>

namespace quorvane::service {

/// A name of a node: 1 to 64 letters, digits, ".", "_" and "-".
[[nodiscard]] bool isNodeName(std::string_view name);

} // namespace quorvane::service
