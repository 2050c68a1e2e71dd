#include "PkexecAuthorizationService.h"

#include "platform/linux/process/ChildProcess.h"

#include <QFile>

#include <cerrno>
#include <sys/wait.h>
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

} // namespace

PkexecAuthorizationService::PkexecAuthorizationService(const QByteArray &tool) : m_givenTool(tool) {}

bool PkexecAuthorizationService::lookUp() {
    return !findTool(m_givenTool).isEmpty();
}

PrivilegedProcess PkexecAuthorizationService::launch(const QString &program, const QStringList &arguments,
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
    for (const QString &argument : arguments) {
        command.arguments.append(QFile::encodeName(argument));
    }
    command.environment = ownEnvironment();
    command.folder = QFile::encodeName(folder);
    FileDescriptor output;
    const auto pid = startChild(command, output);
    if (!pid) {
        return {errno, -1, -1};
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
