#include "Files.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace quorvane::guard {

Result<OpenedFile> openPlainFile(const std::string &path, int flags) {
    if (!path.starts_with('/')) {
        return Failure{"the path is not absolute"};
    }
    // O_PATH opens nothing yet: opening a device or a pipe can already have an effect.
    const FileDescriptor found(open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));

    struct stat state {};

    if (!found.isOpen() || fstat(found.get(), &state) != 0) {
        return Failure{std::strerror(errno)};
    }
    if (!S_ISREG(state.st_mode)) {
        return Failure{"it is not a plain file"};
    }
    if (state.st_nlink != 1) {
        return Failure{"it has more than one name"};
    }
    FileDescriptor opened(open(pathOf(found).c_str(), flags | O_CLOEXEC | O_NOCTTY));
    if (!opened.isOpen()) {
        return Failure{std::strerror(errno)};
    }
    return OpenedFile{std::move(opened), state.st_uid};
}

Result<std::string> readAll(const FileDescriptor &file, std::size_t maximumSize) {
    std::string bytes(maximumSize + 1, '\0');
    std::size_t size = 0;
    while (size < bytes.size()) {
        const ssize_t count = read(file.get(), bytes.data() + size, bytes.size() - size);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return Failure{"it is too large or cannot be read"};
        }
        if (count == 0) {
            break;
        }
        size += static_cast<std::size_t>(count);
    }
    if (size > maximumSize) {
        return Failure{"it is too large or cannot be read"};
    }
    bytes.resize(size);
    return bytes;
}

Result<FileDescriptor> sealedCopy(const std::string &name, std::string_view bytes) {
    // No close-on-exec flag: OpenVPN inherits the descriptor and reads the file through it.
    FileDescriptor memory(memfd_create(name.c_str(), MFD_ALLOW_SEALING));
    if (!memory.isOpen() || fchmod(memory.get(), 0400) != 0 || !writeAll(memory, bytes) ||
        fcntl(memory.get(), F_ADD_SEALS, F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE) != 0) {
        return Failure{"the private copy of the " + name + " cannot be made"};
    }
    return memory;
}

bool writeAll(const FileDescriptor &file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

FileDescriptor lockedLog(const FileDescriptor &log) {
    FileDescriptor again(open(pathOf(log).c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC));

    struct flock whole {};

    whole.l_type = F_RDLCK;
    whole.l_whence = SEEK_SET;
    if (again.isOpen() && fcntl(again.get(), F_OFD_SETLK, &whole) != 0) {
        again.reset();
    }
    return again;
}

std::string pathOf(const FileDescriptor &descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor.get());
}

} // namespace quorvane::guard
