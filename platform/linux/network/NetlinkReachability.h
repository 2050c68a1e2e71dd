#pragma once

#include "platform/NetworkReachability.h"

namespace quorvane::platform {

/// Reachability from the kernel's routing tables and its messages about links, addresses and routes.
///
/// An address is reachable while there is a route to it; it is direct without a gateway, and local when it
/// belongs to this machine. 0.0.0.0 is reachable while there is a default route. 169.254.0.0 is reachable and
/// direct while an interface is on the link-local network. For a host name, the IPv4 address last resolved is
/// used; until there is one, and while none can be found, the rule for 0.0.0.0 applies, because the failure
/// of a name server does not show the state of the network. Names are resolved on separate threads, when the
/// delivery starts, after each change of the network, and repeatedly while that fails.
class NetlinkReachability final : public NetworkReachability {
public:
    [[nodiscard]] std::unique_ptr<ReachabilityTarget> targetWithName(const QString &host) override;
    [[nodiscard]] std::unique_ptr<ReachabilityTarget> targetWithAddress(std::uint32_t address) override;
    [[nodiscard]] std::unique_ptr<SerialQueue> makeQueue(const QString &name) override;
};

} // namespace quorvane::platform
