#pragma once

#include "platform/BackgroundWork.h"

#include <QObject>
#include <QThreadPool>

namespace quorvane::platform {

/// BackgroundWork over threads, which are kept for the next work. Its destructor waits until all work has
/// ended.
class ThreadedWork final : public BackgroundWork {
public:
    ThreadedWork();
    ~ThreadedWork() override;
    ThreadedWork(const ThreadedWork &) = delete;
    ThreadedWork &operator=(const ThreadedWork &) = delete;

    void run(std::function<void()> work, QObject *context, std::function<void()> done) override;

    [[nodiscard]] bool isIdle() const override { return m_threads.activeThreadCount() == 0; }

private:
    /// Receives the results on the main thread. The context cannot: it may be destroyed meanwhile.
    QObject m_mainThread;
    QThreadPool m_threads;
};

} // namespace quorvane::platform
