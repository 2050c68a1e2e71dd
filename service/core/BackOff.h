#pragma once

#include <algorithm>
#include <chrono>

namespace quorvane::service {

/// How long to wait before a program that ended is started again: twice as long each time, and short
/// again after it ran for a while.
class BackOff {
public:
    using Milliseconds = std::chrono::milliseconds;

    BackOff(Milliseconds first, Milliseconds longest, Milliseconds settled)
        : m_first(first), m_longest(longest), m_settled(settled), m_next(first) {}

    /// `ran` is how long the program lived.
    Milliseconds next(Milliseconds ran) {
        if (ran >= m_settled) {
            m_next = m_first;
        }
        const Milliseconds wait = m_next;
        m_next = std::min(m_next * 2, m_longest);
        return wait;
    }

private:
    Milliseconds m_first;
    Milliseconds m_longest;
    Milliseconds m_settled;
    Milliseconds m_next;
};

} // namespace quorvane::service
