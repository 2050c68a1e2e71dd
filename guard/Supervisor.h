#pragma once

#include "LockOpenings.h"
#include "SessionRoutes.h"
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
/// kill by name meets OpenVPN alone. A tunnel counts as up only when `routes` confirms it and a closed
/// network lock is open for its device, and OpenVPN is killed when a change of the routes leads past it: a
/// kill is the fastest end, and `routes` restores what OpenVPN leaves. SIGTERM and SIGINT are passed on to
/// OpenVPN. `whileRunning` is closed as soon as OpenVPN has ended.
[[nodiscard]] std::string supervise(const OpenVpnCommand &command, TunnelLog &log, SessionRoutes &routes,
                                    const LockOpenings &openings, FileDescriptor whileRunning);

} // namespace quorvane::guard
