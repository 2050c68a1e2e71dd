#pragma once

#include "common/FileDescriptor.h"

#include <QString>

namespace quorvane::platform {

/// An exclusive lock that the kernel releases when its holder ends in any way: a file that was left behind
/// locks nothing.
class FileLock {
public:
    /// Waits at most that many milliseconds for the lock on the file, which is created with mode 600 if
    /// missing.
    FileLock(const QString &path, int milliseconds);

    [[nodiscard]] bool isHeld() const { return m_held; }

    /// Whether another process held the lock for the whole time.
    [[nodiscard]] bool hasTimedOut() const { return m_timedOut; }

private:
    FileDescriptor m_file;
    bool m_held = false;
    bool m_timedOut = false;
};

} // namespace quorvane::platform
