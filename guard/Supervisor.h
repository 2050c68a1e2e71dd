#pragma once

#include "TunnelLog.h"
#include "common/FileDescriptor.h"

#include <chrono>
#include <string>
#include <vector>

namespace quorvane::guard {

/// How to run OpenVPN.
struct OpenVpnCommand {
    std::string program;
    std::vector<std::string> arguments; ///< without the program's own name
    /// An OpenVPN that has not reported by then that the tunnel is up is ended, so that every attempt ends.
    std::chrono::milliseconds startTimeout;
    /// How long it may need to end after SIGTERM before it is killed.
    std::chrono::milliseconds endTimeout;
};

/// Runs OpenVPN until it ends and copies its output to the log. Returns how it ended, as a text for the log.
///
/// OpenVPN is a child that dies with this process. This process changes its own name meanwhile, so that a
/// kill by name meets OpenVPN alone. SIGTERM and SIGINT are passed on to OpenVPN. `whileRunning` is closed as
/// soon as OpenVPN has ended.
[[nodiscard]] std::string supervise(const OpenVpnCommand &command, TunnelLog &log,
                                    FileDescriptor whileRunning);

} // namespace quorvane::guard
