#pragma once

#include <functional>

class QObject;

namespace quorvane::platform {

/// Runs work that blocks, beside the main thread. Used from the main thread.
class BackgroundWork {
public:
    virtual ~BackgroundWork() = default;

    /// Runs `work` on a thread that no other unfinished work uses, then `done` on the main thread, never
    /// before this returns. `done` is dropped when the context is destroyed before; `work` runs in any case.
    /// Neither may throw.
    virtual void run(std::function<void()> work, QObject *context, std::function<void()> done) = 0;
    /// Whether no work is unfinished.
    [[nodiscard]] virtual bool isIdle() const = 0;
};

} // namespace quorvane::platform
