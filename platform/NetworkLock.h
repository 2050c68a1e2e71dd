#pragma once

#include <QStringList>
#include <functional>

namespace quorvane::platform {

/// What the program needs to know about the network lock, which Resources/networklock closes and lifts as
/// root: whether it is closed, and the addresses of the service, whose name cannot be looked up then.
class NetworkLock {
public:
    virtual ~NetworkLock() = default;

    /// Whether the lock is closed, by what its script has noted. It may be an earlier run's. Any thread.
    [[nodiscard]] virtual bool isClosed() const = 0;
    /// Called on the main thread when isClosed() may have changed without this program; an empty function
    /// ends that. Main thread.
    virtual void setObserver(std::function<void()> changed) = 0;
    /// Looks up the host of the service. While the lock is closed, requests use what was found last. Blocks;
    /// not on the main thread.
    virtual void keepServiceAddresses() = 0;
    /// What was found, as the script expects it: "host:port/address". Any thread.
    [[nodiscard]] virtual QStringList serviceAddresses() const = 0;
};

/// Lifts the lock without the program's own rights: sudo asks for the password on the terminal. Waits for it.
/// False when the lock was not lifted, for a reason that is on the terminal then.
[[nodiscard]] bool liftFromTerminal(const QString &resourcesFolder);

} // namespace quorvane::platform
