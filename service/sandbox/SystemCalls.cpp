#include "Steps.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <netinet/in.h>
#include <seccomp.h>
#include <span>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

using Filter = std::unique_ptr<void, decltype(&seccomp_release)>;

/// What a server that is running needs, whatever the arguments are.
constexpr std::array always = {
    // Memory. New executable memory is left out, see below.
    SCMP_SYS(brk), SCMP_SYS(munmap), SCMP_SYS(mremap), SCMP_SYS(madvise),
    // Time, events and signals.
    SCMP_SYS(clock_gettime), SCMP_SYS(clock_nanosleep), SCMP_SYS(gettimeofday), SCMP_SYS(nanosleep),
    SCMP_SYS(epoll_ctl), SCMP_SYS(epoll_wait), SCMP_SYS(epoll_pwait), SCMP_SYS(eventfd2), SCMP_SYS(poll),
    SCMP_SYS(ppoll), SCMP_SYS(timerfd_create), SCMP_SYS(timerfd_settime), SCMP_SYS(futex),
    SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn), SCMP_SYS(sigaltstack),
    SCMP_SYS(restart_syscall), SCMP_SYS(sched_yield), SCMP_SYS(getrandom), SCMP_SYS(getpid), SCMP_SYS(gettid),
    SCMP_SYS(exit), SCMP_SYS(exit_group),
    // Sockets that are there, and those that they accept.
    SCMP_SYS(accept), SCMP_SYS(accept4), SCMP_SYS(shutdown), SCMP_SYS(getsockopt), SCMP_SYS(setsockopt),
    SCMP_SYS(getsockname), SCMP_SYS(getpeername), SCMP_SYS(sendto), SCMP_SYS(recvfrom), SCMP_SYS(sendmsg),
    SCMP_SYS(recvmsg),
    // Files that are open, and the logs and orders that are replaced.
    SCMP_SYS(read), SCMP_SYS(readv), SCMP_SYS(write), SCMP_SYS(writev), SCMP_SYS(close), SCMP_SYS(fstat),
    SCMP_SYS(newfstatat), SCMP_SYS(lseek), SCMP_SYS(fsync), SCMP_SYS(ftruncate), SCMP_SYS(rename),
    SCMP_SYS(renameat), SCMP_SYS(renameat2), SCMP_SYS(unlink), SCMP_SYS(unlinkat)};

/// Adds rules to a filter until one fails.
class Rules {
public:
    explicit Rules(scmp_filter_ctx filter) : m_filter(filter) {}

    void allow(int call) { add(SCMP_ACT_ALLOW, call, {}); }

    /// Allows the call when the bits of the argument under the mask have that value.
    void allowWith(int call, unsigned argument, std::uint64_t mask, std::uint64_t value) {
        const std::array conditions = {scmp_arg_cmp{argument, SCMP_CMP_MASKED_EQ, mask, value}};
        add(SCMP_ACT_ALLOW, call, conditions);
    }

    /// Allows the call when the argument has that value.
    void allowValue(int call, unsigned argument, std::uint64_t value) {
        const std::array conditions = {scmp_arg_cmp{argument, SCMP_CMP_EQ, value, 0}};
        add(SCMP_ACT_ALLOW, call, conditions);
    }

    /// Allows socket() for one family, type and protocol, whatever the flags beside the type are.
    void allowSocket(int family, int type, int protocol) {
        constexpr std::uint64_t flags = SOCK_CLOEXEC | SOCK_NONBLOCK;
        const std::array conditions = {
            scmp_arg_cmp{0, SCMP_CMP_EQ, static_cast<std::uint64_t>(family), 0},
            scmp_arg_cmp{1, SCMP_CMP_MASKED_EQ, ~flags & 0xFFFFFFFFU, static_cast<std::uint64_t>(type)},
            scmp_arg_cmp{2, SCMP_CMP_EQ, static_cast<std::uint64_t>(protocol), 0}};
        add(SCMP_ACT_ALLOW, SCMP_SYS(socket), conditions);
    }

    /// 0, or the negative error of the rule that failed.
    [[nodiscard]] int status() const { return m_status; }

private:
    void add(std::uint32_t action, int call, std::span<const scmp_arg_cmp> conditions) {
        if (m_status == 0) {
            m_status = seccomp_rule_add_array(m_filter, action, call,
                                              static_cast<unsigned>(conditions.size()), conditions.data());
        }
    }

    scmp_filter_ctx m_filter;
    int m_status = 0;
};

void addRules(Rules &rules, bool connects) {
    for (const int call : always) {
        rules.allow(call);
    }
    // Code that an attacker brings along cannot be made executable.
    rules.allowWith(SCMP_SYS(mmap), 2, PROT_EXEC, 0);
    rules.allowWith(SCMP_SYS(mprotect), 2, PROT_EXEC, 0);
    // Files are opened for writing only. So no key can be read, even where the kernel has no Landlock. What
    // openat2() opens is in memory, which a filter cannot see; it stays refused.
    rules.allowWith(SCMP_SYS(open), 1, O_ACCMODE, O_WRONLY);
    rules.allowWith(SCMP_SYS(openat), 2, O_ACCMODE, O_WRONLY);
    rules.allowValue(SCMP_SYS(ioctl), 1, FIONBIO);
    rules.allowValue(SCMP_SYS(ioctl), 1, FIONREAD);
    // Not F_SETOWN and F_SETSIG: by them the kernel sends any signal to another process of the same user.
    for (const int command : {F_GETFD, F_SETFD, F_GETFL, F_SETFL}) {
        rules.allowValue(SCMP_SYS(fcntl), 1, static_cast<std::uint64_t>(command));
    }
    // abort() ends the process by a signal to itself.
    rules.allowValue(SCMP_SYS(tgkill), 0, static_cast<std::uint64_t>(getpid()));
    if (connects) {
        // Other protocols of streams, such as SCTP, would be more code of the kernel to attack.
        for (const int family : {AF_INET, AF_INET6}) {
            rules.allowSocket(family, SOCK_STREAM, 0);
            rules.allowSocket(family, SOCK_STREAM, IPPROTO_TCP);
        }
        rules.allow(SCMP_SYS(connect));
    }
}

} // namespace

Result<> restrictSystemCalls(bool connects) {
    const auto failed = [](int status) {
        return Failure{std::string("cannot restrict system calls: ") + std::strerror(-status)};
    };
    const Filter filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)), &seccomp_release);
    if (filter == nullptr) {
        return failed(-ENOMEM);
    }
    Rules rules(filter.get());
    addRules(rules, connects);
    if (rules.status() != 0) {
        return failed(rules.status());
    }
    const int status = seccomp_load(filter.get());
    return status == 0 ? Result<>() : failed(status);
}

} // namespace quorvane::service
