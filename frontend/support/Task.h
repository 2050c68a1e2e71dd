#pragma once

#ifndef Q_MOC_RUN // which cannot read the standard library's concepts
#include <coroutine>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>
#endif

namespace quorvane {

template <typename Value = void>
class Task;

namespace detail {

/// What the coroutines of all Tasks have in common.
class TaskPromise {
public:
    struct Continue {
        [[nodiscard]] static bool await_ready() noexcept { return false; }

        template <typename Promise>
        std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> ended) noexcept {
            const std::coroutine_handle<> waiting = ended.promise().m_waiting;
            return waiting ? waiting : std::noop_coroutine();
        }

        static void await_resume() noexcept {}
    };

    [[nodiscard]] static std::suspend_always initial_suspend() noexcept { return {}; }

    [[nodiscard]] static Continue final_suspend() noexcept { return {}; }

    void unhandled_exception() noexcept { m_exception = std::current_exception(); }

    void setWaiting(std::coroutine_handle<> waiting) { m_waiting = waiting; }

    void rethrow() const {
        if (m_exception) {
            std::rethrow_exception(m_exception);
        }
    }

private:
    std::coroutine_handle<> m_waiting;
    std::exception_ptr m_exception;
};

template <typename Value>
class ValuePromise : public TaskPromise {
public:
    Task<Value> get_return_object();

    void return_value(Value value) { m_value = std::move(value); }

    [[nodiscard]] Value result() {
        rethrow();
        return std::move(*m_value);
    }

private:
    std::optional<Value> m_value;
};

class VoidPromise : public TaskPromise {
public:
    Task<void> get_return_object();

    void return_void() noexcept {}

    void result() const { rethrow(); }
};

} // namespace detail

/// Steps that may wait for something between them, written as a coroutine. They begin when the task is
/// awaited, or started by EventQueue. A task that is destroyed while it waits ends there: what it awaited
/// must then not resume it. Exceptions reach the one who awaits it. Main thread.
///
/// A lambda that is a coroutine must outlive its task, because the captures stay in the lambda. What is
/// awaited gets a name of its own when an argument of it owns memory: GCC 12 destroys temporary arguments of
/// an awaited expression twice.
template <typename Value>
class [[nodiscard]] Task {
public:
    using promise_type =
        std::conditional_t<std::is_void_v<Value>, detail::VoidPromise, detail::ValuePromise<Value>>;

    explicit Task(std::coroutine_handle<promise_type> steps) : m_steps(steps) {}

    Task(Task &&other) noexcept : m_steps(std::exchange(other.m_steps, {})) {}

    Task(const Task &) = delete;
    Task &operator=(const Task &) = delete;
    Task &operator=(Task &&) = delete;

    ~Task() {
        if (m_steps) {
            m_steps.destroy();
        }
    }

    [[nodiscard]] bool hasEnded() const { return m_steps.done(); }

    /// Runs the steps up to the first that waits.
    void start() const { m_steps.resume(); }

    [[nodiscard]] static bool await_ready() noexcept { return false; }

    std::coroutine_handle<> await_suspend(std::coroutine_handle<> waiting) const {
        m_steps.promise().setWaiting(waiting);
        return m_steps;
    }

    Value await_resume() const { return m_steps.promise().result(); }

private:
    std::coroutine_handle<promise_type> m_steps;
};

template <typename Value>
Task<Value> detail::ValuePromise<Value>::get_return_object() {
    return Task<Value>(std::coroutine_handle<ValuePromise>::from_promise(*this));
}

inline Task<void> detail::VoidPromise::get_return_object() {
    return Task<void>(std::coroutine_handle<VoidPromise>::from_promise(*this));
}

} // namespace quorvane
