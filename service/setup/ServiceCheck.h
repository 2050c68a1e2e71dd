#pragma once

#include "CommandLine.h"
#include "Machine.h"
#include "ServiceFile.h"

namespace quorvane::service {

/// Checks a running service by sessions of its own, one with each protocol, from a network namespace: the
/// server list, a configuration, a tunnel, and the address that a web server sees. Prints every step with its
/// time, and returns the exit status 0, or 1 when a step failed.
[[nodiscard]] int checkService(Machine &machine, const Places &places, const std::string &configFile);

} // namespace quorvane::service
