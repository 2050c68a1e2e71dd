#pragma once

#include "TunnelLog.h"

#include <chrono>
#include <string>
#include <vector>

namespace quorvane::guard {

/// How OpenVPN is run.
struct Start {
    std::string program;
    std::vector<std::string> arguments;
    /// Every search ends: an OpenVPN that has not said by then that the tunnel is up is ended.
    std::chrono::milliseconds deadline;
    /// How long it may take to end by itself before it is killed.
    std::chrono::milliseconds grace;
};

/// Starts OpenVPN as a child that dies with this process, lets this process go on under another name so that OpenVPN
/// alone is killed by name, and copies what it prints into the log until it has ended. Blocks until then and says how
/// it ended, in words for the log; SIGTERM and SIGINT are passed on.
std::string supervise(const Start &start, TunnelLog &log);

} // namespace quorvane::guard
