#pragma once

#include "Machine.h"

#include <string_view>
#include <vector>

namespace quorvane::service {

/// The addresses of a list of networks and addresses, "203.0.113.0/28,198.51.100.7", in order.
///
/// Of a network all addresses count but those of the machine itself, the next hop of its default route and,
/// when an interface reaches the network, its first and last one.
Result<std::vector<Ipv4Address>> lentAddresses(std::string_view list, const MachineNetwork &machine);

/// The smallest number of networks that have exactly these addresses, in ascending order.
[[nodiscard]] std::vector<Ipv4Network> networksOf(std::vector<Ipv4Address> addresses);

/// What becomes of the routes of addresses that are no longer lent.
enum class FormerRoutes {
    Keep,   ///< sessions with these addresses go on
    Remove, ///< no session has one
};

/// Makes these addresses the machine's own by local routes. Addresses that an interface has need none.
Result<> routeLentAddresses(Machine &machine, const std::vector<Ipv4Address> &addresses, FormerRoutes former);

} // namespace quorvane::service
