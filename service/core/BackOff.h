#pragma once

#include <algorithm>
#include <chrono>

namespace quorvane::service {

/// The delay before a program that ended is started again. It doubles each time, and starts again from the
/// first one after the program ran for `stableTime`.
class BackOff {
public:
    using Milliseconds = std::chrono::milliseconds;

    BackOff(Milliseconds first, Milliseconds maximum, Milliseconds stableTime)
        : m_first(first), m_maximum(maximum), m_stableTime(stableTime), m_next(first) {}

    /// `runTime` is how long the program ran.
    [[nodiscard]] Milliseconds next(Milliseconds runTime) {
        if (runTime >= m_stableTime) {
            m_next = m_first;
        }
        const Milliseconds delay = m_next;
        m_next = std::min(m_next * 2, m_maximum);
        return delay;
    }

private:
    Milliseconds m_first;
    Milliseconds m_maximum;
    Milliseconds m_stableTime;
    Milliseconds m_next;
};

} // namespace quorvane::service
