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
/// The index of the device to which both routes that halve all addresses (0.0.0.0/1 and 128.0.0.0/1) lead; 0
/// when there is no such device.
[[nodiscard]] std::optional<std::uint32_t> carrierOfBothHalves();
/// Whether any table has a usable default route.
[[nodiscard]] std::optional<bool> hasDefaultRoute();

} // namespace quorvane::platform::RouteTable
