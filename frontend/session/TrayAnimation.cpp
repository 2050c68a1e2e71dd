#include "TrayAnimation.h"

#include <mutex>

namespace quorvane {

namespace {

// "A15" exists as an image and is never shown.
constexpr quint32 frames = 15;

QString frameName(quint32 number) {
    return QStringLiteral("A%1").arg(number, 2, 10, QChar(u'0'));
}

} // namespace

/// The thread's reference to its animation. It may live a moment longer than the animation.
struct TrayAnimation::Relay {
    std::mutex mutex;
    TrayAnimation *target = nullptr;
};

TrayAnimation::TrayAnimation(QObject *parent) : QObject(parent) {}

TrayAnimation::~TrayAnimation() {
    stop();
}

void TrayAnimation::start() {
    if (m_animateIconThread) {
        return;
    }
    m_iconCount = 0;
    m_relay = std::make_shared<Relay>();
    m_relay->target = this;
    auto share = std::make_unique<std::shared_ptr<Relay>>(m_relay);
    m_animateIconThread = std::make_unique<QrvThread>();
    if (m_animateIconThread->run(&TrayAnimation::loop, share.get(), nullptr, nullptr) == 0) {
        static_cast<void>(share.release()); // the thread owns it now
        m_animateIconThread->detach();
    } else {
        m_animateIconThread.reset();
    }
}

void TrayAnimation::stop() {
    if (m_relay) {
        const std::lock_guard lock(m_relay->mutex);
        m_relay->target = nullptr;
    }
    m_relay.reset();
    m_animateIconThread.reset();
}

void TrayAnimation::animateTrayIcon() {
    if (m_iconCount + 1 < frames) {
        ++m_iconCount;
    } else {
        m_iconCount = 1;
    }
    Q_EMIT frame(frameName(m_iconCount));
}

void *TrayAnimation::loop(void *argument, void * /*unused2*/, void * /*unused3*/) {
    // Cancellation unwinds this frame and releases the share.
    const std::unique_ptr<std::shared_ptr<Relay>> share(static_cast<std::shared_ptr<Relay> *>(argument));
    const std::shared_ptr<Relay> own = *share;
    for (;;) {
        QrvThread::cancellationPoint(frameMicroseconds);
        const std::lock_guard lock(own->mutex);
        if (own->target == nullptr) {
            return nullptr;
        }
        QMetaObject::invokeMethod(
            own->target,
            [animation = own->target, own] {
                if (animation->m_relay == own) { // a frame of a stopped run is dropped
                    animation->animateTrayIcon();
                }
            },
            Qt::QueuedConnection);
    }
}

} // namespace quorvane
