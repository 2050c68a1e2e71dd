#pragma once

#include "Config.h"

#include <string>

namespace quorvane::service {

/// The nftables input that the gateway is given. Each text is one transaction.
class GatewayRules {
public:
    /// Neither argument is owned.
    GatewayRules(const Gateway &gateway, const Vpn &vpn);

    /// Makes the tables in place of any that a predecessor left, or empties the ones that are there.
    [[nodiscard]] std::string setup() const;
    /// Removes what setup made, or empties the map and the set.
    [[nodiscard]] std::string teardown() const;
    [[nodiscard]] std::string lend(Ipv4Address tunnel, Ipv4Address lent) const;
    [[nodiscard]] std::string takeBack(Ipv4Address tunnel) const;

private:
    [[nodiscard]] std::string ruleset() const;

    const Gateway &m_gateway;
    const Vpn &m_vpn;
};

} // namespace quorvane::service
