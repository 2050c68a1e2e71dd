#pragma once

#include <QSet>
#include <functional>

namespace quorvane::platform {

/// How a tunnel that was up was lost.
enum class TunnelLoss {
    ProcessEnded,  ///< one of its processes
    DeviceGone,    ///< its network device
    RoutesChanged, ///< its device carries no longer both halves of all IPv4 addresses
};

/// Watches the tunnel that carries all IPv4 traffic of this machine, from outside of the programs that make
/// it. Main thread.
class TunnelWatch {
public:
    using Lost = std::function<void(TunnelLoss loss)>;

    virtual ~TunnelWatch() = default;

    /// Watches these processes, which may belong to root, and the device that carries both halves of all IPv4
    /// addresses now; in place of what was watched before. `lost` is called once, later, unless the watch was
    /// stopped until then. A process that has ended already counts as lost. Without such a device only the
    /// processes are watched.
    virtual void watch(const QSet<qint64> &processes, const Lost &lost) = 0;
    /// After this nothing is reported.
    virtual void stop() = 0;
};

} // namespace quorvane::platform
