#pragma once

#include <nlohmann/json.hpp>

#include <chrono>
#include <string>

namespace quorvane::service {

/// The answer to the control socket's command "status" for people. Facts that it does not have are left out.
[[nodiscard]] std::string statusText(const nlohmann::json &status, std::chrono::system_clock::time_point now);

} // namespace quorvane::service
