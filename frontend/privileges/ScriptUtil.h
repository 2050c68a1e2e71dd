#pragma once

#include <QString>
#include <QStringList>
#include <memory>

namespace quorvane {

/// Runs commands as administrator, and checks and sets the system's DNS servers. Callers create one object
/// for each use. Every operation blocks its thread until the command has ended. Any thread.
class ScriptUtil {
public:
    /// Joins path and arguments with single blanks (nothing is quoted or escaped; without arguments the line
    /// ends in one blank) and runs the line as administrator with the stored pair.
    ///
    /// True on success, with the line's output. On failure the error description is a message for the user or
    /// null, and the session is returned to not hidden. If the stored name or password is the empty text (not
    /// null), returns false at once and does nothing else.
    bool runProcessAsAdministrator(const QString &launchPath, const QStringList &arguments, QString &output,
                                   QString &errorDescription);

    /// A refusal with this message is not logged: the same one was logged before. For the next command.
    void setKnownRefusal(const QString &message) { m_knownRefusal = message; }

    /// Why the last command failed, as the system reported it; null after a success.
    [[nodiscard]] QString refusal() const { return m_refusal; }

    /// What the last command was asked beside the password, in the words of the prompt; null for nothing.
    [[nodiscard]] QString otherQuestion() const { return m_otherQuestion; }

    /// Expires when no process that the last command left behind has its output open any more.
    [[nodiscard]] std::weak_ptr<void> openOutput() const { return m_openOutput; }

    /// Whether the wired and the wireless service both list the two public resolvers.
    [[nodiscard]] bool getSystemDns();
    [[nodiscard]] bool getEthernetDns();
    [[nodiscard]] bool getWifiDns();
    /// Sets the two public resolvers on three services; returns the result of the third one only. What the
    /// services had before is remembered first.
    bool setSystemDns();
    /// Sets what is remembered of each service, and forgets it where that succeeded. False, with a message
    /// for the user, when one of them could not be set.
    bool restoreSystemDns(QString &problem);

private:
    [[nodiscard]] bool listsResolvers(const QString &command);

    QString m_knownRefusal;
    QString m_refusal;
    QString m_otherQuestion;
    std::weak_ptr<void> m_openOutput;
};

} // namespace quorvane
