#include "ReachabilityDelivery.h"

#include <atomic>
#include <mutex>

namespace quorvane::platform {

// Two locks, taken in the order delivering, routing by the queue's thread: a callback may stop its own
// delivery. Both are recursive because a queue may run its work at once, on the reporting thread.
struct ReachabilityDelivery::State {
    std::recursive_mutex delivering;
    ReachabilityTarget::Callback callback;

    std::recursive_mutex routing;
    SerialQueue *queue = nullptr;
    std::optional<std::uint32_t> last;

    /// Counts the queues set so far; work made for an earlier one is void.
    std::atomic<std::uint64_t> generation = 0;
};

ReachabilityDelivery::ReachabilityDelivery() : state(std::make_shared<State>()) {}

ReachabilityDelivery::~ReachabilityDelivery() {
    setQueue(nullptr);
}

void ReachabilityDelivery::setCallback(ReachabilityTarget::Callback callback) {
    const std::lock_guard lock(state->delivering);
    state->callback = std::move(callback);
}

void ReachabilityDelivery::setQueue(SerialQueue *queue) {
    {
        const std::lock_guard lock(state->routing);
        ++state->generation;
        state->queue = queue;
        state->last.reset();
    }
    // Waits for a callback that is running on another thread.
    const std::lock_guard lock(state->delivering);
}

void ReachabilityDelivery::report(std::uint32_t flags) {
    const std::lock_guard lock(state->routing);
    if (state->queue == nullptr || state->last == flags) {
        return;
    }
    state->last = flags;
    state->queue->async([shared = state, flags, generation = state->generation.load()] {
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
