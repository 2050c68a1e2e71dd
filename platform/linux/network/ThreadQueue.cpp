#include "ThreadQueue.h"

#include <pthread.h>

namespace quorvane::platform {

ThreadQueue::ThreadQueue(const QString &name) : state(std::make_shared<State>()) {
    // The kernel keeps 15 characters of a thread's name.
    thread = std::thread([shared = state, label = name.right(15).toLatin1()] {
        pthread_setname_np(pthread_self(), label.constData());
        run(*shared);
    });
}

ThreadQueue::~ThreadQueue() {
    {
        const std::lock_guard lock(state->mutex);
        state->ending = true;
        state->waiting.clear();
    }
    state->wake.notify_one();
    if (thread.get_id() == std::this_thread::get_id()) {
        thread.detach();
    } else {
        thread.join();
    }
}

void ThreadQueue::async(std::function<void()> work) {
    {
        const std::lock_guard lock(state->mutex);
        if (state->ending) {
            return;
        }
        state->waiting.push_back(std::move(work));
    }
    state->wake.notify_one();
}

void ThreadQueue::run(State &state) {
    for (;;) {
        std::function<void()> work;
        {
            std::unique_lock lock(state.mutex);
            state.wake.wait(lock, [&state] { return state.ending || !state.waiting.empty(); });
            if (state.ending) {
                return;
            }
            work = std::move(state.waiting.front());
            state.waiting.pop_front();
        }
        work();
    }
}

} // namespace quorvane::platform
