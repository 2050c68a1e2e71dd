#include "AtomicFile.h"

#include "FileDescriptor.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace platform {

namespace {

QByteArray randomName(const QByteArray &base) {
    return '.' + base + '.' + QByteArray::number(QRandomGenerator::system()->generate64(), 36);
}

/// A file that has no name yet, so that nothing stays behind when the process is killed.
FileDescriptor openNameless(int folder) {
    return FileDescriptor(::openat(folder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
}

int fill(int descriptor, const QByteArray &bytes) {
    // The process's mask may have taken bits away.
    if (::fchmod(descriptor, 0600) != 0)
        return errno;
    const int outcome = writeAll(descriptor, bytes.constData(), bytes.size());
    if (outcome != 0)
        return outcome;
    return ::fdatasync(descriptor) == 0 ? 0 : errno;
}

/// Writes the bytes under a new private name in the folder.
int writeBeside(int folder, const QByteArray &name, const QByteArray &bytes) {
    FileDescriptor file = openNameless(folder);
    if (file.isOpen()) {
        const int outcome = fill(file.get(), bytes);
        if (outcome != 0)
            return outcome;
        const QByteArray link = "/proc/self/fd/" + QByteArray::number(file.get());
        if (::linkat(AT_FDCWD, link.constData(), folder, name.constData(), AT_SYMLINK_FOLLOW) == 0)
            return 0;
    }
    // Not every file system has nameless files.
    file.reset(
        ::openat(folder, name.constData(), O_CREAT | O_EXCL | O_NOFOLLOW | O_WRONLY | O_CLOEXEC, 0600));
    if (!file.isOpen())
        return errno;
    const int outcome = fill(file.get(), bytes);
    if (outcome != 0)
        ::unlinkat(folder, name.constData(), 0);
    return outcome;
}

} // namespace

int writeAll(int descriptor, const char *bytes, qsizetype size) {
    while (size > 0) {
        const ssize_t written = ::write(descriptor, bytes, static_cast<std::size_t>(size));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        bytes += written;
        size -= written;
    }
    return 0;
}

int makePrivateFolders(const QString &path) {
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), 0700) == 0)
        return 0;
    if (errno == EEXIST)
        return QFileInfo(path).isDir() ? 0 : ENOTDIR;
    const QString above = QFileInfo(path).path();
    if (errno != ENOENT || above == path)
        return errno;
    const int outcome = makePrivateFolders(above);
    if (outcome != 0)
        return outcome;
    return ::mkdir(name.constData(), 0700) == 0 || errno == EEXIST ? 0 : errno;
}

int replaceFile(const QString &path, const QByteArray &bytes) {
    const QFileInfo target(path);
    const FileDescriptor folder(
        ::open(QFile::encodeName(target.path()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen())
        return errno;
    const QByteArray name = QFile::encodeName(target.fileName());
    const QByteArray temporary = randomName(name);
    const int outcome = writeBeside(folder.get(), temporary, bytes);
    if (outcome != 0)
        return outcome;
    if (::renameat(folder.get(), temporary.constData(), folder.get(), name.constData()) != 0) {
        const int failure = errno;
        ::unlinkat(folder.get(), temporary.constData(), 0);
        return failure;
    }
    // The new name survives a power cut only once the folder is written too; the file is in place
    // whatever this says.
    ::fsync(folder.get());
    return 0;
}

int readPlainFile(const QString &path, qint64 limit, QByteArray &bytes) {
    // Not blocking: a pipe under that name must not hold the caller.
    const FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen())
        return errno;

    struct stat status {};

    if (::fstat(file.get(), &status) != 0)
        return errno;
    if (!S_ISREG(status.st_mode))
        return EINVAL;
    bytes.clear();
    char part[65536];
    for (;;) {
        const ssize_t got = ::read(file.get(), part, sizeof part);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return errno;
        if (got == 0)
            return 0;
        bytes.append(part, got);
        if (bytes.size() > limit)
            return EFBIG;
    }
}

} // namespace platform
