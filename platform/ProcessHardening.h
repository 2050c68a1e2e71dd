#pragma once

#include <QObject>

class QSocketNotifier;

namespace quorvane::platform {

/// Makes every file that the process creates private (umask 077) and switches its core dumps off: a core
/// would hold the administrator's password. First thing in main().
void hardenProcess();

/// Turns SIGTERM, SIGINT and SIGHUP into the quit signal of the main thread's event loop, so that the end
/// of a desktop session still stops the tunnel. One at a time; main thread.
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
