#include "SessionReset.h"

#include <QMetaObject>
#include <QPointer>
#include <mutex>

namespace quorvane {

namespace {

struct Target {
    std::mutex mutex;
    QPointer<QObject> context;
    std::function<void()> reset;
};

Target &target() {
    static Target instance;
    return instance;
}

} // namespace

void SessionReset::setTarget(QObject *context, std::function<void()> reset) {
    const std::lock_guard lock(target().mutex);
    target().context = context;
    target().reset = std::move(reset);
}

void SessionReset::request() {
    const std::lock_guard lock(target().mutex);
    if (target().context) {
        QMetaObject::invokeMethod(target().context, target().reset, Qt::QueuedConnection);
    }
}

} // namespace quorvane
