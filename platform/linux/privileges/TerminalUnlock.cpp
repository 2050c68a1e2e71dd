#include "platform/NetworkLock.h"

#include "platform/linux/process/ChildProcess.h"

#include <QFile>

#include <cerrno>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane::platform {

bool liftFromTerminal(const QString &resourcesFolder) {
    QByteArrayList words{QFile::encodeName(resourcesFolder) + "/networklock", "-lift"};
    if (::geteuid() != 0) {
        words = QByteArrayList{systemProgram("sudo"), "--"} + words;
    }
    std::vector<char *> arguments;
    for (QByteArray &word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    pid_t process = -1;
    if (::posix_spawn(&process, arguments.front(), nullptr, nullptr, arguments.data(), environ) != 0) {
        return false;
    }
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace quorvane::platform
