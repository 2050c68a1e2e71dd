#include "FileLock.h"

#include <QDeadlineTimer>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace quorvane::platform {

FileLock::FileLock(const QString &path, int milliseconds)
    : file(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600)) {
    constexpr useconds_t pause = 5000;
    const QDeadlineTimer deadline(milliseconds);
    while (file.isOpen() && !held) {
        held = ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
        if (held || (errno != EWOULDBLOCK && errno != EINTR)) {
            return;
        }
        timedOut = deadline.hasExpired();
        if (timedOut) {
            return;
        }
        ::usleep(pause);
    }
}

} // namespace quorvane::platform
