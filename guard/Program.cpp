// The guard checks everything that the real OpenVPN is to receive, starts OpenVPN and watches it until it
// ends.

#include "Program.h"

#include "AllowList.h"
#include "Caller.h"
#include "Configuration.h"
#include "Files.h"
#include "LockOpenings.h"
#include "SessionRoutes.h"
#include "Supervisor.h"
#include "TunnelLog.h"
#include "common/ProgramFiles.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace quorvane::guard {

namespace {

constexpr std::size_t maximumCredentialsSize = 4096;
constexpr std::chrono::seconds lockTimeout{5};

struct Paths {
    std::string configuration;
    std::string credentials;
    std::string log;
};

/// What OpenVPN receives.
struct Inputs {
    std::set<Network> servers; ///< see serversOf()
    std::set<Endpoint> endpoints;
    FileDescriptor configuration;
    FileDescriptor credentials;
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

/// The servers that are given by their address.
std::set<Network> serversOf(const std::vector<Directive> &directives) {
    std::set<Network> servers;
    for (const Directive &directive : directives) {
        if (directive.name() == "connection") {
            if (const auto within = parseBlock(directive)) {
                servers.merge(serversOf(within.value()));
            }
        } else if (directive.name() == "remote") {
            if (auto server = hostOf(directive.tokens[1])) {
                servers.insert(std::move(*server));
            }
        }
    }
    return servers;
}

/// Locks out other guards until this process ends: the next one's OpenVPN may make the same route as this
/// one's.
class Lock {
public:
    explicit Lock(const std::string &path)
        : m_file(open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600)) {}

    /// True when this process has the lock now. Does not wait.
    bool isTaken() {
        m_isTaken = m_isTaken || flock(m_file.get(), LOCK_EX | LOCK_NB) == 0;
        return m_isTaken;
    }

    /// Fails when another guard does not end in time.
    Result<> wait() {
        if (!m_file.isOpen()) {
            return Failure{"the file that keeps two guards apart cannot be opened"};
        }
        const auto end = std::chrono::steady_clock::now() + lockTimeout;
        while (!isTaken()) {
            if (errno != EWOULDBLOCK || std::chrono::steady_clock::now() > end) {
                return Failure{"another tunnel has not ended yet"};
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return {};
    }

private:
    FileDescriptor m_file;
    bool m_isTaken = false;
};

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

/// Checks and copies the files for OpenVPN.
Result<Inputs> prepare(const Paths &paths, const OpenedFile &configuration) {
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
    return Inputs{serversOf(directives.value()), endpointsOf(directives.value()), std::move(copy).value(),
                  std::move(credentials).value()};
}

/// What the server may push, each with the blank that ends the name: OpenVPN compares beginnings. Without
/// protocol-flags and push-continuation no session comes up; the others are needed to use the tunnel at all.
/// Nothing here can add a route, a filter or a log level. The value of route-gateway cannot be filtered; see
/// SessionRoutes::checkUp().
constexpr std::array acceptedPushes{
    "ifconfig ",       "ifconfig-ipv6 ",  "topology ",   "route-gateway ",     "tun-mtu ",
    "ping ",           "ping-restart ",   "ping-exit ",  "peer-id ",           "cipher ",
    "protocol-flags ", "key-derivation ", "auth-token ", "push-continuation ", "dhcp-option DNS ",
};

OpenVpnCommand commandFor(const Inputs &inputs, const Settings &settings) {
    // Of most options OpenVPN uses the last value, so these win over the configuration's.
    std::vector<std::string> arguments{
        "--config",
        pathOf(inputs.configuration),
        "--script-security",
        "0",
        "--auth-user-pass",
        pathOf(inputs.credentials),
        "--redirect-gateway",
        "def1",
        "--remote-cert-tls",
        "server",
        "--dev",
        "tun",
        // The device must belong to the process that is watched.
        "--disable-dco",
    };
    for (const char *name : acceptedPushes) {
        arguments.insert(arguments.end(), {"--pull-filter", "accept", name});
    }
    arguments.insert(arguments.end(), {"--pull-filter", "ignore", ""});
    return {settings.openVpn, std::move(arguments), settings.startTimeout, settings.endTimeout};
}

/// Runs OpenVPN, or writes to the log why it is not started. `whileRunning`: see supervise().
void run(const Paths &paths, const Result<OpenedFile> &configuration, const Settings &settings,
         Routing &routing, TunnelLog &log, FileDescriptor whileRunning) {
    Lock lock(settings.lock);
    SessionRoutes routes(routing, settings.record);
    const LockOpenings openings(settings.note, settings.nft);
    // Before anything else, and also when this guard then starts nothing.
    if (lock.isTaken()) {
        openings.close();
        routes.restoreAfterKilledGuard();
    }
    if (!configuration) {
        log.finish(refusal(0, configuration.error()).message);
        return;
    }
    if (!log.hasSpace()) {
        log.finish("there is no space left for the log");
        return;
    }
    const auto inputs = prepare(paths, configuration.value());
    if (!inputs) {
        log.finish(inputs.error());
        return;
    }
    if (const auto locked = lock.wait(); !locked) {
        log.finish(locked.error());
        return;
    }
    // The one that this guard has waited for may have been killed meanwhile.
    routes.restoreAfterKilledGuard();
    if (const auto begun = routes.begin(inputs.value().servers); !begun) {
        log.finish(begun.error());
        return;
    }
    if (const auto opened = openings.openForServers(inputs.value().endpoints); !opened) {
        routes.restore();
        log.finish(opened.error());
        return;
    }
    const std::string end =
        supervise(commandFor(inputs.value(), settings), log, routes, openings, std::move(whileRunning));
    openings.close();
    routes.restore();
    log.finish(end);
}

} // namespace

int runGuard(std::span<char *> arguments, const Settings &settings, Routing &routing) {
    Paths paths;
    if (!readCommandLine(arguments, paths)) {
        std::fputs("usage: openvpn --config FILE --auth-user-pass FILE --log-append FILE\n", stderr);
        return 2;
    }
    const auto caller = callerOf(std::getenv(callerVariable));
    if (!harden()) {
        std::fprintf(stderr, "openvpn: %s\n", std::strerror(errno));
        return 1;
    }
    const auto configuration = openPlainFile(paths.configuration, O_RDONLY);
    auto log = openPlainFile(paths.log, O_WRONLY | O_APPEND);
    // The caller must own the configuration and the log. Otherwise root would read or write a file for a user
    // who could not do so without root.
    const auto isOwn = [&caller](const OpenedFile &file) {
        return caller && file.owner == *caller;
    };
    if (!log || !isOwn(log.value()) || (configuration && !isOwn(configuration.value()))) {
        std::fprintf(stderr, "openvpn: the log cannot be used: %s\n",
                     log ? "it belongs to another user" : log.error().c_str());
        return 1;
    }
    detachOutput();
    FileDescriptor lock = lockedLog(log.value().descriptor);
    TunnelLog tunnelLog(std::move(log).value().descriptor);
    const uid_t owner = settings.isInstalled ? 0 : *caller;
    if (const auto checked = checkProgramFiles("/proc/self/exe", owner); !checked) {
        tunnelLog.finish("the program's files are refused: another user can change " +
                         quotedForLog(checked.error()));
        return 1;
    }
    run(paths, configuration, settings, routing, tunnelLog, std::move(lock));
    return configuration ? 0 : 1;
}

} // namespace quorvane::guard
