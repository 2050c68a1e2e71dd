#pragma once

#include "platform/Appearance.h"

namespace quorvane::fakes {

/// A desktop whose appearance the test sets.
class FakeAppearance final : public platform::Appearance {
public:
    [[nodiscard]] platform::DesktopAppearance current() const override { return m_current; }

    void setObserver(Observer observer) override { m_observer = std::move(observer); }

    void set(const platform::DesktopAppearance &appearance) {
        if (appearance != m_current) {
            m_current = appearance;
            if (m_observer) {
                m_observer();
            }
        }
    }

private:
    platform::DesktopAppearance m_current;
    Observer m_observer;
};

} // namespace quorvane::fakes
