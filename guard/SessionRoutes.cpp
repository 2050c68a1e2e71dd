#include "SessionRoutes.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace quorvane::guard {

void SessionRoutes::restoreAfterKilledGuard() {
    if (const auto record = readRecord(m_record)) {
        waitForEndOfTunnel(record->before);
        repair(record->before, record->servers);
    }
    removeRecord(m_record);
}

Result<> SessionRoutes::begin(std::set<Network> servers) {
    auto state = m_routing.state();
    if (!state) {
        return Failure{state.error()};
    }
    m_before = std::move(state).value();
    m_tunnel.servers = std::move(servers);
    return writeRecord(m_record, {m_before, m_tunnel.servers});
}

Result<> SessionRoutes::checkUp(pid_t openVpn) {
    const auto device = m_routing.tunnelDeviceOf(openVpn);
    // A device that was there before belongs to another program.
    if (!device || m_before.devices.contains(*device)) {
        return Failure{"the tunnel is refused: it has no device of its own"};
    }
    m_tunnel.device = *device;
    // What led to the present state is judged by that state.
    static_cast<void>(m_routing.changes());
    const auto now = m_routing.state();
    const auto checked = now ? checkTunnel(m_before, now.value(), m_tunnel) : Result<>(Failure{now.error()});
    if (!checked) {
        return Failure{"the tunnel is refused: " + checked.error()};
    }
    for (const Route &route : now.value().routes) {
        if (route.leadsThroughGateway() && !route.usesOnly(m_tunnel.device) &&
            !m_before.routes.contains(route)) {
            m_serverRoutes.insert(route);
        }
    }
    m_isUp = true;
    m_carriesAll = true;
    return {};
}

/// When a cable is pulled out, the kernel removes the route to the server with it, and nothing else makes it
/// anew: OpenVPN would send into its own tunnel until it gives up.
void SessionRoutes::restoreServerRoutes(const RouteChanges &changes) {
    const bool mayBeBack =
        changes.isIncomplete || std::ranges::any_of(changes.added, [this](const auto &route) {
            return route.leadsThroughGateway() && !route.usesOnly(m_tunnel.device);
        });
    const auto now = m_isUp && mayBeBack ? m_routing.state() : Result<NetworkState>(Failure{});
    if (!now) {
        return;
    }
    for (const Route &route : m_serverRoutes) {
        if (!now.value().routes.contains(route)) {
            m_routing.add(route); // refused by the kernel while its gateway cannot be reached
        }
    }
}

Result<> SessionRoutes::checkChanges() {
    const RouteChanges changes = m_routing.changes();
    restoreServerRoutes(changes);
    const auto concernsTunnel = [this](const Route &route) {
        return route.usesOnly(m_tunnel.device);
    };
    const auto mayLeadPast = [&](const Route &route) {
        return concernsTunnel(route) || (route.leadsThroughGateway() && !m_before.routes.contains(route));
    };
    if (!m_isUp || (!changes.isIncomplete && std::ranges::none_of(changes.added, mayLeadPast) &&
                    std::ranges::none_of(changes.removed, concernsTunnel))) {
        return {};
    }
    const auto now = m_routing.state();
    if (!now) {
        return Failure{"the tunnel is ended: " + now.error()};
    }
    // A route that has gone again already has led packets past the tunnel all the same.
    std::set<Route> looked = now.value().routes;
    looked.insert(changes.added.begin(), changes.added.end());
    for (const Route &route : looked) {
        if (leadsPastTunnel(route, m_before, now.value(), m_tunnel)) {
            return Failure{"the tunnel is ended: the route to " + textOf(route.destination) +
                           " leads past it"};
        }
    }
    m_carriesAll = carriesAll(now.value(), m_tunnel.device);
    return {};
}

void SessionRoutes::waitForEndOfTunnel(const NetworkState &before) {
    // OpenVPN is killed with its guard, but the kernel may still be removing its device.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    const auto isLeft = [&before](const NetworkState &now) {
        return std::ranges::any_of(now.devices, [&](const auto &device) {
            return !before.devices.contains(device.first) && carriesAll(now, device.first);
        });
    };
    for (auto now = m_routing.state(); now && isLeft(now.value()) && std::chrono::steady_clock::now() < end;
         now = m_routing.state()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

void SessionRoutes::restore() {
    repair(m_before, m_tunnel.servers);
    removeRecord(m_record);
}

void SessionRoutes::repair(const NetworkState &before, const std::set<Network> &servers) {
    const auto now = m_routing.state();
    if (!now) {
        return;
    }
    const Repair repair = repairOf(before, now.value(), servers);
    for (const Route &route : repair.remove) {
        m_routing.remove(route);
    }
    for (const Route &route : repair.add) {
        m_routing.add(route);
    }
}

} // namespace quorvane::guard
