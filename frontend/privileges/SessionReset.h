#pragma once

#include <functional>

class QObject;

namespace quorvane {

/// Lets a failed privileged command reset the session without depending on it: a request returns the session
/// to not hidden.
class SessionReset {
public:
    /// Requests without a target have no effect. A null context takes the target back, which must be done
    /// before the context is destroyed, because requests come from any thread. Main thread.
    static void setTarget(QObject *context, std::function<void()> reset);
    /// Queues the reset on the main thread and does not wait for it. Any thread. Requests made before the
    /// target was set are lost.
    static void request();
};

} // namespace quorvane
