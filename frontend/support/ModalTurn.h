#pragma once

#include <deque>
#include <functional>
#include <memory>

namespace quorvane {

/// Lets the program's modal windows open one at a time, in the order in which they were requested. A window
/// that is to be shown over an open one does not ask for a turn. Main thread.
class ModalTurn {
public:
    /// Opens a window and returns at once; `ended` is to be called once, when the window was closed.
    using Begin = std::function<void(const std::function<void()> &ended)>;

    [[nodiscard]] static ModalTurn &shared();

    /// Calls `begin` now, or when the windows requested before were closed.
    void request(Begin begin);

    /// Forgets the windows that wait, and the one that is open. For tests.
    void clear();

private:
    void next();

    std::deque<Begin> m_waiting;
    /// The open window's turn; null when none is open.
    std::shared_ptr<bool> m_turn;
};

} // namespace quorvane
