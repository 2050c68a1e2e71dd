#pragma once

#include "core/Config.h"

namespace quorvane::service {

/// Exit statuses of the program.
constexpr int exitClean = 0;
constexpr int exitFailed = 1;
constexpr int exitUnexpectedRequests = 3;

/// Runs the service until SIGTERM or SIGINT and returns the exit status. Errors are reported on standard
/// error.
[[nodiscard]] int runService(Config config);

} // namespace quorvane::service
