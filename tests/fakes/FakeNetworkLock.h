#pragma once

#include "platform/NetworkLock.h"

namespace quorvane::fakes {

/// A lock that the test closes and lifts, mostly in the handler of the script's lines.
class FakeNetworkLock final : public platform::NetworkLock {
public:
    [[nodiscard]] bool isClosed() const override { return closed; }

    void setObserver(std::function<void()> changed) override { observer = std::move(changed); }

    void keepServiceAddresses() override { kept = found; }

    [[nodiscard]] QStringList serviceAddresses() const override { return kept; }

    bool closed = false;
    /// What a look-up finds.
    QStringList found{QStringLiteral("api.quorvane.test:443/198.51.100.7")};
    QStringList kept;
    std::function<void()> observer;
};

} // namespace quorvane::fakes
