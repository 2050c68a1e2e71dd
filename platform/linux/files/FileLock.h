#pragma once

#include "common/FileDescriptor.h"

#include <QString>

namespace quorvane::platform {

/// An exclusive lock that the kernel drops when its holder ends, however it ends: a file that was left
/// behind locks nothing.
class FileLock {
public:
    /// Waits at most so long for the lock on the file, which is made with mode 600 when missing.
    FileLock(const QString &path, int milliseconds);

    [[nodiscard]] bool isHeld() const { return m_held; }

    /// Another process kept the lock all the time.
    [[nodiscard]] bool hasTimedOut() const { return m_timedOut; }

private:
    FileDescriptor m_file;
    bool m_held = false;
    bool m_timedOut = false;
};

} // namespace quorvane::platform
