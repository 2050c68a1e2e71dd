#include "ThreadQueue.h"

#include <pthread.h>

namespace quorvane::platform {

ThreadQueue::ThreadQueue(const QString &name) : m_state(std::make_shared<State>()) {
    // The kernel keeps 15 characters of a thread's name.
    m_thread = std::thread([shared = m_state, label = name.right(15).toLatin1()] {
        pthread_setname_np(pthread_self(), label.constData());
        run(*shared);
    });
}

ThreadQueue::~ThreadQueue() {
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->ending = true;
        m_state->waiting.clear();
    }
    m_state->wake.notify_one();
    if (m_thread.get_id() == std::this_thread::get_id()) {
        m_thread.detach();
    } else {
        m_thread.join();
    }
}

void ThreadQueue::async(std::function<void()> work) {
    {
        const std::lock_guard lock(m_state->mutex);
        if (m_state->ending) {
            return;
        }
        m_state->waiting.push_back(std::move(work));
    }
    m_state->wake.notify_one();
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
