#pragma once

#include "Config.h"

#include <string>

namespace quorvane::service {

/// Input for nft on the gateway. Each text is one transaction.
class GatewayRules {
public:
    /// For a configuration with a gateway, which is not owned.
    explicit GatewayRules(const Config &config);

    /// Makes the tables and replaces those of an earlier run. Tables that are not our own are emptied only.
    [[nodiscard]] std::string setup() const;
    /// Removes what setup() made. Of tables that are not our own the map and the set are emptied only.
    [[nodiscard]] std::string teardown() const;
    /// Lets traffic of the tunnel address leave with the lent address.
    [[nodiscard]] std::string lend(Ipv4Address tunnel, Ipv4Address lent) const;
    /// Undoes lend().
    [[nodiscard]] std::string release(Ipv4Address tunnel) const;

private:
    [[nodiscard]] std::string ruleset() const;
    [[nodiscard]] std::string forwardChain(const std::string &networks, const std::string &devices) const;
    [[nodiscard]] std::string ownChains(const std::string &devices) const;

    const Config &m_config;
    const Gateway &m_gateway;
    const Vpn &m_vpn;
};

} // namespace quorvane::service
