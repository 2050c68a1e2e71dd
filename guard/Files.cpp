#include "Files.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace quorvane::guard {

OpenedFile openPlainFile(const std::string &path, int flags) {
    if (!path.starts_with('/')) {
        return {{}, 0, "the path does not begin at the root"};
    }
    // Only a name for the file so far: opening a device or a pipe for good could already do something.
    FileDescriptor found(open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));

    struct stat state {};

    if (!found.isOpen() || fstat(found.get(), &state) != 0) {
        return {{}, 0, std::strerror(errno)};
    }
    if (!S_ISREG(state.st_mode)) {
        return {{}, 0, "it is not a plain file"};
    }
    if (state.st_nlink != 1) {
        return {{}, 0, "it has more than one name"};
    }
    FileDescriptor opened(open(pathOf(found).c_str(), flags | O_CLOEXEC | O_NOCTTY));
    if (!opened.isOpen()) {
        return {{}, 0, std::strerror(errno)};
    }
    return {std::move(opened), state.st_uid, {}};
}

bool readAll(const FileDescriptor &file, std::size_t most, std::string &bytes) {
    bytes.resize(most + 1);
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = read(file.get(), bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return false;
        }
        if (count == 0) {
            break;
        }
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return filled <= most;
}

FileDescriptor sealedCopy(const char *name, std::string_view bytes) {
    // Not closed when OpenVPN is started: this is how it gets there.
    FileDescriptor memory(memfd_create(name, MFD_ALLOW_SEALING));
    if (!memory.isOpen() || fchmod(memory.get(), 0400) != 0) {
        return {};
    }
    while (!bytes.empty()) {
        const ssize_t count = write(memory.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return {};
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    if (fcntl(memory.get(), F_ADD_SEALS, F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE) != 0) {
        return {};
    }
    return memory;
}

std::string pathOf(const FileDescriptor &descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor.get());
}

} // namespace quorvane::guard
