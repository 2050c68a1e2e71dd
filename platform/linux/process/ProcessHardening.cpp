#include "platform/ProcessHardening.h"

#include <QSocketNotifier>
#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

constexpr std::array<int, 3> quitSignals{SIGTERM, SIGINT, SIGHUP};
std::array<int, 2> pipeEnds{-1, -1};

void onSignal(int /*number*/) {
    const int interrupted = errno; // of the code that the signal interrupts
    const char byte = 1;
    // A full pipe means that a request to quit is already waiting.
    static_cast<void>(!write(pipeEnds[1], &byte, 1));
    errno = interrupted;
}

void onClosedPipe(int /*number*/) {}

/// libICE, through which Qt talks to an X session manager. Its own handler of a lost connection ends the
/// process at once, and a session manager may close the connection before the tunnel is ended.
class SessionManagerLibrary {
public:
    using Handler = void (*)(void *connection);

    /// For the rest of the process, because Qt closes the connection last. Does nothing where Qt has not
    /// loaded the library: there is no such connection then.
    static void install(Handler handler) {
        void *library = dlopen("libICE.so.6", RTLD_LAZY | RTLD_NOLOAD);
        if (library == nullptr) {
            return;
        }
        const auto setHandler =
            reinterpret_cast<Handler (*)(Handler)>(dlsym(library, "IceSetIOErrorHandler"));
        m_numberOf = reinterpret_cast<int (*)(void *)>(dlsym(library, "IceConnectionNumber"));
        if (setHandler != nullptr && m_numberOf != nullptr) {
            setHandler(handler);
        }
        dlclose(library);
    }

    [[nodiscard]] static int number(void *connection) { return m_numberOf(connection); }

private:
    static inline int (*m_numberOf)(void *connection) = nullptr;
};

void onLostSessionManager(void *connection) {
    onSignal(0);
    // Qt goes on reading from the connection until the program ends. A pipe stays silent whose other end is
    // open and never written to.
    std::array<int, 2> silent{-1, -1};
    if (pipe2(silent.data(), O_CLOEXEC) == 0) {
        dup3(silent[0], SessionManagerLibrary::number(connection), O_CLOEXEC);
        close(silent[0]);
    }
}

/// A write to a closed pipe fails instead of ending the program. By a handler and not by SIG_IGN, which
/// programs that are started would inherit: they get the default.
void ignoreClosedPipes() {
    struct sigaction action {};

    action.sa_handler = onClosedPipe;
    action.sa_flags = SA_RESTART;
    sigaction(SIGPIPE, &action, nullptr);
}

#ifndef QUORVANE_DEBUGGABLE
/// The process stays dumpable in the sense of prctl: the desktop portal opens /proc/PID/root of its callers,
/// and rejects those that do not permit it.
void disableCoreDumps() {
    rlimit limit{0, 0};
    if (getrlimit(RLIMIT_CORE, &limit) == 0) {
        // One byte is too small for a core file. For a core_pattern that is a pipe the kernel ignores a limit
        // of 0, but writes nothing at a limit of 1.
        limit.rlim_max = std::min<rlim_t>(limit.rlim_max, 1);
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_CORE, &limit);
    }
    // Should a dump be made after all (the limit was 0 already, and cannot be raised): without any memory.
    const int filter = open("/proc/self/coredump_filter", O_WRONLY | O_CLOEXEC);
    if (filter >= 0) {
        static_cast<void>(!write(filter, "0", 1));
        close(filter);
    }
}
#endif

} // namespace

void hardenProcess() {
    umask(077);
    ignoreClosedPipes();
#ifndef QUORVANE_DEBUGGABLE
    disableCoreDumps();
#endif
}

QuitSignals::QuitSignals(QObject *parent) : QObject(parent) {
    if (pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    m_notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes{};
        while (read(pipeEnds[0], bytes.data(), bytes.size()) > 0) {
        }
        Q_EMIT quitRequested();
    });

    SessionManagerLibrary::install(onLostSessionManager);

    struct sigaction action {};

    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : quitSignals) {
        sigaction(number, &action, nullptr);
    }
}

QuitSignals::~QuitSignals() {
    // The handlers stay: the program is ending already. Programs that it starts get the default.
    for (int &end : pipeEnds) {
        if (end >= 0) {
            close(end);
        }
        end = -1;
    }
}

} // namespace quorvane::platform
