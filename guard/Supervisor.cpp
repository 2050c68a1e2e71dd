#include "Supervisor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace quorvane::guard {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char *ownName = "openvpn-guard";
/// How long the tunnel's own routes may be missing: OpenVPN removes them when it ends, and when it makes its
/// device anew for other settings of the server.
constexpr std::chrono::seconds lossTimeout{1};

sigset_t forwardedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}

[[noreturn]] void becomeOpenVpn(const OpenVpnCommand &command, pid_t guard, int output) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    std::vector<char *> arguments{const_cast<char *>(command.program.c_str())};
    for (const std::string &argument : command.arguments) {
        arguments.push_back(const_cast<char *>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    std::array<char, 64> path{"PATH=/usr/sbin:/usr/bin:/sbin:/bin"};
    std::array<char *, 2> environment{path.data(), nullptr};

    // The parent is checked after the death signal is set: had the guard ended before, no signal would come.
    if (prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && getppid() == guard && dup2(output, STDOUT_FILENO) >= 0 &&
        dup2(output, STDERR_FILENO) >= 0) {
        prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
        execve(command.program.c_str(), arguments.data(), environment.data());
        dprintf(STDERR_FILENO, "%s cannot be started: %s\n", command.program.c_str(), std::strerror(errno));
    }
    _exit(127);
}

/// The OpenVPN process, from its start to its end.
class Child {
public:
    Child(const OpenVpnCommand &command, TunnelLog &log, SessionRoutes &routes, const LockOpenings &openings,
          FileDescriptor whileRunning)
        : m_command(command), m_log(log), m_routes(routes), m_openings(openings),
          m_whileRunning(std::move(whileRunning)) {}

    std::string run() {
        std::array<int, 2> pipe{};
        if (pipe2(pipe.data(), O_CLOEXEC) != 0) {
            return std::string("OpenVPN cannot be started: ") + std::strerror(errno);
        }
        m_output = FileDescriptor(pipe[0]);
        FileDescriptor childOutput(pipe[1]);
        const sigset_t signals = forwardedSignals();
        sigprocmask(SIG_BLOCK, &signals, nullptr);
        m_signals = FileDescriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
        const pid_t guard = getpid();
        m_pid = fork();
        if (m_pid == 0) {
            becomeOpenVpn(m_command, guard, childOutput.get());
        }
        if (m_pid < 0) {
            return std::string("OpenVPN cannot be started: ") + std::strerror(errno);
        }
        childOutput.reset();
        m_process = FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, m_pid, 0)));
        // A kill by name meets this process until here, and the child dies with it. From here on it meets the
        // child.
        prctl(PR_SET_NAME, ownName);
        m_deadline = Clock::now() + m_command.startTimeout;
        m_log.setReader([this](std::string_view line) { noteServer(line); });
        m_log.setConfirmation([this] { return confirm(); });
        while (copyOutput()) {
        }
        return end();
    }

