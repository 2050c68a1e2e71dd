#pragma once

#include <QObject>

class QSocketNotifier;

namespace quorvane::platform {

/// Makes every file that the process creates private (umask 077) and disables its core dumps, which would
/// contain the administrator's password; a debug build keeps them. Programs that are started inherit both.
/// Other programs of the same user may still inspect the process: the desktop portal must. A write to a
/// closed pipe fails with EPIPE instead of ending the process; started programs are not affected. Called
/// first in main().
void hardenProcess();

/// Emits quitRequested on the main thread's event loop after SIGTERM, SIGINT or SIGHUP, and when the X
/// session manager has closed its connection, so that the tunnel is also stopped when the desktop session
/// ends. At most one object at a time, made after the application; main thread.
class QuitSignals final : public QObject {
    Q_OBJECT

public:
    explicit QuitSignals(QObject *parent = nullptr);
    ~QuitSignals() override;

Q_SIGNALS:
    void quitRequested();

private:
    QSocketNotifier *m_notifier = nullptr;
};

} // namespace quorvane::platform
