#pragma once

#include <functional>

class QObject;

namespace quorvane::platform {

/// Calls after a delay on the caller's event loop.
///
/// A call belongs to a target: it is dropped when the target goes, and cancelAll() drops every call of
/// a target that is still due. Calls of equal due time run in the order in which they were asked for.
/// Used from the main thread.
class DelayedCalls {
public:
    virtual ~DelayedCalls() = default;

    virtual void callAfter(double seconds, QObject *target, std::function<void()> call) = 0;
    virtual void cancelAll(const QObject *target) = 0;
};

} // namespace quorvane::platform
