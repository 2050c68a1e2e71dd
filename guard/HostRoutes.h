#pragma once

#include <compare>
#include <cstdint>
#include <set>
#include <vector>

namespace quorvane::guard {

/// A route to one IPv4 host through a router, addresses in network byte order.
struct HostRoute {
    std::uint32_t host = 0;
    std::uint32_t router = 0;
    auto operator<=>(const HostRoute &) const = default;
};

/// The routes to the VPN servers. OpenVPN makes one and takes it back at its end, but not when it is killed,
/// and by kill is how the application stops it. What it left behind is taken back here, so that the machine's
/// routes are at the end what they were.
class HostRoutes {
public:
    /// Notes the routes that are there already; those stay. `servers`: IPv4 addresses in network byte order.
    explicit HostRoutes(std::vector<std::uint32_t> servers);

    /// Removes the routes to the servers that have come since. Needs the rights of an administrator.
    void removeNew() const;

private:
    std::vector<std::uint32_t> m_servers;
    std::set<HostRoute> m_before;
};

} // namespace quorvane::guard
