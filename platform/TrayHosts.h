#pragma once

#include <functional>

namespace quorvane::platform {

/// The desktop's trays, which may start and end at any time. Main thread; the handler is called from the
/// event loop, never from within a call of these functions.
class TrayHosts {
public:
    virtual ~TrayHosts() = default;

    /// Whether a host shows status notifier items now. Such a host reports one kind of activation only.
    [[nodiscard]] virtual bool notifierHost() const = 0;
    /// Whether a tray that embeds windows exists now. Such a tray distinguishes clicks and double-clicks.
    [[nodiscard]] virtual bool embeddingTray() const = 0;
    /// Sets the handler that is called when either of the two values has changed. One handler; an empty one
    /// removes it.
    virtual void installChangeHandler(std::function<void()> handler) = 0;
};

} // namespace quorvane::platform
