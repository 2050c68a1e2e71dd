#include "TunnelRules.h"

#include <algorithm>
#include <array>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

namespace quorvane::guard {

namespace {

/// The rule that looks up the main table, unless the administrator has changed it.
constexpr std::uint32_t mainRulePriority = 32766;
constexpr std::array halves{'\0', '\x80'};

bool isHalf(const Route &route) {
    return route.destination.family == AF_INET && route.destination.length == 1 &&
           route.table == RT_TABLE_MAIN;
}

bool isServer(const Network &network, const std::set<Network> &servers) {
    return servers.contains(network);
}

/// True when packets can meet the table before they meet the tunnel's routes in the main table.
bool precedesMain(const Route &route, const NetworkState &now) {
    return std::ranges::any_of(now.rules, [&route](const Rule &rule) {
        return rule.family == route.destination.family && rule.table == route.table &&
               rule.priority < mainRulePriority;
    });
}

bool isWithinConnectedNetwork(const Route &route, const NetworkState &now, unsigned tunnel) {
    return std::ranges::any_of(now.routes, [&](const Route &one) {
        return one.type == RTN_UNICAST && one.table == RT_TABLE_MAIN && one.destination.length > 0 &&
               !one.leadsThroughGateway() && !one.usesOnly(tunnel) &&
               one.destination.contains(route.destination);
    });
}

bool takesFromTunnel(const Route &route, const NetworkState &now, unsigned tunnel) {
    if (route.table != RT_TABLE_MAIN) {
        return precedesMain(route, now);
    }
    return std::ranges::any_of(now.routes, [&](const Route &one) {
        return one.type == RTN_UNICAST && one.table == RT_TABLE_MAIN && one.usesOnly(tunnel) &&
               one.destination.contains(route.destination);
    });
}

/// Routes that depend on time or on the kernel; they come and go by themselves.
bool isTransient(const Route &route) {
    return route.protocol == RTPROT_KERNEL || route.protocol == RTPROT_RA ||
           route.protocol == RTPROT_REDIRECT;
}

/// True when OpenVPN, or a program that it runs, may have made the route.
bool isMadeByHand(const Route &route) {
    return route.protocol == RTPROT_UNSPEC || route.protocol == RTPROT_BOOT ||
           route.protocol == RTPROT_STATIC;
}

/// True when the device is still the one that it was, in the network where it was.
bool isUnchanged(unsigned device, const NetworkState &before, const NetworkState &now) {
    const auto was = before.devices.find(device);
    const auto is = now.devices.find(device);
    if (was == before.devices.end() || is == now.devices.end() || was->second != is->second) {
        return false;
    }
    const auto isOnDevice = [device](const DeviceAddress &address) {
        return address.device == device;
    };
    return std::ranges::none_of(before.addresses, isOnDevice) ||
           std::ranges::any_of(before.addresses, [&](const DeviceAddress &address) {
               return isOnDevice(address) && now.addresses.contains(address);
           });
}

bool areUnchanged(const Route &route, const NetworkState &before, const NetworkState &now) {
    return std::ranges::all_of(
        route.hops, [&](const Hop &hop) { return hop.device == 0 || isUnchanged(hop.device, before, now); });
}

bool isOtherDefault(const Route &route, const Route &other) {
    return other.destination == route.destination && other.table == route.table && other.type == RTN_UNICAST;
}

} // namespace

bool carriesAll(const NetworkState &now, unsigned device) {
    // A second route to the same half, with another metric, could be preferred.
    return std::ranges::all_of(halves, [&](char first) {
        bool found = false;
        for (const Route &route : now.routes) {
            if (isHalf(route) && route.destination.address.front() == first) {
                if (route.type != RTN_UNICAST || !route.usesOnly(device)) {
                    return false;
                }
                found = true;
            }
        }
        return found;
    });
}

bool leadsPastTunnel(const Route &route, const NetworkState &before, const NetworkState &now,
                     const TunnelFacts &tunnel) {
    return route.type == RTN_UNICAST && route.leadsThroughGateway() && !route.usesOnly(tunnel.device) &&
           !before.routes.contains(route) && !isServer(route.destination, tunnel.servers) &&
           takesFromTunnel(route, now, tunnel.device) && !isWithinConnectedNetwork(route, now, tunnel.device);
}

Result<> checkTunnel(const NetworkState &before, const NetworkState &now, const TunnelFacts &tunnel) {
    if (!carriesAll(now, tunnel.device)) {
        return Failure{"its device does not carry all IPv4 addresses"};
    }
    for (const Route &route : now.routes) {
        if (leadsPastTunnel(route, before, now, tunnel)) {
            return Failure{"the route to " + textOf(route.destination) + " leads past it"};
        }
    }
    for (const Route &route : before.routes) {
        if (!isTransient(route) && !now.routes.contains(route)) {
            return Failure{"the route to " + textOf(route.destination) + " has gone"};
        }
    }
    if (!std::includes(now.rules.begin(), now.rules.end(), before.rules.begin(), before.rules.end())) {
        return Failure{"a routing rule has gone"};
    }
    for (const DeviceAddress &address : before.addresses) {
        if (address.address.family == AF_INET && !now.addresses.contains(address)) {
            return Failure{"the address " + textOf(address.address) + " has gone"};
        }
    }
    return {};
}

Repair repairOf(const NetworkState &before, const NetworkState &now, const std::set<Network> &servers) {
    Repair repair;
    for (const Route &route : now.routes) {
        const bool isNew = route.type == RTN_UNICAST && route.leadsThroughGateway() && isMadeByHand(route) &&
                           route.destination.length > 0 && !before.routes.contains(route);
        if (isNew && (isServer(route.destination, servers) || areUnchanged(route, before, now))) {
            repair.remove.push_back(route);
        }
    }
    for (const Route &route : before.routes) {
        const bool isReplaced =
            route.destination.length == 0 && std::ranges::any_of(now.routes, [&](const Route &other) {
                return isOtherDefault(route, other) && !before.routes.contains(other);
            });
        if (!isTransient(route) && !now.routes.contains(route) && !isReplaced &&
            areUnchanged(route, before, now)) {
            repair.add.push_back(route);
        }
    }
    std::stable_partition(repair.add.begin(), repair.add.end(),
                          [](const Route &route) { return !route.leadsThroughGateway(); });
    return repair;
}

} // namespace quorvane::guard
