// The program that the application starts with administrator rights in OpenVPN's place, with OpenVPN's own
// command line. It looks at everything before the real OpenVPN sees it, and stays beside it until the end.

#include "AllowList.h"
#include "Configuration.h"
#include "Files.h"
#include "HostRoutes.h"
#include "Supervisor.h"
#include "TunnelLog.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <linux/close_range.h>
#include <span>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace quorvane::guard;
using quorvane::FileDescriptor;

constexpr std::size_t LargestCredentials = 4096;
constexpr std::chrono::milliseconds Deadline{QUORVANE_DEADLINE_MS};
constexpr std::chrono::milliseconds Grace{QUORVANE_GRACE_MS};
constexpr std::chrono::seconds LongestTurn{5};

struct Paths {
    std::string configuration;
    std::string credentials;
    std::string log;
};

/// The command line that the application has, and no other.
bool readCommandLine(std::span<char *> words, Paths &paths) {
    if (words.size() != 7 || std::strcmp(words[1], "--config") != 0 ||
        std::strcmp(words[3], "--auth-user-pass") != 0 || std::strcmp(words[5], "--log-append") != 0) {
        return false;
    }
    paths = {words[2], words[4], words[6]};
    return true;
}

/// Nothing of the caller's reaches OpenVPN: no variables, no open files, no signal settings. What passes
/// through this process is secret, so it leaves no core file and nobody may trace it.
bool harden() {
    const rlimit none{0, 0};

    struct sigaction usual {};

    usual.sa_handler = SIG_DFL;
    for (int number = 1; number < SIGRTMIN; ++number) {
        sigaction(number, &usual, nullptr);
    }
    sigset_t nothing;
    sigemptyset(&nothing);
    umask(077);
    setsid();
    // Until the three usual places are taken: a caller may have closed one, and the log must not land there.
    int null = open("/dev/null", O_RDWR);
    while (null >= 0 && null <= STDERR_FILENO) {
        null = open("/dev/null", O_RDWR);
    }
    return null >= 0 && dup2(null, STDIN_FILENO) >= 0 && close_range(STDERR_FILENO + 1, ~0U, 0) == 0 &&
           sigprocmask(SIG_SETMASK, &nothing, nullptr) == 0 && setrlimit(RLIMIT_CORE, &none) == 0 &&
           prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) == 0 && clearenv() == 0 && chdir("/") == 0;
}

/// The caller's pipe is let go: from here on the log is the only place for words.
void leaveOutput() {
    const FileDescriptor null(open("/dev/null", O_RDWR | O_CLOEXEC));
    dup2(null.get(), STDOUT_FILENO);
    dup2(null.get(), STDERR_FILENO);
}

/// Looks at the configuration; what it says, or nothing and the reason why none of it may pass.
std::vector<Directive> allowedDirectives(const FileDescriptor &file, std::string &reason) {
    std::string text;
    if (!readAll(file, LargestConfiguration, text)) {
        reason = Refusal{0, "it is too large or cannot be read"}.text();
        return {};
    }
    auto parsed = parse(text);
    if (const auto *refusal = std::get_if<Refusal>(&parsed)) {
        reason = refusal->text();
        return {};
    }
    if (const auto refusal = check(std::get<std::vector<Directive>>(parsed))) {
        reason = refusal->text();
        return {};
    }
    return std::get<std::vector<Directive>>(std::move(parsed));
}

/// The servers that are named by their IPv4 address, in network byte order.
std::vector<std::uint32_t> serversOf(const std::vector<Directive> &directives) {
    std::vector<std::uint32_t> servers;
    for (const Directive &directive : directives) {
        in_addr address{};
        if (directive.name() == "remote" && inet_pton(AF_INET, directive.words[1].c_str(), &address) == 1) {
            servers.push_back(address.s_addr);
        }
    }
    return servers;
}

/// One guard at a time, until its routes are taken back: the next one's OpenVPN may make the same route.
/// False when the one before does not end; the system gives the lock back with the process.
bool waitForTurn(FileDescriptor &lock) {
    lock = FileDescriptor(open(QUORVANE_LOCK, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    const auto end = std::chrono::steady_clock::now() + LongestTurn;
    while (flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK || std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

FileDescriptor credentialsCopy(const std::string &path, uid_t owner, std::string &reason) {
    std::string text;
    const OpenedFile file = openPlainFile(path, O_RDONLY);
    if (!file.descriptor.isOpen()) {
        reason = file.reason;
    } else if (file.owner != owner) {
        reason = "it belongs to somebody else";
    } else if (!readAll(file.descriptor, LargestCredentials, text)) {
        reason = "it is too large or cannot be read";
    } else if (FileDescriptor copy = sealedCopy("credentials", text); copy.isOpen()) {
        return copy;
    } else {
        reason = "the private copy cannot be made";
    }
    // OpenVPN's own words for it.
    reason = "Options error: --auth-user-pass fails with '" + path + "': " + reason;
    return {};
}

/// Runs OpenVPN, or says in the log why not.
void guarded(const Paths &paths, const OpenedFile &configuration, TunnelLog &log) {
    FileDescriptor turn;
    FileDescriptor credentials;
    FileDescriptor copy;
    std::string reason = log.hasRoom() ? "" : "there is no room for the log";
    std::vector<Directive> directives;
    if (reason.empty()) {
        directives = allowedDirectives(configuration.descriptor, reason);
    }
    if (reason.empty()) {
        credentials = credentialsCopy(paths.credentials, configuration.owner, reason);
    }
    if (reason.empty()) {
        copy = sealedCopy("configuration", privateCopy(directives));
        reason = copy.isOpen() ? "" : "the private copy of the configuration cannot be made";
    }
    if (reason.empty() && !waitForTurn(turn)) {
        reason = "another tunnel is still there";
    }
    if (!reason.empty()) {
        log.finish(reason);
        return;
    }
    const HostRoutes routes(serversOf(directives));
    const std::string end = supervise(
        {QUORVANE_OPENVPN,
         // The level is said behind the configuration's own words, so it is the last word.
         {"--config", pathOf(copy), "--script-security", "0", "--auth-user-pass", pathOf(credentials)},
         Deadline,
         Grace},
        log);
    routes.removeNew();
    log.finish(end);
}

} // namespace

int main(int count, char **words) {
    Paths paths;
    if (!readCommandLine({words, static_cast<std::size_t>(count)}, paths)) {
        std::fputs("usage: openvpn --config FILE --auth-user-pass FILE --log-append FILE\n", stderr);
        return 2;
    }
    if (!harden()) {
        std::fprintf(stderr, "openvpn: %s\n", std::strerror(errno));
        return 1;
    }
    const OpenedFile configuration = openPlainFile(paths.configuration, O_RDONLY);
    OpenedFile log = openPlainFile(paths.log, O_WRONLY | O_APPEND);
    // Whose the configuration is, his the log must be: else one of them is a stranger's, and root reads or
    // writes for him what he could not.
    if (!log.descriptor.isOpen() || (configuration.descriptor.isOpen() && configuration.owner != log.owner)) {
        std::fprintf(stderr, "openvpn: the log cannot be used: %s\n",
                     log.reason.empty() ? "it belongs to somebody else" : log.reason.c_str());
        return 1;
    }
    leaveOutput();
    TunnelLog tunnelLog(std::move(log.descriptor));
    if (!configuration.descriptor.isOpen()) {
        tunnelLog.finish(Refusal{0, configuration.reason}.text());
        return 1;
    }
    guarded(paths, configuration, tunnelLog);
    return 0;
}
