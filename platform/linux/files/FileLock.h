#pragma once

#include "common/FileDescriptor.h"

#include <QString>

namespace platform {

using quorvane::FileDescriptor;

/// An exclusive lock that the kernel drops when its holder ends, however it ends: a file that was left
/// behind locks nothing.
class FileLock {
public:
    /// Waits at most so long for the lock on the file, which is made with mode 600 when missing.
    FileLock(const QString &path, int milliseconds);

    [[nodiscard]] bool isHeld() const { return held; }

    /// Another process kept the lock all the time.
    [[nodiscard]] bool hasTimedOut() const { return timedOut; }

private:
    FileDescriptor file;
    bool held = false;
    bool timedOut = false;
};

} // namespace platform
