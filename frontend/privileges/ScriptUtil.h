#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// Runs commands as administrator and guards the system's DNS servers. Callers make one, use it and drop it.
/// Every operation blocks its thread until the command has ended. Any thread.
class ScriptUtil {
public:
    /// Joins the words with single blanks (nothing is quoted or escaped; no arguments leave one blank at
    /// the end) and runs the line as administrator with the stored pair.
    ///
    /// True on success, with the line's output. On failure the error description is a message for the user
    /// or null, and the session is returned to not hidden. A stored name or password that is the empty text
    /// gives false at once, with nothing else done.
    bool runProcessAsAdministrator(const QString &launchPath, const QStringList &arguments, QString &output,
                                   QString &errorDescription);

    /// Whether the wired and the wireless service both list the two public resolvers.
    [[nodiscard]] bool getSystemDns();
    [[nodiscard]] bool getEthernetDns();
    [[nodiscard]] bool getWifiDns();
    /// Sets the two public resolvers on three services; the answer is the third one's alone.
    bool setSystemDns();

private:
    [[nodiscard]] bool listsResolvers(const QString &command);
};

} // namespace quorvane
