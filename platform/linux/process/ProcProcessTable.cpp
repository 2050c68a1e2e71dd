#include "ProcProcessTable.h"

#include "common/FileDescriptor.h"

#include <QStringBuilder>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <span>
#include <string_view>

namespace quorvane::platform {

namespace {

struct FolderCloser {
    void operator()(DIR *folder) const { ::closedir(folder); }
};

/// The name as a process number; 0 for another name.
pid_t processNumber(const char *name) {
    pid_t number = 0;
    const char *end = name + std::strlen(name);
    const auto outcome = std::from_chars(name, end, number);
    return outcome.ec == std::errc() && outcome.ptr == end ? number : 0;
}

/// Reads a small file of the process. Returns what was read before the process ended.
std::string_view readFile(int folder, const char *process, const char *name, std::span<char> into) {
    const QByteArray path = QByteArray(process) + '/' + name;
    const FileDescriptor file(::openat(folder, path.constData(), O_RDONLY | O_CLOEXEC));
    const ssize_t size = file.isOpen() ? ::read(file.get(), into.data(), into.size()) : -1;
    return {into.data(), size > 0 ? static_cast<std::size_t>(size) : 0};
}

/// Reads the short name; false when the process is gone.
bool readName(int folder, const char *process, ProcessRecord &record) {
    const std::string_view name = readFile(folder, process, "comm", record.name);
    if (name.empty()) {
        return false;
    }
    // The line feed at the end is not part of the name and is replaced by the final NUL.
    record.name[name.size() - 1] = '\0';
    return true;
}

unsigned long long numberIn(std::string_view text) {
    unsigned long long number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// Whether the process is only an entry in the table, is ending, or is about to end by SIGKILL. It cannot be
/// killed any more, and an attempt may find no process.
bool isEnding(int folder, const char *process) {
    constexpr std::size_t flagsField = 6; // counted from the state, which follows the name
    constexpr std::size_t pendingField = 28;
    constexpr unsigned long long exiting = 0x4; // PF_EXITING
    constexpr unsigned long long pendingKill = 1ULL << (SIGKILL - 1);
    std::array<char, 1024> buffer{};
    std::string_view text = readFile(folder, process, "stat", buffer);
    const auto nameEnd = text.rfind(") ");
    if (nameEnd == std::string_view::npos) {
        return false;
    }
    text.remove_prefix(nameEnd + 2);
    if (text.starts_with('Z') || text.starts_with('X')) {
        return true;
    }
    for (std::size_t field = 0; !text.empty() && field <= pendingField; ++field) {
        const std::string_view value = text.substr(0, text.find(' '));
        if ((field == flagsField && (numberIn(value) & exiting) != 0) ||
            (field == pendingField && (numberIn(value) & pendingKill) != 0)) {
            return true;
        }
        text.remove_prefix(std::min(value.size() + 1, text.size()));
    }
    return false;
}

} // namespace

ProcProcessTable::ProcProcessTable(const QByteArray &folder) : m_folder(folder) {}

int ProcProcessTable::query(ProcessRecord *rows, std::size_t &count) const {
    const std::unique_ptr<DIR, FolderCloser> stream(::opendir(m_folder.constData()));
    if (!stream) {
        return errno;
    }
    std::size_t found = 0;
    for (;;) {
        errno = 0;
        const dirent *item = ::readdir(stream.get());
        if (item == nullptr) {
            break;
        }
        ProcessRecord record;
        record.pid = processNumber(item->d_name);
        if (record.pid <= 0) {
            continue;
        }
        if (rows == nullptr) {
            ++found;
            continue;
        }
        if (!readName(::dirfd(stream.get()), item->d_name, record) ||
            isEnding(::dirfd(stream.get()), item->d_name)) {
            continue;
        }
        if (found == count) {
            return ENOMEM;
        }
        rows[found++] = record;
    }
    if (errno != 0) {
        return errno;
    }
    count = found;
    return 0;
}

bool ProcProcessTable::showsOtherUsers() const {
    const FileDescriptor folder(::open(m_folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    ProcessRecord first;
    return folder.isOpen() && readName(folder.get(), "1", first);
}

} // namespace quorvane::platform
