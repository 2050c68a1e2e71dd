#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

namespace quorvane::service {

/// The state of a service that consists of several processes, as one process with all roles would report it:
/// `statuses` are the answers of those that run, by role. `missing` are the roles that do not run; they make
/// the service not ready, and are listed under "not_running".
[[nodiscard]] nlohmann::json mergedStatus(const std::map<std::string, nlohmann::json> &statuses,
                                          const std::vector<std::string> &missing);

} // namespace quorvane::service
