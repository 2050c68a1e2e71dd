#pragma once

#include "platform/TrayHosts.h"

#include <utility>

namespace quorvane::fakes {

/// Trays that the test sets; none at first. Main thread.
class FakeTrayHosts final : public platform::TrayHosts {
public:
    [[nodiscard]] bool notifierHost() const override { return m_notifier; }

    [[nodiscard]] bool embeddingTray() const override { return m_embedding; }

    void installChangeHandler(std::function<void()> handler) override { m_changed = std::move(handler); }

    void setNotifierHost(bool present) {
        m_notifier = present;
        notifyChanged();
    }

    void setEmbeddingTray(bool present) {
        m_embedding = present;
        notifyChanged();
    }

    [[nodiscard]] bool hasChangeHandler() const { return static_cast<bool>(m_changed); }

private:
    void notifyChanged() const {
        if (m_changed) {
            m_changed();
        }
    }

    bool m_notifier = false;
    bool m_embedding = false;
    std::function<void()> m_changed;
};

} // namespace quorvane::fakes
