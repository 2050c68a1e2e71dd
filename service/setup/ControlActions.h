#pragma once

#include "CommandLine.h"

namespace quorvane::service {

/// Exit statuses of the commands for a running service.
constexpr int exitNotReady = 3;
constexpr int exitNotRunning = 4;

/// Runs status, drain, revoke or release and returns the exit status: 0, 1 when the service refuses, 2 when
/// the configuration cannot be read, 3 when a service's status is not ready, or 4 when none runs.
[[nodiscard]] int runControlAction(const CommandLine &line);

} // namespace quorvane::service
