#pragma once

#include "platform/DelayedCalls.h"

#include <QObject>
#include <QPointer>

#include <algorithm>
#include <vector>

namespace quorvane::fakes {

/// Delayed calls with a clock that only the test advances.
class ManualDelayedCalls final : public platform::DelayedCalls {
public:
    struct Pending {
        QPointer<QObject> target;
        /// As requested.
        double delay;
        /// On this object's clock.
        double due;
        std::function<void()> call;
    };

    void callAfter(double seconds, QObject *target, std::function<void()> call) override {
        m_calls.push_back({target, seconds, m_clock + std::max(seconds, 0.0), std::move(call)});
    }

    void cancelAll(const QObject *target) override {
        std::erase_if(m_calls, [target](const Pending &call) { return call.target.data() == target; });
    }

    /// Pending calls, in the order in which they were requested.
    [[nodiscard]] std::vector<Pending> pending() {
        std::erase_if(m_calls, [](const Pending &call) { return call.target.isNull(); });
        return m_calls;
    }

    /// Delays of the pending calls of one target.
    [[nodiscard]] std::vector<double> delaysFor(const QObject *target) {
        std::vector<double> delays;
        for (const Pending &call : pending()) {
            if (call.target.data() == target) {
                delays.push_back(call.delay);
            }
        }
        return delays;
    }

    /// Advances the clock and runs the calls that become due, including those that are requested by calls.
    void advance(double seconds) {
        const double end = m_clock + seconds;
        while (!pending().empty()) {
            const auto next =
                std::min_element(m_calls.begin(), m_calls.end(),
                                 [](const Pending &a, const Pending &b) { return a.due < b.due; });
            if (next->due > end + tolerance) {
                break;
            }
            m_clock = std::max(m_clock, next->due);
            const auto work = std::move(next->call);
            m_calls.erase(next);
            work();
        }
        m_clock = end;
    }

    [[nodiscard]] double now() const { return m_clock; }

private:
    // Sums of delays such as 0.1 are not exact.
    static constexpr double tolerance = 1e-9;

    std::vector<Pending> m_calls;
    double m_clock = 0;
};

} // namespace quorvane::fakes
