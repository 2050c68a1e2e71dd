#pragma once

#include <functional>

class QObject;

namespace quorvane::platform {

/// Calls after a delay on the caller's event loop.
///
/// A call belongs to a target: it is dropped when the target is destroyed, and cancelAll() drops every
/// pending call of a target. Calls that are due at the same time run in the order in which they were
/// requested. Used from the main thread.
class DelayedCalls {
public:
    virtual ~DelayedCalls() = default;

    virtual void callAfter(double seconds, QObject *target, std::function<void()> call) = 0;
    virtual void cancelAll(const QObject *target) = 0;
};

} // namespace quorvane::platform
