#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

/// Runs the main loop until the condition is true; false when the time is over first.
template <typename Condition>
bool spinUntil(Condition condition, int milliseconds = 10000) {
    const QDeadlineTimer deadline(milliseconds);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    }
    return true;
}

/// Delivers everything that is queued now.
inline void deliverQueued() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}
