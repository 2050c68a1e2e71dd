#pragma once

#include "platform/TunnelWatch.h"

#include <utility>

namespace quorvane::fakes {

/// Records what is watched; the test loses the tunnel. Main thread.
class FakeTunnelWatch final : public platform::TunnelWatch {
public:
    void watch(const QSet<qint64> &processes, const Lost &lost) override {
        watched = processes;
        m_lost = lost;
    }

    void stop() override { m_lost = {}; }

    [[nodiscard]] bool isWatching() const { return static_cast<bool>(m_lost); }

    /// Reports the loss, unless nothing is watched.
    void lose(platform::TunnelLoss loss) {
        if (const Lost lost = std::exchange(m_lost, {})) {
            lost(loss);
        }
    }

    QSet<qint64> watched;

private:
    Lost m_lost;
};

} // namespace quorvane::fakes
