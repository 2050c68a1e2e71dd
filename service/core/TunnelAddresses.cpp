#include "TunnelAddresses.h"

namespace quorvane::service {

namespace {

constexpr std::uint32_t FirstClient = 2;
constexpr std::uint32_t NotForClients = 3;

} // namespace

TunnelAddresses::TunnelAddresses(Ipv4Network network, std::uint32_t start)
    : m_network(network), m_count(static_cast<std::uint32_t>(network.size()) - NotForClients),
      m_next(start % m_count) {}

std::optional<Ipv4Address> TunnelAddresses::take() {
    if (m_taken.size() >= m_count) {
        return std::nullopt;
    }
    for (;;) {
        const Ipv4Address address{m_network.base.value + FirstClient + m_next};
        m_next = (m_next + 1) % m_count;
        if (m_taken.insert(address).second) {
            return address;
        }
    }
}

std::optional<Ipv4Address> TunnelAddresses::takeAgain(Ipv4Address address) {
    const Ipv4Address first{m_network.base.value + FirstClient};
    const bool ours = address.value >= first.value && address.value - first.value < m_count;
    if (ours && m_taken.insert(address).second) {
        return address;
    }
    return take();
}

void TunnelAddresses::giveBack(Ipv4Address address) {
    m_taken.erase(address);
}

} // namespace quorvane::service
