#include "EventQueue.h"

#include "Diagnostics.h"
#include "platform/BackgroundWork.h"
#include "platform/Platform.h"

namespace quorvane {

EventQueue::~EventQueue() = default;

void EventQueue::post(Handler handler) {
    if (!m_closed) {
        m_waiting.push_back(std::move(handler));
        run();
    }
}

void EventQueue::postNext(Handler handler) {
    if (!m_closed) {
        m_waiting.push_front(std::move(handler));
        run();
    }
}

void EventQueue::closeWith(Handler last) {
    Q_ASSERT_X(!m_running, "EventQueue", "closed by a handler");
    m_waiting.clear();
    m_ready.clear();
    m_started.clear();
    m_held = false;
    post(std::move(last));
    m_closed = true;
}

Task<> EventQueue::handle(const Handler &handler) {
    try {
        co_await handler();
    } catch (const std::exception &exception) {
        Diagnostics::logAlways(QStringLiteral("exception in an event: ") +
                               QString::fromLocal8Bit(exception.what()));
    }
    m_held = false;
}

void EventQueue::run() {
    if (m_running) {
        return;
    }
    m_running = true;
    while (!m_held && !(m_ready.empty() && m_waiting.empty())) {
        m_held = true;
        if (!m_ready.empty()) {
            const std::coroutine_handle<> next = m_ready.front();
            m_ready.pop_front();
            next.resume();
        } else {
            Started &started = m_started.emplace_back(Started{std::move(m_waiting.front()), {}});
            m_waiting.pop_front();
            started.steps.emplace(handle(started.handler));
            started.steps->start();
        }
        m_started.remove_if([](const Started &started) { return started.steps->hasEnded(); });
    }
    m_running = false;
}

void EventQueue::runInBackground(std::function<void()> work, QObject *context,
                                 std::coroutine_handle<> waiting) {
    platform::Platform::current().background->run(std::move(work), context, [this, waiting] {
        m_held = false;
        m_ready.push_front(waiting); // it held the queue: no other handler passes it
        run();
    });
}

EventQueue::Outside EventQueue::outside(Outside::Begin begin) {
    return {*this, std::move(begin)};
}

void EventQueue::Outside::await_suspend(std::coroutine_handle<> waiting) {
    *m_continuation = waiting;
    m_queue.m_held = false;
    // The function may call back at once, which continues the handler and may destroy this object.
    const Begin begin = std::move(m_begin);
    begin([queue = &m_queue, continuation = std::weak_ptr(m_continuation)] {
        if (const auto handler = continuation.lock()) {
            queue->proceed(std::exchange(*handler, {}));
        }
    });
}

void EventQueue::proceed(std::coroutine_handle<> waiting) {
    if (waiting) {
        m_ready.push_back(waiting);
        run();
    }
}

} // namespace quorvane
