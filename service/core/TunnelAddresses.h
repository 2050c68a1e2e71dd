#pragma once

#include "Ipv4.h"

#include <cstdint>
#include <optional>
#include <set>

namespace quorvane::service {

/// The free client addresses of one tunnel network.
///
/// They are given out in a circle, not lowest first: an address that was just returned rests as long as
/// possible, so that connections which the gateway still tracks for it do not meet a new owner.
class TunnelAddresses {
public:
    /// The network's own, the server's (the first) and the broadcast address are never given out.
    /// `start` picks where the circle begins.
    TunnelAddresses(Ipv4Network network, std::uint32_t start);

    /// A free address, or nothing when all are taken.
    std::optional<Ipv4Address> take();
    /// This address if it is one of the network's for clients and free, else as `take`.
    std::optional<Ipv4Address> takeAgain(Ipv4Address address);
    void giveBack(Ipv4Address address);

    [[nodiscard]] std::size_t taken() const { return m_taken.size(); }

    [[nodiscard]] const Ipv4Network &network() const { return m_network; }

private:
    Ipv4Network m_network;
    std::uint32_t m_count;
    std::uint32_t m_next;
    std::set<Ipv4Address> m_taken;
};

} // namespace quorvane::service
