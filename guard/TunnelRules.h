#pragma once

#include "Routing.h"

namespace quorvane::guard {

/// What is known of a session when its routes are judged.
struct TunnelFacts {
    unsigned device = 0;       ///< the tunnel device that OpenVPN has open
    std::set<Network> servers; ///< the VPN servers, each with all bits
};

/// Whether everything goes into the tunnel: both halves of IPv4 go to its device, no other route through a
/// gateway has come except the one to the server, and no route, rule or IPv4 address has gone. The error is a
/// text for the log.
Result<> checkTunnel(const NetworkState &before, const NetworkState &now, const TunnelFacts &tunnel);

/// True when a route that was not there before leads addresses through a gateway that would go into the
/// tunnel without it. Not counted: routes of the home network that were there before, the route to the
/// server, default routes, and routes within a network to which the computer is connected.
[[nodiscard]] bool leadsPastTunnel(const Route &route, const NetworkState &before, const NetworkState &now,
                                   const TunnelFacts &tunnel);

/// True when both halves of IPv4 go to the tunnel device.
[[nodiscard]] bool carriesAll(const NetworkState &now, unsigned device);

/// What makes the routes as they were before a session.
struct Repair {
    std::vector<Route> remove;
    std::vector<Route> add; ///< in this order: a gateway may be reached through another route
};

/// What to do after a session. Kept as they are: routes that the kernel itself makes, those that a DHCP
/// client or a router announced meanwhile, default routes that have come, and everything on devices that have
/// changed their network. A default route is not put back where another one has come.
[[nodiscard]] Repair repairOf(const NetworkState &before, const NetworkState &now,
                              const std::set<Network> &servers);

} // namespace quorvane::guard
