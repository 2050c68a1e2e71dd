#pragma once

#include "core/Config.h"

namespace quorvane::service {

/// Exit statuses of the program.
constexpr int ExitClean = 0;
constexpr int ExitFailed = 1;
constexpr int ExitUnexpectedRequests = 3;

/// Runs the service until SIGTERM or SIGINT and returns the exit status. What goes wrong is told on
/// standard error.
int runService(const Config &config);

} // namespace quorvane::service
