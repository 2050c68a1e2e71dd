#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace quorvane::platform {

/// The flag word of a reachability target.
namespace ReachabilityFlag {
inline constexpr std::uint32_t transientConnection = 1;
inline constexpr std::uint32_t reachable = 2;
inline constexpr std::uint32_t connectionRequired = 4;
inline constexpr std::uint32_t connectionOnTraffic = 8;
inline constexpr std::uint32_t interventionRequired = 16;
inline constexpr std::uint32_t connectionOnDemand = 32;
inline constexpr std::uint32_t isLocalAddress = 65536;
inline constexpr std::uint32_t isDirect = 131072;
} // namespace ReachabilityFlag

/// A serial queue with its own thread: runs one piece of work after the other, in order.
class SerialQueue {
public:
    virtual ~SerialQueue() = default;
    virtual void async(std::function<void()> work) = 0;
};

/// One target (a host name or an IPv4 address) whose reachability is watched.
class ReachabilityTarget {
public:
    using Callback = std::function<void(std::uint32_t flags)>;

    virtual ~ReachabilityTarget() = default;

    /// The present flags; absent when they cannot be read. For a host name, the address last resolved is
    /// used; resolving never blocks the caller.
    [[nodiscard]] virtual std::optional<std::uint32_t> flags() = 0;
    /// Sets the callback for changes; an empty one removes it. False when it cannot be registered.
    virtual bool setCallback(Callback callback) = 0;
    /// Delivers the first state and every later change on the queue (not owned, must outlive the delivery);
    /// null stops the delivery. No callback runs after that call has returned, unless the callback itself
    /// makes the call.
    virtual bool setQueue(SerialQueue *queue) = 0;
};

/// Makes reachability targets and queues.
class NetworkReachability {
public:
    virtual ~NetworkReachability() = default;

    /// Null when the target cannot be made (an empty name).
    [[nodiscard]] virtual std::unique_ptr<ReachabilityTarget> targetWithName(const QString &host) = 0;
    /// IPv4 address in host byte order. 0.0.0.0 means the default route, 169.254.0.0 the link-local network.
    [[nodiscard]] virtual std::unique_ptr<ReachabilityTarget> targetWithAddress(std::uint32_t address) = 0;
    /// Null when no thread can be created.
    [[nodiscard]] virtual std::unique_ptr<SerialQueue> makeQueue(const QString &name) = 0;
};

} // namespace quorvane::platform
