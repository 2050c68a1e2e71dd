#pragma once

#include <cstdint>
#include <optional>

/// Questions to the kernel's routing tables, answered at once. Any thread. Addresses are IPv4 in host
/// byte order; an absent answer means that the kernel could not be asked.
namespace quorvane::platform::RouteTable {

/// How packets to an address would go.
struct Way {
    bool exists = false;
    /// The address is this machine's own.
    bool isLocal = false;
    /// Without a gateway.
    bool isDirect = false;
};

[[nodiscard]] std::optional<Way> wayTo(std::uint32_t address);
/// Whether a network route of at least this prefix length, without a gateway, covers the address.
[[nodiscard]] std::optional<bool> isOnLink(std::uint32_t address, int prefixLength);
/// Whether any table has a usable default route.
[[nodiscard]] std::optional<bool> hasDefaultRoute();

} // namespace quorvane::platform::RouteTable
