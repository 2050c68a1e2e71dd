#pragma once

#include "common/Result.h"

#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/types.h>

namespace quorvane {

/// True when only root and `owner` can write it. A link is as good as the file that it names.
inline bool isWrittenOnlyBy(uid_t owner, const std::filesystem::path &path, bool isAbove) {
    constexpr uid_t root = 0;

    struct stat state {};

    struct statvfs system {};

    if (stat(path.c_str(), &state) != 0 || statvfs(path.c_str(), &system) != 0) {
        return false;
    }
    if ((system.f_flag & ST_RDONLY) != 0) {
        return true;
    }
    // In a folder with the sticky bit other users cannot replace what is not theirs.
    const bool isSticky = isAbove && S_ISDIR(state.st_mode) && (state.st_mode & S_ISVTX) != 0;
    // The owner's own group, as far as its number shows it.
    const bool isOwnGroup = state.st_gid == root || state.st_gid == owner;
    return (state.st_uid == root || state.st_uid == owner) &&
           (isSticky || ((state.st_mode & S_IWOTH) == 0 && ((state.st_mode & S_IWGRP) == 0 || isOwnGroup)));
}

/// Fails when a user other than root and `owner` can change the program, or a file or folder beside or above
/// it: root runs what is there. The error is the path of what can be changed. Any thread.
inline Result<> checkProgramFiles(const std::string &program, uid_t owner) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(program, error);
    if (error) {
        return Failure{program};
    }
    for (std::filesystem::path above = real.parent_path();; above = above.parent_path()) {
        if (!isWrittenOnlyBy(owner, above, above != real.parent_path())) {
            return Failure{above.string()};
        }
        if (above == above.root_path()) {
            break;
        }
    }
    std::filesystem::directory_iterator files(real.parent_path(), error);
    for (; !error && files != std::filesystem::directory_iterator(); files.increment(error)) {
        if (!isWrittenOnlyBy(owner, files->path(), false)) {
            return Failure{files->path().string()};
        }
    }
    return error ? Result<>(Failure{real.parent_path().string()}) : Result<>();
}

} // namespace quorvane
