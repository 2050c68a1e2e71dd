#include "AtomicFile.h"

#include "platform/Files.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace quorvane::platform {

namespace {

QByteArray randomName(const QByteArray &base) {
    return '.' + base + '.' + QByteArray::number(QRandomGenerator::system()->generate64(), 36);
}

/// The path of an open file that may have no name.
QByteArray ownPath(const FileDescriptor &file) {
    return "/proc/self/fd/" + QByteArray::number(file.get());
}

} // namespace

int writeAll(int descriptor, const char *bytes, qsizetype size) {
    while (size > 0) {
        const ssize_t written = ::write(descriptor, bytes, static_cast<std::size_t>(size));
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return errno;
        }
        bytes += written;
        size -= written;
    }
    return 0;
}

int makePrivateFolders(const QString &path) {
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), 0700) == 0) {
        return 0;
    }
    if (errno == EEXIST) {
        return QFileInfo(path).isDir() ? 0 : ENOTDIR;
    }
    const QString above = QFileInfo(path).path();
    if (errno != ENOENT || above == path) {
        return errno;
    }
    const int outcome = makePrivateFolders(above);
    if (outcome != 0) {
        return outcome;
    }
    return ::mkdir(name.constData(), 0700) == 0 || errno == EEXIST ? 0 : errno;
}

PendingFile::~PendingFile() {
    if (m_named) {
        ::unlinkat(m_folder.get(), m_temporary.constData(), 0);
    }
}

int PendingFile::open(const QString &path) {
    const QFileInfo target(path);
    m_folder.reset(::open(QFile::encodeName(target.path()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!m_folder.isOpen()) {
        return errno;
    }
    m_name = QFile::encodeName(target.fileName());
    m_temporary = randomName(m_name);
    // A file without a name leaves nothing behind even when the process is killed.
    m_file.reset(::openat(m_folder.get(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (!m_file.isOpen() || ::access(ownPath(m_file).constData(), F_OK) != 0) {
        m_file.reset(::openat(m_folder.get(), m_temporary.constData(),
                              O_CREAT | O_EXCL | O_NOFOLLOW | O_RDWR | O_CLOEXEC, 0600));
        if (!m_file.isOpen()) {
            return errno;
        }
        m_named = true;
    }
    // The process's umask may have removed bits.
    return ::fchmod(m_file.get(), 0600) == 0 ? 0 : errno;
}

int PendingFile::write(const QByteArray &bytes) const {
    return writeAll(m_file.get(), bytes.constData(), bytes.size());
}

int PendingFile::copy(const PendingFile &other) const {
    std::array<char, 65536> part{};
    off_t position = 0;
    for (;;) {
        const ssize_t got = ::pread(other.m_file.get(), part.data(), part.size(), position);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return got == 0 ? 0 : errno;
        }
        if (const int outcome = writeAll(m_file.get(), part.data(), got); outcome != 0) {
            return outcome;
        }
        position += got;
    }
}

int PendingFile::commit(bool durable) {
    if (durable && ::fdatasync(m_file.get()) != 0) {
        return errno;
    }
    if (!m_named) {
        if (::linkat(AT_FDCWD, ownPath(m_file).constData(), m_folder.get(), m_temporary.constData(),
                     AT_SYMLINK_FOLLOW) != 0) {
            return errno;
        }
        m_named = true;
    }
    if (::renameat(m_folder.get(), m_temporary.constData(), m_folder.get(), m_name.constData()) != 0) {
        return errno;
    }
    m_named = false;
    // The new name survives a power cut only after the folder is written too. An error is ignored here: the
    // file already has its name.
    if (durable) {
        ::fsync(m_folder.get());
    }
    return 0;
}

int replaceFile(const QString &path, const QByteArray &bytes) {
    PendingFile file;
    int outcome = file.open(path);
    if (outcome == 0) {
        outcome = file.write(bytes);
    }
    return outcome == 0 ? file.commit(true) : outcome;
}

int readPlainFile(const QString &path, qint64 limit, QByteArray &bytes) {
    // Does not block: a pipe under that name must not stop the caller.
    const FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen()) {
        return errno;
    }

    struct stat status {};

    if (::fstat(file.get(), &status) != 0) {
        return errno;
    }
    if (!S_ISREG(status.st_mode)) {
        return EINVAL;
    }
    bytes.clear();
    // Growing by copying would need twice the file's size for a moment. The file may still be written.
    bytes.reserve(std::clamp<qint64>(status.st_size, 0, limit) + 1);
    char part[65536];
    for (;;) {
        const ssize_t got = ::read(file.get(), part, sizeof part);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return errno;
        }
        if (got == 0) {
            return 0;
        }
        bytes.append(part, got);
        if (bytes.size() > limit) {
            return EFBIG;
        }
    }
}

int appendToPlainFile(const QString &path, const QByteArray &bytes, MissingFile missing) {
    const int creation = missing == MissingFile::IsCreated ? O_CREAT : 0;
    // Does not block, as above.
    const FileDescriptor file(::open(QFile::encodeName(path).constData(),
                                     O_WRONLY | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | creation,
                                     0600));
    if (!file.isOpen()) {
        return errno;
    }

    struct stat status {};

    if (::fstat(file.get(), &status) != 0) {
        return errno;
    }
    return S_ISREG(status.st_mode) ? writeAll(file.get(), bytes.constData(), bytes.size()) : EINVAL;
}

int renameFile(const QString &path, const QString &newPath) {
    const int outcome =
        std::rename(QFile::encodeName(path).constData(), QFile::encodeName(newPath).constData());
    return outcome == 0 ? 0 : errno;
}

} // namespace quorvane::platform
