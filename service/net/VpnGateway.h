#pragma once

#include "GatewayRunner.h"
#include "VpnProcess.h"
#include "core/Config.h"
#include "core/ControlCommands.h"
#include "core/GatewayRules.h"
#include "core/LoginHandler.h"

#include <functional>
#include <memory>
#include <vector>

namespace quorvane::service {

/// Everything on the gateway: sets up the tables, then the OpenVPN servers that depend on them, and removes
/// both in the opposite order.
class VpnGateway : private AddressLeaseTable {
public:
    /// None of the references is owned. The configuration must have a gateway.
    VpnGateway(boost::asio::io_context &context, const Config &config, UsedGrants &grants);
    ~VpnGateway() override;

    /// `failed` is called once when the gateway cannot be set up.
    void start(std::function<void(const std::string &reason)> failed);
    /// `stopped` is called when the servers have ended and the tables are removed.
    void stop(std::function<void()> stopped);

    /// Opens the servers' logs again: another program has renamed the files.
    void reopenLogs();

    /// As LoginHandler::endSessions(), on all servers.
    std::size_t endSessions(const std::function<bool(const Grant &)> &ends);

    [[nodiscard]] std::vector<ServerStatus> status() const;

    struct Lends {
        std::uint64_t all = 0;    ///< since the start
        std::uint64_t failed = 0; ///< since the start
        std::uint64_t current = 0;
    };

    [[nodiscard]] const Lends &lends() const { return m_lends; }

private:
    void lend(Ipv4Address tunnel, Ipv4Address lent, std::function<void(bool)> done) override;
    void release(Ipv4Address tunnel) override;
    Result<> startServers();
    void serverStopped();

    boost::asio::io_context &m_context;
    const Config &m_config;
    UsedGrants &m_grants;
    GatewayRules m_rules;
    GatewayRunner m_nft;
    std::vector<std::unique_ptr<VpnProcess>> m_servers;
    std::function<void(const std::string &)> m_failed;
    std::function<void()> m_stopped;
    Lends m_lends;
    std::size_t m_stopping = 0; ///< servers that have not ended yet, and one for stop() itself
};

} // namespace quorvane::service
