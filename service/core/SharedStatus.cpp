#include "SharedStatus.h"

namespace quorvane::service {

using nlohmann::json;

json sharedReport(const SharedStatus &status) {
    json gateways = json::object();
    for (const auto &[name, gateway] : status.gateways) {
        json addresses = json::array();
        for (const Ipv4Address address : gateway.addresses) {
            addresses.push_back(address.text());
        }
        gateways[name] = {{"addresses", addresses},
                          {"draining", gateway.draining},
                          {"since", gateway.since.time_since_epoch().count()}};
    }
    json owned = json::object();
    for (const auto &[address, owner] : status.ownedByOthers) {
        owned[address.text()] = owner;
    }
    json report = {{"node", status.node},
                   {"connected", status.connected},
                   {"since", status.since.time_since_epoch().count()},
                   {"gateways", gateways},
                   {"pending_orders", status.pendingOrders},
                   {"owned_by_others", owned},
                   {"replaced", status.replaced}};
    if (status.connected) {
        report["endpoint"] = status.endpoint;
    } else {
        report["problem"] = status.problem;
    }
    return report;
}

} // namespace quorvane::service
