#pragma once

#include "common/Result.h"

#include <string>
#include <vector>

namespace quorvane::service {

/// What a confined process still needs.
struct Needs {
    std::vector<std::string> writableFolders; ///< where it makes, replaces and removes files
    bool connects = false;                    ///< it opens TCP connections of its own
};

/// Confines the calling process, which must have one thread only, for the rest of its life:
///
/// - it has no capabilities, cannot get any, and cannot be traced or dumped by its own user;
/// - it cannot open a file for reading, start a program or another process, map executable memory, or make
///   sockets other than the TCP sockets that it needs;
/// - where the kernel has Landlock, it can write in the given folders only.
///
/// What was opened before can still be used. System calls that are not allowed return EPERM. An attacker who
/// takes over such a process by a defect in its parser gets what is in its memory and nothing else of the
/// machine.
///
/// After a failure the process may be confined in part, and should end.
Result<> confineProcess(const Needs &needs);

} // namespace quorvane::service
