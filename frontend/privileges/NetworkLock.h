#pragma once

#include "frontend/support/Task.h"

#include <QString>
#include <memory>

namespace quorvane {

class EventQueue;

/// The network lock around a session, when the user wants one (Preference::NetworkLock): while it is closed,
/// nothing leaves this machine but the tunnel and what makes it. Resources/networklock closes and lifts it as
/// administrator; the guard lets the session's own OpenVPN and device through. Steps are awaited by a handler
/// of the queue, which they hold. Main thread.
class NetworkLock {
public:
    NetworkLock();

    [[nodiscard]] static bool isWanted();
    /// Whether it is closed, by this run of the program or an earlier one.
    [[nodiscard]] static bool isClosed();
    /// Whether it is closed, or is being closed for a handler that has been ended meanwhile.
    [[nodiscard]] bool mayBeClosed() const;
    /// Closes it, or renews it while it is closed, with the addresses that the service has now. Null when
    /// that was done, else why it was not.
    [[nodiscard]] Task<QString> close(EventQueue &events);
    /// Also when it is still being closed. Null when it is lifted, else why it is not.
    [[nodiscard]] Task<QString> lift(EventQueue &events);

private:
    struct Order;
    std::shared_ptr<Order> m_order;
};

} // namespace quorvane
