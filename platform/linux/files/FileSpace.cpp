#include "platform/Files.h"

#include "common/FileDescriptor.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>

namespace quorvane::platform {

namespace {

int reserve(const FileDescriptor &file, qint64 bytes) {
    int outcome = 0;
    do {
        outcome = ::fallocate(file.get(), FALLOC_FL_KEEP_SIZE, 0, bytes) == 0 ? 0 : errno;
    } while (outcome == EINTR);
    // A file system that cannot reserve space may still have enough.
    return outcome == EOPNOTSUPP ? 0 : outcome;
}

} // namespace

int reserveSpace(const QString &path, qint64 bytes) {
    const FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    return file.isOpen() ? reserve(file, bytes) : errno;
}

int checkSpace(const QString &folder, qint64 bytes) {
    const FileDescriptor file(
        ::open(QFile::encodeName(folder).constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
    if (file.isOpen()) {
        return reserve(file, bytes);
    }
    return errno == EOPNOTSUPP || errno == EISDIR ? 0 : errno;
}

} // namespace quorvane::platform
