#include "Steps.h"

#include "common/FileDescriptor.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

/// Since version 3 of the interface; Debian 12's headers describe version 2.
constexpr std::uint64_t truncateAccess = 1U << 14U;

constexpr std::uint64_t writingAccess =
    LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_REG;

/// Everything that the kernel's version can refuse.
std::uint64_t knownAccess(long version) {
    std::uint64_t access = LANDLOCK_ACCESS_FS_MAKE_SYM * 2 - 1;
    if (version >= 2) {
        access |= LANDLOCK_ACCESS_FS_REFER;
    }
    if (version >= 3) {
        access |= truncateAccess;
    }
    return access;
}

Failure failure(const std::string &what) {
    return Failure{"cannot " + what + ": " + std::strerror(errno)};
}

} // namespace

Result<> restrictFileSystem(const std::vector<std::string> &writableFolders) {
    const long version =
        syscall(SYS_landlock_create_ruleset, nullptr, std::size_t{0}, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1) {
        return {};
    }
    landlock_ruleset_attr attributes{};
    attributes.handled_access_fs = knownAccess(version);
    const FileDescriptor rules(static_cast<int>(
        syscall(SYS_landlock_create_ruleset, &attributes, sizeof(attributes), std::uint32_t{0})));
    if (!rules.isOpen()) {
        return failure("make rules for the file system");
    }
    for (const std::string &folder : writableFolders) {
        const FileDescriptor opened(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        landlock_path_beneath_attr rule{};
        rule.allowed_access = (writingAccess | truncateAccess) & attributes.handled_access_fs;
        rule.parent_fd = opened.get();
        if (!opened.isOpen() || syscall(SYS_landlock_add_rule, rules.get(), LANDLOCK_RULE_PATH_BENEATH, &rule,
                                        std::uint32_t{0}) != 0) {
            return failure("allow the folder " + folder);
        }
    }
    if (syscall(SYS_landlock_restrict_self, rules.get(), std::uint32_t{0}) != 0) {
        return failure("restrict the file system");
    }
    return {};
}

} // namespace quorvane::service
