#pragma once

#include "platform/NetworkReachability.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace quorvane::platform {

/// A SerialQueue over one thread of its own.
///
/// Destruction drops work that has not started and waits for the running piece, unless that piece itself
/// destroys the queue. Throws std::system_error when no thread can be created.
class ThreadQueue final : public SerialQueue {
public:
    explicit ThreadQueue(const QString &name);
    ~ThreadQueue() override;
    ThreadQueue(const ThreadQueue &) = delete;
    ThreadQueue &operator=(const ThreadQueue &) = delete;

    void async(std::function<void()> work) override;

private:
    struct State {
        std::mutex mutex;
        std::condition_variable wake;
        std::deque<std::function<void()>> waiting;
        bool ending = false;
    };

    static void run(State &state);

    // Shared with the thread, which outlives the queue when the queue is destroyed on it.
    std::shared_ptr<State> m_state;
    std::thread m_thread;
};

} // namespace quorvane::platform
