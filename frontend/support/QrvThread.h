#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <pthread.h>

namespace quorvane {

/// One operating-system thread that runs a plain function with three untyped arguments.
///
/// run(), detach(), join() and cancel() are for the owner's thread; results are 0 for success and -1 for
/// failure. The arguments are not owned and must outlive the function. Destruction cancels the thread without
/// waiting for it, so the function must allow cancellation only where no operation is half done (see
/// cancellationPoint()).
class QrvThread {
public:
    using Function = void *(*)(void *, void *, void *);

    enum State : std::int32_t {
        NotStarted = 0, ///< also: cancelled
        Running = 1,
        Detached = 2,
        Finished = 4, ///< the function has returned, or the thread was joined
        Failed = 5    ///< creation or cancellation failed
    };

    QrvThread();
    ~QrvThread();
    QrvThread(const QrvThread &) = delete;
    QrvThread &operator=(const QrvThread &) = delete;

    void setThreadFunction(Function function, void *arg1, void *arg2, void *arg3);
    std::int32_t run();
    std::int32_t run(Function function, void *arg1, void *arg2, void *arg3);
    /// Calls the function on the caller's thread.
    void *executeThreadFunction();
    std::int32_t detach();
    std::int32_t join(void *&result);
    std::int32_t cancel();
    void setState(std::int32_t state);
    [[nodiscard]] std::int32_t getState() const;

    /// For thread functions: sleeps, then acts on a pending cancellation. A thread is cancelled nowhere else.
    static void cancellationPoint(std::uint32_t microseconds);

private:
    struct Task {
        Function userThreadFunc = nullptr;
        void *userArg1 = nullptr;
        void *userArg2 = nullptr;
        void *userArg3 = nullptr;

        [[nodiscard]] void *execute() const;
    };

    // One for each thread, which keeps it alive: it may still run the function for a moment after the owner
    // was destroyed or has started another thread.
    struct Record {
        Record() = default;
        explicit Record(const Task &given);

        mutable std::mutex statusMutex;
        // Atomic as well as guarded, because detach() and join() do not lock the mutex.
        std::atomic<std::int32_t> threadState{NotStarted};
        // Set while the handle may still be used for cancellation; guarded by statusMutex.
        bool alive = false;
        const Task task{};

        void set(std::int32_t state);
    };

    static void *entry(void *argument);

    void releaseHandle();

    pthread_t m_hThread{};
    // The handle must still be joined or detached, so that the system releases the thread.
    bool m_handleHeld = false;
    Task m_task;
    /// Of the thread that was started last.
    std::shared_ptr<Record> m_record;
};

} // namespace quorvane
