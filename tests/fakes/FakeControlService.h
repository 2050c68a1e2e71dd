#pragma once

#include "platform/Control.h"

namespace quorvane::fakes {

/// Other programs, in the place of which the test operates the handler that was offered.
class FakeControlService final : public platform::ControlService {
public:
    bool offer(platform::ControlHandler &handler) override {
        m_handler = &handler;
        return true;
    }

    void withdraw() override { m_handler = nullptr; }

    void reportState() override {
        if (m_handler != nullptr) {
            const platform::ControlState state = m_handler->controlState();
            if (m_states.isEmpty() || m_states.last() != state) {
                m_states.append(state);
            }
        }
    }

    void reportLocations() override { ++m_locationReports; }

    /// Null before a handler is offered and after it was withdrawn.
    [[nodiscard]] platform::ControlHandler *handler() const { return m_handler; }

    [[nodiscard]] const QList<platform::ControlState> &states() const { return m_states; }

    [[nodiscard]] int locationReports() const { return m_locationReports; }

private:
    platform::ControlHandler *m_handler = nullptr;
    QList<platform::ControlState> m_states;
    int m_locationReports = 0;
};

} // namespace quorvane::fakes
