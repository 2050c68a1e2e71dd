#pragma once

#include <functional>

namespace quorvane::platform {

/// The desktop's trays, as they come and go. Main thread; the handler is called from the event loop, never
/// from within a call of these.
class TrayHosts {
public:
    virtual ~TrayHosts() = default;

    /// Whether a host shows status notifier items now. Such a host tells one kind of activation only.
    [[nodiscard]] virtual bool notifierHost() const = 0;
    /// Whether a tray that embeds windows is there now. Such a tray tells clicks and double-clicks.
    [[nodiscard]] virtual bool embeddingTray() const = 0;
    /// Called after every change of either answer. One handler; an empty one takes it away.
    virtual void installChangeHandler(std::function<void()> handler) = 0;
};

} // namespace quorvane::platform
