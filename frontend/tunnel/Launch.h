#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>

namespace quorvane {

/// The state of one launch of OpenVPN, shared by the thread that runs its line and the main thread.
class Launch {
public:
    /// Before the line is run. False when the launch was cancelled, and the line must not be run.
    [[nodiscard]] bool begin();
    /// After the line has ended. `output` expires when nothing that it left behind has its output open.
    void end(const std::weak_ptr<void> &output);

    /// True when the line has not been run and never will be.
    [[nodiscard]] bool cancel();
    [[nodiscard]] bool hasEnded() const;
    /// Whether a process that the line left behind has the line's output open. OpenVPN closes it when it
    /// opens its log; what has not become OpenVPN yet has it open.
    [[nodiscard]] bool hasOutputOpen() const;
    /// Blocks until the line has ended.
    void waitForEnd() const;

private:
    enum class State { Waiting, Cancelled, Running, Ended };

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    State m_state = State::Waiting;
    std::weak_ptr<void> m_output;
};

} // namespace quorvane
