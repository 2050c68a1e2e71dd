#include "QtDelayedCalls.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane::platform {

QtDelayedCalls::~QtDelayedCalls() {
    for (const auto &timers : std::exchange(m_due, {})) {
        for (const QPointer<QTimer> &timer : timers) {
            delete timer.data();
        }
    }
}

void QtDelayedCalls::callAfter(double seconds, QObject *target, std::function<void()> call) {
    dropDeadTimers();
    // The target is the timer's parent, so the call is dropped with the target.
    auto *timer = new QTimer(target);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    m_due[target].append(timer);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, call = std::move(call)] {
        // The call may delete its target, and this timer with it.
        const auto work = call;
        timer->deleteLater();
        work();
    });
    constexpr double maximumMilliseconds = 2147483647.0;
    timer->start(static_cast<int>(std::clamp(std::ceil(seconds * 1000.0), 0.0, maximumMilliseconds)));
}

void QtDelayedCalls::cancelAll(const QObject *target) {
    const auto timers = m_due.take(target);
    for (const QPointer<QTimer> &timer : timers) {
        if (timer.isNull()) {
            continue;
        }
        // Deleted later, because the caller may be the call that is running now.
        timer->stop();
        timer->deleteLater();
    }
}

void QtDelayedCalls::dropDeadTimers() {
    for (auto entry = m_due.begin(); entry != m_due.end();) {
        entry->removeIf([](const QPointer<QTimer> &timer) { return timer.isNull(); });
        entry = entry->isEmpty() ? m_due.erase(entry) : std::next(entry);
    }
}

} // namespace quorvane::platform
