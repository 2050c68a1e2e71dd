#pragma once

#include "RouteRecord.h"
#include "Routing.h"
#include "TunnelRules.h"

namespace quorvane::guard {

/// The computer's routes during one session: stored before it, judged while it lives, restored after it.
class SessionRoutes {
public:
    /// `record`: the path of the file from which the next guard restores the routes when this one is killed.
    SessionRoutes(Routing &routing, std::string record) : m_routing(routing), m_record(std::move(record)) {}

    /// Takes back what a session left whose guard was killed. Needs the lock against other guards.
    void restoreAfterKilledGuard();

    /// Stores the routes as they are. Without that no session may start.
    Result<> begin(std::set<Network> servers);

    /// A further address of the server: one that OpenVPN found for a name.
    void addServer(const Network &server) { m_tunnel.servers.insert(server); }

    /// Judges the routes of a tunnel that reports that it is up. The error is a text for the log.
    Result<> checkUp(pid_t openVpn);

    /// The tunnel's device, after a checkUp() that has succeeded.
    [[nodiscard]] unsigned device() const { return m_tunnel.device; }

    /// A descriptor that is readable when checkChanges() has something to look at; -1 for none.
    [[nodiscard]] int changesDescriptor() const { return m_routing.changesDescriptor(); }

    /// Judges what has changed since the last call. Before checkUp() has succeeded, everything is accepted.
    Result<> checkChanges();

    /// False when the last call of checkChanges() saw that the tunnel has lost routes of its own. When
    /// OpenVPN ends it removes them first, and when it is killed the kernel does.
    [[nodiscard]] bool carriesAllAddresses() const { return m_carriesAll; }

    /// Makes the routes as they were at begin(). Call it when OpenVPN has ended.
    void restore();

private:
    void waitForEndOfTunnel(const NetworkState &before);
    void restoreServerRoutes(const RouteChanges &changes);
    void repair(const NetworkState &before, const std::set<Network> &servers);

    Routing &m_routing;
    std::string m_record;
    NetworkState m_before;
    TunnelFacts m_tunnel;
    std::set<Route> m_serverRoutes; ///< to the servers, as OpenVPN has made them
    bool m_isUp = false;
    bool m_carriesAll = true;
};

} // namespace quorvane::guard
