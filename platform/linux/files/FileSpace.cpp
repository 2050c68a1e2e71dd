#include "platform/Files.h"

#include "common/FileDescriptor.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>

namespace quorvane::platform {

int reserveSpace(const QString &path, qint64 bytes) {
    const FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen()) {
        return errno;
    }
    int outcome = 0;
    do {
        outcome = ::fallocate(file.get(), FALLOC_FL_KEEP_SIZE, 0, bytes) == 0 ? 0 : errno;
    } while (outcome == EINTR);
    // A file system that cannot reserve space may still have enough.
    return outcome == EOPNOTSUPP ? 0 : outcome;
}

} // namespace quorvane::platform