private:
    /// Waits for output, a signal, a change of the routes, the child's end or the deadline. False when there
    /// will be no more output.
    bool copyOutput() {
        // A negative descriptor is left out by poll.
        std::array<pollfd, 4> watched{{{m_output.get(), POLLIN, 0},
                                       {m_signals.get(), POLLIN, 0},
                                       {m_process.get(), POLLIN, 0},
                                       {m_routes.changesDescriptor(), POLLIN, 0}}};
        const int ready = poll(watched.data(), watched.size(), timeLeft());
        if (ready < 0) {
            return errno == EINTR;
        }
        if (watched[1].revents != 0) {
            forwardSignal();
        }
        // Also while output goes on without a pause.
        if (m_deadline && Clock::now() >= *m_deadline) {
            giveUp();
        }
        if (m_lossDeadline && Clock::now() >= *m_lossDeadline && m_reason.empty()) {
            m_log.addOwnLine("the tunnel is ended: its device does not carry all IPv4 addresses any more");
            killAtOnce("the tunnel was ended");
        }
        if (watched[3].revents != 0) {
            checkRoutes();
        }
        const bool more = watched[0].revents == 0 || readOutput();
        // The rest of its output is read first. The end of the output cannot be awaited: another process may
        // keep it open indefinitely.
        return more && (watched[2].revents == 0 || watched[0].revents != 0);
    }

    bool readOutput() {
        std::array<char, 4096> buffer{};
        const ssize_t count = read(m_output.get(), buffer.data(), buffer.size());
        if (count <= 0) {
            return count < 0 && (errno == EINTR || errno == EAGAIN);
        }
        m_log.add({buffer.data(), static_cast<std::size_t>(count)});
        if (m_log.isRefused()) {
            killAtOnce("the tunnel was refused");
        } else if (m_log.isUp() && !m_hasGivenUp) {
            m_deadline.reset();
        } else if (!m_log.isComplete()) {
            // The log could no longer report that the tunnel is up.
            giveUp();
        }
        return true;
    }

    /// Milliseconds until the next deadline, for poll.
    [[nodiscard]] int timeLeft() const {
        auto next = m_deadline;
        if (m_lossDeadline && m_reason.empty()) {
            next = next ? std::min(*next, *m_lossDeadline) : m_lossDeadline;
        }
        if (!next) {
            return -1;
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - Clock::now()).count();
        return static_cast<int>(std::max<std::int64_t>(left, 0));
    }

    void forwardSignal() const {
        signalfd_siginfo received{};
        if (read(m_signals.get(), &received, sizeof received) == sizeof received) {
            kill(m_pid, static_cast<int>(received.ssi_signo));
        }
    }

    /// Ends OpenVPN by SIGTERM, upon which it removes its routes. The second call kills it.
    void giveUp() {
        if (m_hasGivenUp) {
            kill(m_pid, SIGKILL);
            m_deadline.reset();
            return;
        }
        m_hasGivenUp = true;
        m_log.giveUp();
        kill(m_pid, SIGTERM);
        m_deadline = Clock::now() + m_command.endTimeout;
    }

    void killAtOnce(const std::string &reason) {
        if (m_reason.empty()) {
            m_reason = reason;
            m_log.giveUp();
        }
        kill(m_pid, SIGKILL);
    }

    Result<> confirm() {
        if (auto checked = m_routes.checkUp(m_pid); !checked) {
            return checked;
        }
        return m_openings.openForDevice(m_routes.device());
    }

    void checkRoutes() {
        if (const auto checked = m_routes.checkChanges(); !checked && m_reason.empty()) {
            m_log.addOwnLine(checked.error());
            killAtOnce("the tunnel was ended");
        }
        if (m_routes.carriesAllAddresses()) {
            m_lossDeadline.reset();
        } else if (!m_lossDeadline) {
            m_lossDeadline = Clock::now() + lossTimeout;
        }
    }

    /// OpenVPN logs the address of its server, which the configuration may name instead.
    void noteServer(std::string_view line) {
        if (const auto server = serverIn(line)) {
            m_routes.addServer(*server);
        }
    }

    [[nodiscard]] std::string end() {
        int status = 0;
        // It closed its output, so it is ending. A child that only closed its output must not run on
        // unwatched.
        kill(m_pid, SIGKILL);
        while (waitpid(m_pid, &status, 0) < 0 && errno == EINTR) {
        }
        m_whileRunning.reset();
        if (!m_reason.empty()) {
            return m_reason;
        }
        if (m_hasGivenUp) {
            return "the tunnel did not come up in time";
        }
        if (WIFSIGNALED(status)) {
            return "OpenVPN was ended by signal " + std::to_string(WTERMSIG(status));
        }
        return "OpenVPN ended with status " + std::to_string(WEXITSTATUS(status));
    }

    const OpenVpnCommand &m_command;
    TunnelLog &m_log;
    SessionRoutes &m_routes;
    const LockOpenings &m_openings;
    FileDescriptor m_whileRunning;
    FileDescriptor m_output;
    FileDescriptor m_signals;
    FileDescriptor m_process; ///< readable once the child has ended
    pid_t m_pid = -1;
    std::optional<Clock::time_point> m_deadline;
    std::optional<Clock::time_point> m_lossDeadline; ///< set while the tunnel's own routes are missing
    bool m_hasGivenUp = false;
    std::string m_reason; ///< why it was killed at once
};

} // namespace

std::string supervise(const OpenVpnCommand &command, TunnelLog &log, SessionRoutes &routes,
                      const LockOpenings &openings, FileDescriptor whileRunning) {
    return Child(command, log, routes, openings, std::move(whileRunning)).run();
}

} // namespace quorvane::guard
