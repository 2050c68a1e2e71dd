#pragma once

#include <functional>

class QObject;

namespace quorvane {

/// The way from a failed privileged command back to the session, without knowing the session: once a
/// session is there, a request returns it to not hidden.
class SessionReset {
public:
    /// Until a target is set, and after its context went, requests go nowhere. Main thread.
    static void setTarget(QObject *context, std::function<void()> reset);
    /// Has the main thread run the reset, without waiting for it. Any thread. Requests made before the
    /// target was set are lost.
    static void request();
};

} // namespace quorvane
