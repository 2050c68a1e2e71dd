#pragma once

#include <cstdint>
#include <set>
#include <tuple>
#include <vector>

namespace quorvane::guard {

/// A route to one IPv4 host through a gateway, addresses in network byte order.
struct HostRoute {
    std::uint32_t host = 0;
    std::uint32_t gateway = 0;

    bool operator<(const HostRoute &other) const {
        return std::tie(host, gateway) < std::tie(other.host, other.gateway);
    }
};

/// The routes to the VPN servers. OpenVPN makes one and removes it when it ends, but not when it is killed,
/// and the application stops it by killing it. This class removes the routes that are left, so that the
/// machine's routes are the same after the attempt as before it.
class HostRoutes {
public:
    /// Reads the routes that already exist; those will be kept. `servers`: IPv4 addresses in network byte
    /// order.
    explicit HostRoutes(std::vector<std::uint32_t> servers);

    /// Removes the routes to the servers that did not exist at construction. Needs root's rights; errors are
    /// ignored.
    void removeNew() const;

private:
    std::vector<std::uint32_t> m_servers;
    std::set<HostRoute> m_before;
};

} // namespace quorvane::guard
