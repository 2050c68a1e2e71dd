#pragma once

#include "ChildProcess.h"
#include "LineServer.h"
#include "PipeLog.h"
#include "core/BackOff.h"
#include "core/Config.h"
#include "core/ControlCommands.h"
#include "core/LoginHandler.h"
#include "core/TunnelAddresses.h"

#include <functional>
#include <memory>
#include <string>

namespace quorvane::service {

/// One OpenVPN server: its files in the runtime folder, its process and the handler of its logins. A server
/// that ends is started again, after a longer delay each time. When the service itself is killed, the server
/// ends because its management connection breaks.
class VpnProcess {
public:
    /// None of the references is owned.
    VpnProcess(boost::asio::io_context &context, const Config &config, const VpnServer &server,
               UsedGrants &grants, AddressLeaseTable &table);
    ~VpnProcess();
    VpnProcess(const VpnProcess &) = delete;
    VpnProcess &operator=(const VpnProcess &) = delete;

    /// Writes the files, binds the management socket and starts the server.
    Result<> start();
    /// Ends the server, and kills it when it does not end in time. `stopped` is called when it has ended.
    void stop(std::function<void()> stopped);

    /// Opens the server's log again: another program has renamed the file.
    void reopenLog() { m_log->reopen(); }

    /// As LoginHandler::endSessions().
    std::size_t endSessions(const std::function<bool(const Grant &)> &ends);

    [[nodiscard]] ServerStatus status() const;

private:
    class Management;
    struct Timers;

    [[nodiscard]] std::string path(const std::string &suffix) const;
    void startProcess();
    void processEnded(int status);
    void restartLater();
    void finishStop();

    boost::asio::io_context &m_context;
    const Config &m_config;
    const VpnServer &m_server;
    std::string m_name;
    UsedGrants &m_grants;
    AddressLeaseTable &m_table;
    TunnelAddresses m_addresses;
    LineServer m_management;
    std::shared_ptr<PipeLog> m_log;
    BackOff m_backOff;
    std::unique_ptr<Timers> m_timers;
    std::unique_ptr<ChildProcess> m_process;
    std::chrono::steady_clock::time_point m_startTime;
    std::weak_ptr<LoginHandler> m_loginHandler; ///< of the newest management connection
    bool m_running = false;
    std::function<void()> m_stopped; ///< set by stop()
};

} // namespace quorvane::service
