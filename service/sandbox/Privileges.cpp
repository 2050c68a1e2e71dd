#include "Steps.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

Failure failure(const char *what) {
    return Failure{std::string("cannot ") + what + ": " + std::strerror(errno)};
}

/// The bounding set limits what programs with file capabilities could get. Only a process with CAP_SETPCAP
/// can change it; without it no_new_privs has the same effect.
void dropBoundingSet() {
    for (unsigned long capability = 0; prctl(PR_CAPBSET_READ, capability, 0, 0, 0) >= 0; ++capability) {
        if (prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) != 0) {
            return;
        }
    }
}

} // namespace

Result<> dropPrivileges() {
    const rlimit none{0, 0};
    if (setrlimit(RLIMIT_CORE, &none) != 0 || prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) != 0) {
        return failure("forbid core dumps");
    }
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        return failure("refuse new privileges");
    }
    if (prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_CLEAR_ALL, 0, 0, 0) != 0) {
        return failure("give up ambient capabilities");
    }
    dropBoundingSet();
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
    if (syscall(SYS_capset, &header, sets.data()) != 0) {
        return failure("give up capabilities");
    }
    return {};
}

} // namespace quorvane::service
