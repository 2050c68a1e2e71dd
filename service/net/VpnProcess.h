#pragma once

#include "ChildProcess.h"
#include "LineServer.h"
#include "core/BackOff.h"
#include "core/Config.h"
#include "core/ControlCommands.h"
#include "core/LoginHandler.h"
#include "core/TunnelAddresses.h"

#include <functional>
#include <memory>
#include <string>

namespace quorvane::service {

/// One OpenVPN server: its files in the runtime folder, its process, and the desk it asks for logins.
/// A server that ends is started again, more slowly each time. A server whose service is gone ends by
/// itself, because its management connection breaks.
class VpnProcess {
public:
    /// None of the references is owned.
    VpnProcess(boost::asio::io_context &context, const Config &config, const VpnServer &server,
               CredentialStore &credentials, LendingTable &table);
    ~VpnProcess();
    VpnProcess(const VpnProcess &) = delete;
    VpnProcess &operator=(const VpnProcess &) = delete;

    /// Writes the files, binds the management socket and starts the server.
    Result<> start();
    /// Ends the server, by force after a while; `stopped` is called when it is gone.
    void stop(std::function<void()> stopped);

    [[nodiscard]] ServerStatus status() const;

private:
    class Management;
    struct Timers;

    [[nodiscard]] std::string path(const std::string &suffix) const;
    void launch();
    void ended(int status);
    void launchLater();
    void finishStop();

    boost::asio::io_context &m_context;
    const Config &m_config;
    const VpnServer &m_server;
    std::string m_name;
    CredentialStore &m_credentials;
    LendingTable &m_table;
    TunnelAddresses m_addresses;
    LineServer m_management;
    BackOff m_backOff;
    std::unique_ptr<Timers> m_timers;
    std::unique_ptr<ChildProcess> m_process;
    std::chrono::steady_clock::time_point m_launched;
    std::weak_ptr<LoginDesk> m_desk; ///< of the newest management connection
    bool m_running = false;
    std::function<void()> m_stopped; ///< set once the server is to end
};

} // namespace quorvane::service
