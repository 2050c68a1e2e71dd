#include "PkexecAuthorizationService.h"

#include "platform/linux/process/ChildProcess.h"

#include <QFile>

#include <cerrno>
#include <chrono>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace quorvane::platform {

namespace {

/// pkexec finds the user's session and its agent through the environment, and cleans it itself.
QByteArrayList ownEnvironment() {
    QByteArrayList entries;
    for (char **entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        entries.append(*entry);
    }
    return entries;
}

QByteArray findTool(const QByteArray &given) {
    if (given.isEmpty()) {
        return systemProgram("pkexec");
    }
    return ::access(given.constData(), X_OK) == 0 ? given : QByteArray();
}

/// Waits until no process holds the other end of the pipe.
void waitForEnd(const FileDescriptor &pipe) {
    char byte = 0;
    ssize_t got = 1;
    while (got > 0 || (got < 0 && errno == EINTR)) {
        got = ::read(pipe.get(), &byte, 1);
    }
}

/// The end of a process that was not waited for; it can be waited for afterwards, too.
std::optional<siginfo_t> endOf(pid_t pid) {
    siginfo_t end{};
    const int outcome = ::waitid(P_PID, static_cast<id_t>(pid), &end, WEXITED | WNOHANG | WNOWAIT);
    return outcome == 0 && end.si_pid == pid ? std::optional(end) : std::nullopt;
}

/// The command name of a process, also of one that has ended and was not waited for. Empty if this user may
/// not see it.
QByteArray commandName(pid_t pid) {
    QFile file(QStringLiteral("/proc/%1/comm").arg(pid));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

/// Collects a process that was refused the rights. Returns the status of the refusal.
int refusal(pid_t pid, bool dismissed) {
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    return dismissed ? AuthorizationService::cancelled : AuthorizationService::denied;
}

/// Waits for the user's decision. Returns the status of a refusal, or 0 if pkexec was granted the rights and
/// has replaced itself by the program.
///
/// pkexec prompts, then replaces itself by the program and closes all but the standard descriptors. So the
/// pipe that it holds ends at the decision. Within the next moment either its command name becomes the
/// program's or it has ended under its own name. Where the name cannot be seen its exit status decides.
int decision(pid_t pid, const QByteArray &tool, const FileDescriptor &held) {
    constexpr int exitDismissed = 126;
    constexpr int exitDenied = 127;
    constexpr qsizetype longestName = 15;
    constexpr auto longestMoment = std::chrono::seconds(1);
    const QByteArray own = tool.mid(tool.lastIndexOf('/') + 1).left(longestName);
    waitForEnd(held);
    const auto decided = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - decided < longestMoment) {
        const auto end = endOf(pid);
        const QByteArray name = commandName(pid);
        if (!name.isEmpty() && name != own) {
            return 0;
        }
        if (end) {
            const int status = end->si_code == CLD_EXITED ? end->si_status : -1;
            const bool refused = !name.isEmpty() || status == exitDismissed || status == exitDenied;
            return refused ? refusal(pid, status == exitDismissed) : 0;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return 0;
}

} // namespace

PkexecAuthorizationService::PkexecAuthorizationService(const QByteArray &tool) : m_givenTool(tool) {}

bool PkexecAuthorizationService::lookUp() {
    return !findTool(m_givenTool).isEmpty();
}

PrivilegedProcess PkexecAuthorizationService::launch(const QString &program, const QByteArrayList &arguments,
                                                     const QString &folder) {
    const QByteArray tool = findTool(m_givenTool);
    if (tool.isEmpty()) {
        return {toolMissing, -1, -1};
    }
    const QByteArray path = QFile::encodeName(program);
    // The tool has no marker for the end of its options.
    if (path.isEmpty() || path.startsWith('-')) {
        return {EINVAL, -1, -1};
    }
    ChildCommand command;
    command.program = tool;
    command.arguments = {"pkexec", "--keep-cwd", "--disable-internal-agent", path};
    command.arguments += arguments;
    command.environment = ownEnvironment();
    command.folder = QFile::encodeName(folder);
    FileDescriptor output;
    FileDescriptor held;
    const auto pid = startChild(command, output, held);
    if (!pid) {
        return {errno, -1, -1};
    }
    if (const int status = decision(*pid, tool, held); status != 0) {
        return {status, -1, -1};
    }
    return {0, *pid, output.release()};
}

std::optional<int> PkexecAuthorizationService::wait(pid_t pid, bool block) {
    int status = 0;
    pid_t ended = 0;
    do {
        ended = ::waitpid(pid, &status, block ? 0 : WNOHANG);
    } while (ended < 0 && errno == EINTR);
    return ended == pid ? std::optional(status) : std::nullopt;
}

} // namespace quorvane::platform
