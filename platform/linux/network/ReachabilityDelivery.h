#pragma once

#include "platform/NetworkReachability.h"

#include <memory>

namespace quorvane::platform {

/// The delivering half of a reachability target: takes states from a watcher and hands the first one
/// and every change to the callback, on the queue. Safe from any thread.
class ReachabilityDelivery {
public:
    ReachabilityDelivery();
    ~ReachabilityDelivery();
    ReachabilityDelivery(const ReachabilityDelivery &) = delete;
    ReachabilityDelivery &operator=(const ReachabilityDelivery &) = delete;

    void setCallback(ReachabilityTarget::Callback callback);
    /// Null ends the delivery: no callback runs after the return, unless this is the callback's own call.
    void setQueue(SerialQueue *queue);
    /// Takes a state; delivered when it is the first on this queue or differs from the one before.
    void report(std::uint32_t flags);

private:
    struct State;
    // Shared with the work that waits on the queue.
    std::shared_ptr<State> m_state;
};

} // namespace quorvane::platform
