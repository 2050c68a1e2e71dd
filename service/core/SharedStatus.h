#pragma once

#include "SharedFacts.h"

#include <chrono>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

namespace quorvane::service {

/// What a node knows of the others, and whether that is up to date.
struct SharedStatus {
    std::string node;
    bool connected = false;
    std::string endpoint{};         ///< that it is connected to
    std::chrono::sys_seconds since; ///< it is connected, or not
    std::string problem{};          ///< why it is not connected
    std::map<std::string, RegisteredGateway> gateways{};
    std::size_t pendingOrders = 0; ///< not yet known to other nodes
    std::map<Ipv4Address, std::string> ownedByOthers{};
    bool replaced = false; ///< another gateway with this one's name has registered
};

[[nodiscard]] nlohmann::json sharedReport(const SharedStatus &status);

} // namespace quorvane::service
