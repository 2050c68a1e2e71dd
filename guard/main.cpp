// The program that the application starts with root's rights in place of OpenVPN, with OpenVPN's own command
// line. It checks everything that the real OpenVPN is to receive, starts OpenVPN and watches it until it
// ends.

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
using quorvane::Failure;
using quorvane::FileDescriptor;
using quorvane::Result;

constexpr std::size_t maximumCredentialsSize = 4096;
constexpr std::chrono::milliseconds startTimeout{QUORVANE_DEADLINE_MS};
constexpr std::chrono::milliseconds endTimeout{QUORVANE_GRACE_MS};
constexpr std::chrono::seconds lockTimeout{5};

struct Paths {
    std::string configuration;
    std::string credentials;
    std::string log;
};

/// The files that OpenVPN receives, and what the guard holds while OpenVPN runs.
struct Preparation {
    std::vector<std::uint32_t> servers; ///< see serversOf()
    FileDescriptor configuration;
    FileDescriptor credentials;
    FileDescriptor lock;
};

/// Accepts the one command line that the application uses, and no other.
bool readCommandLine(std::span<char *> arguments, Paths &paths) {
    if (arguments.size() != 7 || std::strcmp(arguments[1], "--config") != 0 ||
        std::strcmp(arguments[3], "--auth-user-pass") != 0 ||
        std::strcmp(arguments[5], "--log-append") != 0) {
        return false;
    }
    paths = {arguments[2], arguments[4], arguments[6]};
    return true;
}

/// Removes what OpenVPN would inherit from the caller: variables, open files, signal settings. This process
/// handles secrets, so it leaves no core file and no other process may trace it.
bool harden() {
    const rlimit none{0, 0};

    struct sigaction defaultAction {};

    defaultAction.sa_handler = SIG_DFL;
    for (int number = 1; number < SIGRTMIN; ++number) {
        sigaction(number, &defaultAction, nullptr);
    }
    sigset_t noSignals;
    sigemptyset(&noSignals);
    umask(077);
    setsid();
    // Fills the three standard descriptors: a caller may have closed one, and the log must not be opened
    // there.
    int null = open("/dev/null", O_RDWR);
    while (null >= 0 && null <= STDERR_FILENO) {
        null = open("/dev/null", O_RDWR);
    }
    return null >= 0 && dup2(null, STDIN_FILENO) >= 0 && close_range(STDERR_FILENO + 1, ~0U, 0) == 0 &&
           sigprocmask(SIG_SETMASK, &noSignals, nullptr) == 0 && setrlimit(RLIMIT_CORE, &none) == 0 &&
           prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) == 0 && clearenv() == 0 && chdir("/") == 0;
}

/// Closes the caller's pipe. From here on messages go to the log only.
void detachOutput() {
    const FileDescriptor null(open("/dev/null", O_RDWR | O_CLOEXEC));
    dup2(null.get(), STDOUT_FILENO);
    dup2(null.get(), STDERR_FILENO);
}

/// The directives of a configuration of which every one is allowed.
Result<std::vector<Directive>> allowedDirectives(const FileDescriptor &file) {
    const auto text = readAll(file, maximumConfigurationSize);
    if (!text) {
        return refusal(0, text.error());
    }
    auto directives = parse(text.value());
    if (directives) {
        if (const auto checked = check(directives.value()); !checked) {
            return Failure{checked.error()};
        }
    }
    return directives;
}

/// The servers that are given by their IPv4 address, in network byte order.
std::vector<std::uint32_t> serversOf(const std::vector<Directive> &directives) {
    std::vector<std::uint32_t> servers;
    for (const Directive &directive : directives) {
        in_addr address{};
        if (directive.name() == "remote" && inet_pton(AF_INET, directive.tokens[1].c_str(), &address) == 1) {
            servers.push_back(address.s_addr);
        }
    }
    return servers;
}

