#pragma once

#include "platform/TrayHosts.h"

#include <utility>

namespace quorvane::fakes {

/// Trays that come and go as a test says; none at first. Main thread.
class FakeTrayHosts final : public platform::TrayHosts {
public:
    [[nodiscard]] bool notifierHost() const override { return notifier; }

    [[nodiscard]] bool embeddingTray() const override { return embedding; }

    void installChangeHandler(std::function<void()> handler) override { changed = std::move(handler); }

    void setNotifierHost(bool present) {
        notifier = present;
        tell();
    }

    void setEmbeddingTray(bool present) {
        embedding = present;
        tell();
    }

    [[nodiscard]] bool hasChangeHandler() const { return static_cast<bool>(changed); }

private:
    void tell() const {
        if (changed) {
            changed();
        }
    }

    bool notifier = false;
    bool embedding = false;
    std::function<void()> changed;
};

} // namespace quorvane::fakes
