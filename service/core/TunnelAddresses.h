#pragma once

#include "Ipv4.h"

#include <cstdint>
#include <optional>
#include <set>

namespace quorvane::service {

/// The client addresses of one tunnel network, free or allocated.
///
/// They are allocated in a circle, not lowest first: a released address stays unused as long as possible, so
/// that connections which the gateway still tracks for it do not reach a new owner.
class TunnelAddresses {
public:
    /// The addresses of the network itself, of the server (the first) and of broadcasts are never allocated.
    /// `start` selects where the circle begins.
    TunnelAddresses(Ipv4Network network, std::uint32_t start);

    /// A free address, or nothing when all are allocated.
    [[nodiscard]] std::optional<Ipv4Address> allocate();
    /// This address if it is a free client address of the network, else as allocate().
    [[nodiscard]] std::optional<Ipv4Address> allocatePreferred(Ipv4Address address);
    void release(Ipv4Address address);

    [[nodiscard]] std::size_t allocatedCount() const { return m_allocated.size(); }

    [[nodiscard]] const Ipv4Network &network() const { return m_network; }

private:
    Ipv4Network m_network;
    std::uint32_t m_count; ///< of client addresses
    std::uint32_t m_next;  ///< counted from the first client address
    std::set<Ipv4Address> m_allocated;
};

} // namespace quorvane::service
