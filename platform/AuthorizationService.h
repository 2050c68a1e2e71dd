#pragma once

#include <QByteArrayList>
#include <QString>
#include <optional>
#include <sys/types.h>

namespace quorvane::platform {

/// A privileged process started by AuthorizationService.
struct PrivilegedProcess {
    /// 0 on success; otherwise the reason, and the other fields are meaningless.
    int status = 0;
    pid_t pid = -1;
    /// Reading end of the process's standard output; the receiver closes it.
    int outputDescriptor = -1;
};

/// Starts a program with administrator rights, for which the desktop itself prompts the user. Any thread.
class AuthorizationService {
public:
    /// The service is not installed on this machine.
    static constexpr int toolMissing = -70001;
    /// The rights were not granted: the user may not have them, or did not prove to be an administrator.
    static constexpr int denied = -60005;
    /// The user dismissed the prompt.
    static constexpr int cancelled = -60006;

    virtual ~AuthorizationService() = default;

    /// Looks the service up; called once, on first use.
    [[nodiscard]] virtual bool lookUp() = 0;
    /// Runs the program in the given folder. Arguments are passed as they are, never through a shell. Waits
    /// for the user's decision, and returns when the program runs or the rights were refused.
    [[nodiscard]] virtual PrivilegedProcess launch(const QString &program, const QByteArrayList &arguments,
                                                   const QString &folder) = 0;
    /// Waits for the process; when block is false, only checks it. Returns the wait status once the process
    /// has ended.
    [[nodiscard]] virtual std::optional<int> wait(pid_t pid, bool block) = 0;
};

} // namespace quorvane::platform
