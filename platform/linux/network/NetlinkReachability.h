#pragma once

#include "platform/NetworkReachability.h"

namespace quorvane::platform {

/// Reachability by the kernel's routing tables and its news about links, addresses and routes.
///
/// An address: reachable while there is a route to it; direct without a gateway, local when it is this
/// machine's own. 0.0.0.0: reachable while there is a default route. 169.254.0.0: reachable and direct
/// while an interface is on the link-local network. A host name counts as its IPv4 address last
/// resolved; until one is known, and while none can be found, the rule of 0.0.0.0 holds, since a name server
/// that fails says nothing about the network. Names are resolved on threads of their own, at the start of
/// the delivery, after each change of the network, and again and again while that fails.
class NetlinkReachability final : public NetworkReachability {
public:
    [[nodiscard]] std::unique_ptr<ReachabilityTarget> targetWithName(const QString &host) override;
    [[nodiscard]] std::unique_ptr<ReachabilityTarget> targetWithAddress(std::uint32_t address) override;
    [[nodiscard]] std::unique_ptr<SerialQueue> makeQueue(const QString &name) override;
};

} // namespace quorvane::platform
