#include "Caller.h"

#include "Configuration.h"

#include <charconv>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace quorvane::guard {

namespace {

constexpr uid_t root = 0;

/// True when only root and the caller can write it. A link is as good as the file that it names.
bool isSafe(const std::filesystem::path &path, uid_t caller, bool isAbove) {
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
    // The caller's own group, as far as its number shows it.
    const bool isOwnGroup = state.st_gid == root || state.st_gid == caller;
    return (state.st_uid == root || state.st_uid == caller) &&
           (isSticky || ((state.st_mode & S_IWOTH) == 0 && ((state.st_mode & S_IWGRP) == 0 || isOwnGroup)));
}

Failure unsafe(const std::filesystem::path &path) {
    return {"the program's files are refused: another user can change " + quotedForLog(path.string())};
}

} // namespace

std::optional<uid_t> callerOf(const char *variable) {
    if (variable == nullptr) {
        return getuid();
    }
    uid_t caller = 0;
    const char *const end = variable + std::strlen(variable);
    const auto read = std::from_chars(variable, end, caller);
    return read.ec == std::errc() && read.ptr == end ? std::optional(caller) : std::nullopt;
}

Result<> checkProgramFiles(const std::string &program, uid_t caller) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(program, error);
    if (error) {
        return unsafe(program);
    }
    for (std::filesystem::path above = real.parent_path();; above = above.parent_path()) {
        if (!isSafe(above, caller, above != real.parent_path())) {
            return unsafe(above);
        }
        if (above == above.root_path()) {
            break;
        }
    }
    std::filesystem::directory_iterator files(real.parent_path(), error);
    for (; !error && files != std::filesystem::directory_iterator(); files.increment(error)) {
        if (!isSafe(files->path(), caller, false)) {
            return unsafe(files->path());
        }
    }
    return error ? Result<>(unsafe(real.parent_path())) : Result<>();
}

} // namespace quorvane::guard
