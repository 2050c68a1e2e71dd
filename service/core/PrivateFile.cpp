#include "PrivateFile.h"

#include "common/FileDescriptor.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

/// Root may let a group read its file: processes of several users share keys.
bool isPrivate(const struct stat &state) {
    const mode_t others = state.st_uid == 0 ? S_IWGRP | S_IXGRP | S_IRWXO : S_IRWXG | S_IRWXO;
    return (state.st_uid == 0 || state.st_uid == geteuid()) && (state.st_mode & others) == 0;
}

} // namespace

Result<std::string> privateFileText(const std::string &path, std::size_t maximumLength) {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));

    struct stat state {};

    if (!file.isOpen() || fstat(file.get(), &state) != 0) {
        return Failure{"cannot read " + path + ": " + std::strerror(errno)};
    }
    if (!S_ISREG(state.st_mode) || !isPrivate(state)) {
        return Failure{path + " must be a file of root or of the service's user with mode 600, or of root "
                              "with mode 640"};
    }
    if (static_cast<std::uintmax_t>(state.st_size) > maximumLength) {
        return Failure{path + " is longer than " + std::to_string(maximumLength) + " bytes"};
    }
    std::string text(static_cast<std::size_t>(state.st_size), '\0');
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t length = read(file.get(), text.data() + done, text.size() - done);
        if (length < 0) {
            return Failure{"cannot read " + path + ": " + std::strerror(errno)};
        }
        if (length == 0) {
            break;
        }
        done += static_cast<std::size_t>(length);
    }
    text.resize(done);
    return text;
}

Result<> writePrivateFile(const std::string &path, const std::string &text) {
    const std::string incomplete = path + ".new";
    unlink(incomplete.c_str());
    const FileDescriptor file(
        open(incomplete.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isOpen() || write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()) ||
        rename(incomplete.c_str(), path.c_str()) != 0) {
        return Failure{"cannot write " + path + ": " + std::strerror(errno)};
    }
    return {};
}

} // namespace quorvane::service
