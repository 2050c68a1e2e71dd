#include "FileLock.h"

#include "platform/Files.h"

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

bool isLockedElsewhere(const QString &path) {
    const FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));

    struct flock whole {};

    // Any lock of others is in the way of this one, which is only queried and not set.
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    return file.isOpen() && ::fcntl(file.get(), F_OFD_GETLK, &whole) == 0 && whole.l_type != F_UNLCK;
}

} // namespace quorvane::platform
