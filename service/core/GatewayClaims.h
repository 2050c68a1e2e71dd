#pragma once

#include "SharedFacts.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace quorvane::service {

/// What a gateway must change so that it owns the addresses of its configuration and no others.
struct GatewayClaims {
    std::vector<Ipv4Address> claim;   ///< owned by no gateway
    std::vector<Ipv4Address> release; ///< owned by this one, and neither configured nor in use
    std::map<Ipv4Address, std::string> ownedByOthers; ///< configured here, too
    std::vector<Ipv4Address> owned;                   ///< configured and owned by this gateway

    /// `inUse`: true for an address that a session still has.
    static GatewayClaims of(const SharedFacts &facts, const std::string &gateway,
                            const std::vector<Ipv4Address> &configured,
                            const std::function<bool(Ipv4Address)> &inUse);
};

} // namespace quorvane::service
