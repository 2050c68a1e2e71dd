#include "Launch.h"

namespace quorvane {

bool Launch::begin() {
    const std::lock_guard lock(m_mutex);
    if (m_state == State::Cancelled) {
        return false;
    }
    m_state = State::Running;
    return true;
}

void Launch::end(const std::weak_ptr<void> &output) {
    const std::lock_guard lock(m_mutex);
    m_state = State::Ended;
    m_output = output;
    m_changed.notify_all();
}

bool Launch::cancel() {
    const std::lock_guard lock(m_mutex);
    if (m_state == State::Waiting) {
        m_state = State::Cancelled;
    }
    return m_state == State::Cancelled;
}

bool Launch::hasEnded() const {
    const std::lock_guard lock(m_mutex);
    return m_state == State::Ended;
}

bool Launch::hasOutputOpen() const {
    const std::lock_guard lock(m_mutex);
    return !m_output.expired();
}

void Launch::waitForEnd() const {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_state == State::Ended; });
}

} // namespace quorvane
