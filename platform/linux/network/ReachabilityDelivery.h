#pragma once

#include "platform/NetworkReachability.h"

#include <memory>

namespace quorvane::platform {

/// The delivering half of a reachability target: receives states from a watcher and calls the callback on the
/// queue with the first one and every change. Safe from any thread.
class ReachabilityDelivery {
public:
    ReachabilityDelivery();
    ~ReachabilityDelivery();
    ReachabilityDelivery(const ReachabilityDelivery &) = delete;
    ReachabilityDelivery &operator=(const ReachabilityDelivery &) = delete;

    void setCallback(ReachabilityTarget::Callback callback);
    /// Null ends the delivery: no callback runs after this function has returned, unless the callback itself
    /// calls it.
    void setQueue(SerialQueue *queue);
    /// Receives a state; it is delivered when it is the first one on this queue or differs from the one
    /// before.
    void report(std::uint32_t flags);

private:
    struct State;
    // Shared with the work that waits on the queue.
    std::shared_ptr<State> m_state;
};

} // namespace quorvane::platform
