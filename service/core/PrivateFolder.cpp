#include "PrivateFolder.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

constexpr mode_t writableByOthers = S_IWGRP | S_IWOTH;

Failure unusable(const std::string &path, const std::string &reason) {
    return Failure{"cannot use " + path + ": " + reason};
}

} // namespace

Result<> checkPrivateFolder(const std::string &path) {
    struct stat state {};

    // An administrator may have put a link to another disk in the folder's place.
    if (stat(path.c_str(), &state) != 0) {
        return errno == ENOENT ? Result<>() : unusable(path, std::strerror(errno));
    }
    if (!S_ISDIR(state.st_mode) || (state.st_uid != 0 && state.st_uid != geteuid())) {
        return Failure{path + " must be a folder of root or of the service's user"};
    }
    if ((state.st_mode & writableByOthers) != 0) {
        return Failure{path + " must not be writable by other users"};
    }
    return {};
}

Result<> makePrivateFolder(const std::string &path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) {
        return unusable(path, error.message());
    }

    struct stat state {};

    // A link is refused: the folder that it names may be there for another purpose.
    if (lstat(path.c_str(), &state) != 0) {
        return unusable(path, std::strerror(errno));
    }
    if (!S_ISDIR(state.st_mode) || state.st_uid != geteuid()) {
        return Failure{path + " must be a folder of the service's user"};
    }
    if ((state.st_mode & writableByOthers) != 0) {
        return Failure{path + " must not be writable by other users"};
    }
    return chmod(path.c_str(), 0700) == 0 ? Result<>() : unusable(path, std::strerror(errno));
}

} // namespace quorvane::service
