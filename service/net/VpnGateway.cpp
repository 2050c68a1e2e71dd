#include <utility>

#include "VpnGateway.h"

#include "ServiceLog.h"
#include "core/RequestLog.h"

#include <filesystem>

namespace quorvane::service {

namespace {

std::vector<std::string> nftCommand(const Gateway &gateway) {
    std::vector<std::string> command = gateway.command;
    command.insert(command.end(), {gateway.nft, "-f", "-"});
    return command;
}

} // namespace

VpnGateway::VpnGateway(boost::asio::io_context &context, const Config &config, UsedGrants &grants)
    : m_context(context), m_config(config), m_grants(grants), m_rules(config),
      m_nft(context, nftCommand(*config.gateway)) {}

VpnGateway::~VpnGateway() = default;

void VpnGateway::start(std::function<void(const std::string &)> failed) {
    m_failed = std::move(failed);
    m_nft.run(m_rules.setup(), [this](bool succeeded, const std::string &error) {
        if (m_stopped) {
            return;
        }
        if (!succeeded) {
            m_failed("gateway: the tables cannot be set up: " + error);
        } else if (const auto started = startServers(); !started) {
            m_failed(started.error());
        }
    });
}

Result<> VpnGateway::startServers() {
    const std::string link = m_config.runtimeFolder + "/vpnsrv";
    std::error_code error;
    std::filesystem::remove(link, error);
    std::filesystem::create_symlink(m_config.gateway->openvpn, link, error);
    if (error) {
        return Failure{"runtime_folder: cannot make " + link + ": " + error.message()};
    }
    AddressLeaseTable &table = *this;
    for (const auto *server : {&m_config.vpn.udp, &m_config.vpn.tcp}) {
        if (*server) {
            m_servers.push_back(std::make_unique<VpnProcess>(m_context, m_config, **server, m_grants, table));
        }
    }
    for (const auto &server : m_servers) {
        if (auto started = server->start(); !started) {
            return started;
        }
    }
    return {};
}

void VpnGateway::stop(std::function<void()> stopped) {
    m_stopped = std::move(stopped);
    m_stopping = m_servers.size() + 1;
    for (const auto &server : m_servers) {
        server->stop([this] { serverStopped(); });
    }
    serverStopped();
}

void VpnGateway::serverStopped() {
    if (--m_stopping > 0) {
        return;
    }
    m_nft.run(m_rules.teardown(), [this](bool succeeded, const std::string &error) {
        if (!succeeded) {
            writeLog("gateway: the tables cannot be removed: " + jsonText(error));
        }
        m_stopped();
    });
}

void VpnGateway::reopenLogs() {
    for (const auto &server : m_servers) {
        server->reopenLog();
    }
}

std::size_t VpnGateway::endSessions(const std::function<bool(const Grant &)> &ends) {
    std::size_t ended = 0;
    for (const auto &server : m_servers) {
        ended += server->endSessions(ends);
    }
    return ended;
}

std::vector<ServerStatus> VpnGateway::status() const {
    std::vector<ServerStatus> states;
    for (const auto &server : m_servers) {
        states.push_back(server->status());
    }
    if (states.empty()) {
        states.push_back({"gateway", false, false, 0, {}}); // the tables are not set up yet
    }
    return states;
}

void VpnGateway::lend(Ipv4Address tunnel, Ipv4Address lent, std::function<void(bool)> done) {
    ++m_lends.all;
    ++m_lends.current;
    m_nft.run(m_rules.lend(tunnel, lent),
              [this, tunnel, done = std::move(done)](bool succeeded, const std::string &error) {
                  if (!succeeded) {
                      ++m_lends.failed;
                      writeLog("gateway: cannot lend to " + tunnel.text() + ": " + jsonText(error));
                  }
                  done(succeeded);
              });
}

void VpnGateway::release(Ipv4Address tunnel) {
    --m_lends.current;
    m_nft.run(m_rules.release(tunnel), [tunnel](bool succeeded, const std::string &error) {
        if (!succeeded) {
            writeLog("gateway: cannot end the lease of " + tunnel.text() + ": " + jsonText(error));
        }
    });
}

} // namespace quorvane::service