/// Locks out other guards until this process ends: the next one's OpenVPN may make the same route as this
/// one's. Fails when another guard does not end in time.
Result<FileDescriptor> waitForLock() {
    FileDescriptor lock(open(QUORVANE_LOCK, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    const auto end = std::chrono::steady_clock::now() + lockTimeout;
    while (flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK || std::chrono::steady_clock::now() > end) {
            return Failure{"another tunnel has not ended yet"};
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return lock;
}

/// A private copy of the file with user name and password. `owner`: the user who owns the configuration.
Result<FileDescriptor> credentialsCopy(const std::string &path, uid_t owner) {
    // The application knows OpenVPN's own text for it.
    const auto failure = [&path](const std::string &reason) {
        return Failure{"Options error: --auth-user-pass fails with '" + path + "': " + reason};
    };
    const auto file = openPlainFile(path, O_RDONLY);
    if (!file) {
        return failure(file.error());
    }
    if (file.value().owner != owner) {
        return failure("it belongs to another user");
    }
    const auto text = readAll(file.value().descriptor, maximumCredentialsSize);
    if (!text) {
        return failure(text.error());
    }
    auto copy = sealedCopy("credentials", text.value());
    if (!copy) {
        return failure(copy.error());
    }
    return copy;
}

/// Checks and copies the files for OpenVPN, then waits for the lock.
Result<Preparation> prepare(const Paths &paths, const OpenedFile &configuration) {
    const auto directives = allowedDirectives(configuration.descriptor);
    if (!directives) {
        return Failure{directives.error()};
    }
    auto credentials = credentialsCopy(paths.credentials, configuration.owner);
    if (!credentials) {
        return Failure{credentials.error()};
    }
    auto copy = sealedCopy("configuration", privateCopy(directives.value()));
    if (!copy) {
        return Failure{copy.error()};
    }
    auto lock = waitForLock();
    if (!lock) {
        return Failure{lock.error()};
    }
    return Preparation{serversOf(directives.value()), std::move(copy).value(), std::move(credentials).value(),
                       std::move(lock).value()};
}

/// Runs OpenVPN, or writes to the log why it is not started. `whileRunning`: see supervise().
void run(const Paths &paths, const OpenedFile &configuration, TunnelLog &log, FileDescriptor whileRunning) {
    if (!log.hasSpace()) {
        log.finish("there is no space left for the log");
        return;
    }
    const auto prepared = prepare(paths, configuration);
    if (!prepared) {
        log.finish(prepared.error());
        return;
    }
    const Preparation &inputs = prepared.value();
    const HostRoutes routes(inputs.servers);
    const std::string end = supervise({QUORVANE_OPENVPN,
                                       // OpenVPN uses the last value of an option: a level in the
                                       // configuration has no effect.
                                       {"--config", pathOf(inputs.configuration), "--script-security", "0",
                                        "--auth-user-pass", pathOf(inputs.credentials)},
                                       startTimeout,
                                       endTimeout},
                                      log, std::move(whileRunning));
    routes.removeNew();
    log.finish(end);
}

} // namespace

int main(int count, char **arguments) {
    Paths paths;
    if (!readCommandLine({arguments, static_cast<std::size_t>(count)}, paths)) {
        std::fputs("usage: openvpn --config FILE --auth-user-pass FILE --log-append FILE\n", stderr);
        return 2;
    }
    if (!harden()) {
        std::fprintf(stderr, "openvpn: %s\n", std::strerror(errno));
        return 1;
    }
    const auto configuration = openPlainFile(paths.configuration, O_RDONLY);
    auto log = openPlainFile(paths.log, O_WRONLY | O_APPEND);
    // One user must own the configuration and the log. Otherwise root would read or write a file for a user
    // who could not do so without root.
    if (!log || (configuration && configuration.value().owner != log.value().owner)) {
        std::fprintf(stderr, "openvpn: the log cannot be used: %s\n",
                     log ? "it belongs to another user" : log.error().c_str());
        return 1;
    }
    detachOutput();
    FileDescriptor lock = lockedLog(log.value().descriptor);
    TunnelLog tunnelLog(std::move(log).value().descriptor);
    if (!configuration) {
        tunnelLog.finish(refusal(0, configuration.error()).message);
        return 1;
    }
    run(paths, configuration.value(), tunnelLog, std::move(lock));
    return 0;
}
