#include "ProcProcessTable.h"

#include "FileDescriptor.h"

#include <QStringBuilder>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>

namespace platform {

namespace {

struct FolderCloser {
    void operator()(DIR *folder) const { ::closedir(folder); }
};

/// The process number that the name is; 0 for another name.
pid_t processNumber(const char *name) {
    pid_t number = 0;
    const char *end = name + std::strlen(name);
    const auto outcome = std::from_chars(name, end, number);
    return outcome.ec == std::errc() && outcome.ptr == end ? number : 0;
}

/// Reads the short name; false when the process is gone.
bool readName(int folder, const char *process, ProcessRecord &record) {
    const QByteArray path = QByteArray(process) + "/comm";
    const FileDescriptor file(::openat(folder, path.constData(), O_RDONLY | O_CLOEXEC));
    const ssize_t size = file.isOpen() ? ::read(file.get(), record.name.data(), record.name.size()) : -1;
    if (size <= 0)
        return false;
    // The line feed at the end is not part of the name; what is in its place must be the end.
    record.name[static_cast<std::size_t>(size) - 1] = '\0';
    return true;
}

} // namespace

ProcProcessTable::ProcProcessTable(const QByteArray &path) : folder(path) {}

int ProcProcessTable::query(ProcessRecord *rows, std::size_t &count) const {
    const std::unique_ptr<DIR, FolderCloser> stream(::opendir(folder.constData()));
    if (!stream)
        return errno;
    std::size_t found = 0;
    for (;;) {
        errno = 0;
        const dirent *item = ::readdir(stream.get());
        if (item == nullptr)
            break;
        ProcessRecord record;
        record.pid = processNumber(item->d_name);
        if (record.pid <= 0)
            continue;
        if (rows == nullptr) {
            ++found;
            continue;
        }
        if (!readName(::dirfd(stream.get()), item->d_name, record))
            continue;
        if (found == count)
            return ENOMEM;
        rows[found++] = record;
    }
    if (errno != 0)
        return errno;
    count = found;
    return 0;
}

} // namespace platform
