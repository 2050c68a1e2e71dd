#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

namespace quorvane::service {

/// A supply of tokens that is refilled at a constant rate up to a maximum, and is full at first.
class TokenBucket {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    TokenBucket(double perSecond, double maximum) : m_perSecond(perSecond), m_maximum(maximum) {}

    /// Takes the tokens. False, and nothing is taken, when there are fewer.
    [[nodiscard]] bool take(double tokens, TimePoint now) {
        if (m_filled && now > *m_filled) {
            const std::chrono::duration<double> passed = now - *m_filled;
            m_taken = std::max(0.0, m_taken - passed.count() * m_perSecond);
        }
        m_filled = now;
        if (m_taken + tokens > m_maximum) {
            return false;
        }
        m_taken += tokens;
        return true;
    }

private:
    double m_perSecond;
    double m_maximum;
    double m_taken = 0;
    std::optional<TimePoint> m_filled;
};

} // namespace quorvane::service
