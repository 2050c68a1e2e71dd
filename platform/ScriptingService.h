#pragma once

#include <QString>
#include <memory>
#include <optional>

namespace quorvane::platform {

/// The result of one shell line.
struct ScriptResult {
    bool succeeded = false;
    /// The line's standard output, the last line feed removed; null when it failed.
    QString text;
    /// Why it failed: ScriptingService::refused, or the line's exit status. Absent after a success.
    std::optional<int> errorNumber;
    /// A message for the user; null after a success.
    QString errorMessage;
    /// What was asked instead of the administrator's password, or after it: the words of the prompt. Null
    /// when nothing else was asked. Such a question is never answered.
    QString otherQuestion = {};
    /// Expires when no process that the line left behind has its output open any more.
    std::weak_ptr<void> openOutput = {};
};

/// Runs shell lines, as the user or as the administrator.
///
/// Both operations block until the line's own process ends (not until its output is closed: a line that
/// ends in "&" leaves a child that may hold it). There is no time limit. Any thread.
class ScriptingService {
public:
    /// The administrator rights were refused to this account.
    static constexpr int refused = -128;

    virtual ~ScriptingService() = default;

    [[nodiscard]] virtual ScriptResult runAsUser(const QString &line) = 0;
    /// Checks the administrator's name (login or full name) and password, then runs the line as root. A null
    /// name or password means that it is missing, and is refused.
    [[nodiscard]] virtual ScriptResult runAsAdministrator(const QString &line, const QString &user,
                                                          const QString &password) = 0;
};

} // namespace quorvane::platform
