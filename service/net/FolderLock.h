#pragma once

#include "common/FileDescriptor.h"
#include "common/Result.h"

#include <string>

namespace quorvane::service {

/// Keeps a second service out of the runtime folder, where it would replace the sockets. The system releases
/// the lock when the process ends, in any way.
class FolderLock {
public:
    /// Makes the file when it is missing.
    Result<> acquire(const std::string &path);

private:
    FileDescriptor m_file;
};

} // namespace quorvane::service
