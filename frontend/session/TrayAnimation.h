#pragma once

#include "SessionWindow.h"
#include "frontend/support/QrvThread.h"

#include <QObject>
#include <QString>
#include <memory>

namespace quorvane {

/// Turns the tray icon during an attempt: "A01" to "A14" and from the start again, one frame every 0.2
/// seconds, timed by its own thread. Main thread; frames are emitted there, and none after stop().
class TrayAnimation final : public QObject, public AttemptAnimation {
    Q_OBJECT

public:
    static constexpr quint32 frameMicroseconds = 200'000;

    explicit TrayAnimation(QObject *parent = nullptr);
    ~TrayAnimation() override;

    void start() override;
    void stop() override;

    void resetFrames() override { m_iconCount = 0; }

    [[nodiscard]] bool isRunning() const { return m_animateIconThread != nullptr; }

    /// Emits the next frame's image. The thread queues a call every 0.2 seconds.
    void animateTrayIcon();

Q_SIGNALS:
    void frame(const QString &image);

private:
    struct Relay;

    static void *loop(void *relay, void *unused2, void *unused3);

    quint32 m_iconCount = 0;
    std::unique_ptr<QrvThread> m_animateIconThread;
    std::shared_ptr<Relay> m_relay;
};

} // namespace quorvane
