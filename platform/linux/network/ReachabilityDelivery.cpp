#include "ReachabilityDelivery.h"

#include <atomic>
#include <mutex>

namespace quorvane::platform {

// Two locks, acquired in the order delivering, routing by the queue's thread: a callback may stop its own
// delivery. Both are recursive because a queue may run its work at once, on the reporting thread.
struct ReachabilityDelivery::State {
    std::recursive_mutex delivering;
    ReachabilityTarget::Callback callback;

    std::recursive_mutex routing;
    SerialQueue *queue = nullptr;
    std::optional<std::uint32_t> last;

    /// Counts the queues that were set; work for an earlier one is dropped.
    std::atomic<std::uint64_t> generation = 0;
};

ReachabilityDelivery::ReachabilityDelivery() : m_state(std::make_shared<State>()) {}

ReachabilityDelivery::~ReachabilityDelivery() {
    setQueue(nullptr);
}

void ReachabilityDelivery::setCallback(ReachabilityTarget::Callback callback) {
    const std::lock_guard lock(m_state->delivering);
    m_state->callback = std::move(callback);
}

void ReachabilityDelivery::setQueue(SerialQueue *queue) {
    {
        const std::lock_guard lock(m_state->routing);
        ++m_state->generation;
        m_state->queue = queue;
        m_state->last.reset();
    }
    // Waits for a callback that is running on another thread.
    const std::lock_guard lock(m_state->delivering);
}

void ReachabilityDelivery::report(std::uint32_t flags) {
    const std::lock_guard lock(m_state->routing);
    if (m_state->queue == nullptr || m_state->last == flags) {
        return;
    }
    m_state->last = flags;
    m_state->queue->async([shared = m_state, flags, generation = m_state->generation.load()] {
        const std::lock_guard delivery(shared->delivering);
        if (shared->generation != generation) {
            return;
        }
        const ReachabilityTarget::Callback callback = shared->callback;
        if (callback) {
            callback(flags);
        }
    });
}

} // namespace quorvane::platform
