#pragma once

#include "common/Result.h"

#include <string>
#include <vector>

/// The steps of confineProcess() in their order; each holds for the rest of the process's life.
namespace quorvane::service {

/// Gives up all capabilities, and every way to get others; also forbids core dumps and tracing by the user's
/// other processes.
Result<> dropPrivileges();

/// Lets the process change files in these folders only, and read none. Does nothing where the kernel has no
/// Landlock.
Result<> restrictFileSystem(const std::vector<std::string> &writableFolders);

/// Refuses all system calls but those of a server that is running.
Result<> restrictSystemCalls(bool connects);

} // namespace quorvane::service
