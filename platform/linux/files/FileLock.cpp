#include "FileLock.h"

#include <QDeadlineTimer>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace quorvane::platform {

FileLock::FileLock(const QString &path, int milliseconds)
    : m_file(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600)) {
    constexpr useconds_t pause = 5000;
    const QDeadlineTimer deadline(milliseconds);
    while (m_file.isOpen() && !m_held) {
        m_held = ::flock(m_file.get(), LOCK_EX | LOCK_NB) == 0;
        if (m_held || (errno != EWOULDBLOCK && errno != EINTR)) {
            return;
        }
        m_timedOut = deadline.hasExpired();
        if (m_timedOut) {
            return;
        }
        ::usleep(pause);
    }
}

} // namespace quorvane::platform
