#pragma once

#include <cstdint>
#include <optional>

/// Queries of the kernel's routing tables, which return at once. Any thread. Addresses are IPv4 in host byte
/// order; an absent value means that the kernel could not be queried.
namespace quorvane::platform::RouteTable {

/// The route of packets to an address.
struct Route {
    bool exists = false;
    /// The address belongs to this machine.
    bool isLocal = false;
    /// Without a gateway.
    bool isDirect = false;
};

[[nodiscard]] std::optional<Route> routeTo(std::uint32_t address);
/// Whether a network route of at least this prefix length, without a gateway, covers the address.
[[nodiscard]] std::optional<bool> isOnLink(std::uint32_t address, int prefixLength);
/// Whether any table has a usable default route.
[[nodiscard]] std::optional<bool> hasDefaultRoute();

} // namespace quorvane::platform::RouteTable
