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

/// What the thread knows of its animation. It may live a moment longer than the animation.
struct TrayAnimation::Relay {
    std::mutex mutex;
    TrayAnimation *target = nullptr;
};

TrayAnimation::TrayAnimation(QObject *parent) : QObject(parent) {}

TrayAnimation::~TrayAnimation() {
    stop();
}

void TrayAnimation::start() {
    if (animateIconThread) {
        return;
    }
    iconCount = 0;
    relay = std::make_shared<Relay>();
    relay->target = this;
    auto share = std::make_unique<std::shared_ptr<Relay>>(relay);
    animateIconThread = std::make_unique<QrvThread>();
    if (animateIconThread->run(&TrayAnimation::loop, share.get(), nullptr, nullptr) == 0) {
        static_cast<void>(share.release()); // now the thread's
        animateIconThread->detach();
    } else {
        animateIconThread.reset();
    }
}

void TrayAnimation::stop() {
    if (relay) {
        const std::lock_guard lock(relay->mutex);
        relay->target = nullptr;
    }
    relay.reset();
    animateIconThread.reset();
}

void TrayAnimation::animateTrayIcon() {
    if (iconCount + 1 < frames) {
        ++iconCount;
    } else {
        iconCount = 1;
    }
    Q_EMIT frame(frameName(iconCount));
}

void *TrayAnimation::loop(void *argument, void * /*unused2*/, void * /*unused3*/) {
    // Cancellation unwinds this frame and gives the share back.
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
                if (animation->relay == own) { // a frame of a stopped run is dropped
                    animation->animateTrayIcon();
                }
            },
            Qt::QueuedConnection);
    }
}

} // namespace quorvane
