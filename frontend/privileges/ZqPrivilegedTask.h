#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <memory>
#include <sys/types.h>

class QFile;

namespace quorvane {

/// A program started with administrator rights after the desktop asked the user for them. Nothing in the
/// program uses it yet. One thread, with an event loop for the notice of the program's end:
/// "ZqPrivilegedTaskDidTerminateNotification", with the task as object.
class ZqPrivilegedTask final : public QObject {
    Q_OBJECT

public:
    ZqPrivilegedTask();
    explicit ZqPrivilegedTask(const QString &launchPath, const QStringList &arguments = {});
    ~ZqPrivilegedTask() override;

    /// Makes the task, launches it and waits for its end.
    [[nodiscard]] static std::unique_ptr<ZqPrivilegedTask>
    launchedPrivilegedTaskWithLaunchPath(const QString &launchPath, const QStringList &arguments = {});

    [[nodiscard]] QStringList arguments() const { return m_argumentList; }

    [[nodiscard]] QString currentDirectoryPath() const { return m_cwd; }

    [[nodiscard]] bool isRunning() const { return m_running; }

    [[nodiscard]] QString launchPath() const { return m_path; }

    [[nodiscard]] pid_t processIdentifier() const { return m_pid; }

    [[nodiscard]] int terminationStatus() const { return m_status; }

    /// Reading end of the program's output; null until launched; owned by the task.
    [[nodiscard]] QFile *outputFileHandle() const { return m_output.get(); }

    void setArguments(const QStringList &argumentList) { m_argumentList = argumentList; }

    void setCurrentDirectoryPath(const QString &cwd) { m_cwd = cwd; }

    void setLaunchPath(const QString &path) { m_path = path; }

    /// 0 on success; AuthorizationService::toolMissing where the service is not on this machine; otherwise
    /// the service's own status.
    int launch();
    /// Does nothing: a privileged program is not this user's to end.
    void terminate();
    void waitUntilExit();
    [[nodiscard]] QString description() const;

private:
    void checkTaskStatus();

    QStringList m_argumentList;
    QString m_cwd;
    QString m_path;
    bool m_running = false;
    pid_t m_pid = 0;
    int m_status = 0;
    std::unique_ptr<QFile> m_output;
    QTimer m_checkStatusTimer;
};

} // namespace quorvane
