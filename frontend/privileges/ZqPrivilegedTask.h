#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <memory>
#include <sys/types.h>

class QFile;

namespace quorvane {

/// A program that is started with administrator rights after the desktop has authenticated the user. Nothing
/// uses it yet. One thread, with an event loop. The program's end is posted as
/// "ZqPrivilegedTaskDidTerminateNotification" with the task as object.
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

    /// Waits for the user's decision. 0 on success; AuthorizationService::toolMissing if this machine does
    /// not have the service; any other value is the service's own status, also for a refusal. An argument
    /// whose file-system form has more bytes than the argument has characters is cut to that many bytes.
    int launch();
    /// Does nothing: this user may not end a privileged program.
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
