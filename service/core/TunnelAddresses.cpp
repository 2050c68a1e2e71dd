#include "TunnelAddresses.h"

namespace quorvane::service {

namespace {

constexpr std::uint32_t firstClient = 2;
constexpr std::uint32_t reservedAddresses = 3;

} // namespace

TunnelAddresses::TunnelAddresses(Ipv4Network network, std::uint32_t start)
    : m_network(network), m_count(static_cast<std::uint32_t>(network.size()) - reservedAddresses),
      m_next(start % m_count) {}

std::optional<Ipv4Address> TunnelAddresses::allocate() {
    if (m_allocated.size() >= m_count) {
        return std::nullopt;
    }
    for (;;) {
        const Ipv4Address address{m_network.base.value + firstClient + m_next};
        m_next = (m_next + 1) % m_count;
        if (m_allocated.insert(address).second) {
            return address;
        }
    }
}

std::optional<Ipv4Address> TunnelAddresses::allocatePreferred(Ipv4Address address) {
    const Ipv4Address first{m_network.base.value + firstClient};
    const bool isClientAddress = address.value >= first.value && address.value - first.value < m_count;
    if (isClientAddress && m_allocated.insert(address).second) {
        return address;
    }
    return allocate();
}

void TunnelAddresses::release(Ipv4Address address) {
    m_allocated.erase(address);
}

} // namespace quorvane::service
