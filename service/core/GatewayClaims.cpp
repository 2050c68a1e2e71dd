#include "GatewayClaims.h"

#include <set>

namespace quorvane::service {

GatewayClaims GatewayClaims::of(const SharedFacts &facts, const std::string &gateway,
                                const std::vector<Ipv4Address> &configured,
                                const std::function<bool(Ipv4Address)> &inUse) {
    GatewayClaims claims;
    for (const Ipv4Address address : configured) {
        const auto found = facts.owners().find(address);
        if (found == facts.owners().end()) {
            claims.claim.push_back(address);
        } else if (found->second == gateway) {
            claims.owned.push_back(address);
        } else {
            claims.ownedByOthers.emplace(address, found->second);
        }
    }
    const std::set<Ipv4Address> kept(configured.begin(), configured.end());
    for (const Ipv4Address address : facts.addressesOf(gateway)) {
        if (!kept.contains(address) && !inUse(address)) {
            claims.release.push_back(address);
        }
    }
    return claims;
}

} // namespace quorvane::service
