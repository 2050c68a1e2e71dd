#pragma once

#include "Task.h"

#include <QObject>
#include <deque>
#include <exception>
#include <functional>
#include <list>
#include <memory>
#include <optional>

namespace quorvane {

/// Runs the handlers of the session's events one after the other, in the order in which the events came. Main
/// thread.
///
/// A handler that awaits background work holds the queue: what arrives meanwhile is handled after it. A
/// handler that awaits a window (outside()) lets the others pass, and continues, before those that have not
/// begun, when no other handler runs. Handlers that have not ended when the queue is destroyed end where they
/// wait.
class EventQueue {
public:
    using Handler = std::function<Task<>()>;

    EventQueue() = default;
    ~EventQueue();
    EventQueue(const EventQueue &) = delete;
    EventQueue &operator=(const EventQueue &) = delete;

    /// Handles the event now if no handler runs or holds the queue, else later.
    void post(Handler handler);

    /// The same, but before the events that have arrived already: for what a handler reports as its last
    /// step.
    void postNext(Handler handler);

    /// Ends every handler where it waits, drops the events that wait, handles this one, and ignores all
    /// events after it. Not to be called from a handler.
    void closeWith(Handler last);

    /// Whether a handler holds the queue.
    [[nodiscard]] bool isHeld() const { return m_held; }

    /// Whether no handler holds the queue and no event waits. Handlers may await windows.
    [[nodiscard]] bool isIdle() const { return !m_held && m_waiting.empty() && m_ready.empty(); }

    template <typename Work>
    class Background;
    class Outside;

    /// Awaitable, in a handler: calls the function on another thread and has its result, or throws its
    /// exception.
    template <typename Work>
    [[nodiscard]] Background<Work> background(Work work) {
        return Background<Work>(*this, std::move(work));
    }

    /// Awaitable, in a handler: calls `begin` with a function that continues the handler, which may be called
    /// once, at any time.
    [[nodiscard]] Outside outside(std::function<void(std::function<void()> proceed)> begin);

private:
    struct Started {
        Handler handler;
        std::optional<Task<>> steps;
    };

    [[nodiscard]] Task<> handle(const Handler &handler);
    void runInBackground(std::function<void()> work, QObject *context, std::coroutine_handle<> waiting);
    void leave();
    void proceed(std::coroutine_handle<> waiting);
    void run();

    std::deque<Handler> m_waiting;
    std::deque<std::coroutine_handle<>> m_ready;
    std::list<Started> m_started;
    bool m_held = false;
    bool m_running = false;
    bool m_closed = false;
};

template <typename Work>
class EventQueue::Background {
public:
    using Result = std::invoke_result_t<Work>;

    Background(EventQueue &queue, Work work) : m_queue(queue), m_work(std::move(work)) {}

    [[nodiscard]] static bool await_ready() noexcept { return false; }

    void await_suspend(std::coroutine_handle<> waiting) {
        m_queue.runInBackground(
            [work = std::move(m_work), outcome = m_outcome] {
                try {
                    if constexpr (std::is_void_v<Result>) {
                        work();
                    } else {
                        outcome->value.emplace(work());
                    }
                } catch (...) {
                    outcome->exception = std::current_exception();
                }
            },
            &m_context, waiting);
    }

    Result await_resume() const {
        if (m_outcome->exception) {
            std::rethrow_exception(m_outcome->exception);
        }
        if constexpr (!std::is_void_v<Result>) {
            return std::move(*m_outcome->value);
        }
    }

private:
    struct Nothing {};

    struct Outcome {
        std::optional<std::conditional_t<std::is_void_v<Result>, Nothing, Result>> value;
        std::exception_ptr exception;
    };

    EventQueue &m_queue;
    Work m_work;
    std::shared_ptr<Outcome> m_outcome = std::make_shared<Outcome>();
    QObject m_context;
};

class EventQueue::Outside {
public:
    using Begin = std::function<void(std::function<void()> proceed)>;

    Outside(EventQueue &queue, Begin begin) : m_queue(queue), m_begin(std::move(begin)) {}

    [[nodiscard]] static bool await_ready() noexcept { return false; }

    void await_suspend(std::coroutine_handle<> waiting);

    static void await_resume() noexcept {}

private:
    EventQueue &m_queue;
    Begin m_begin;
    /// Gone when the handler is: a late call then has no effect.
    std::shared_ptr<std::coroutine_handle<>> m_continuation = std::make_shared<std::coroutine_handle<>>();
};

} // namespace quorvane
