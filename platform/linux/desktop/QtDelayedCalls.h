#pragma once

#include "platform/DelayedCalls.h"

#include <QHash>
#include <QList>
#include <QPointer>
#include <QTimer>

namespace quorvane::platform {

/// DelayedCalls over the Qt event loop of the calling thread.
class QtDelayedCalls final : public DelayedCalls {
public:
    QtDelayedCalls() = default;
    ~QtDelayedCalls() override;
    QtDelayedCalls(const QtDelayedCalls &) = delete;
    QtDelayedCalls &operator=(const QtDelayedCalls &) = delete;

    void callAfter(double seconds, QObject *target, std::function<void()> call) override;
    void cancelAll(const QObject *target) override;

private:
    void dropDeadTimers();

    QHash<const QObject *, QList<QPointer<QTimer>>> m_due;
};

} // namespace quorvane::platform
