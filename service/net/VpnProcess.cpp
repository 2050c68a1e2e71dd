#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>

#include "VpnProcess.h"

#include "ServiceLog.h"
#include "common/FileDescriptor.h"
#include "core/ManagementParser.h"
#include "core/VpnConfiguration.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <random>

namespace quorvane::service {

namespace asio = boost::asio;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds firstRestartDelay{200};
constexpr milliseconds maximumRestartDelay{5000};
constexpr milliseconds stableRunTime{10000};
/// The time for a server to notify its clients and end.
constexpr std::chrono::seconds stopTimeout{3};

} // namespace

struct VpnProcess::Timers {
    explicit Timers(asio::io_context &context) : restart(context), stop(context) {}

    asio::steady_timer restart;
    asio::steady_timer stop;
};

/// One management connection.
class VpnProcess::Management : public LineServer::Client {
public:
    explicit Management(std::shared_ptr<LoginHandler> handler)
        : m_handler(std::move(handler)),
          m_parser([this](const ManagementEvent &event) { m_handler->handle(event); }) {}

    bool received(std::string_view bytes) override { return m_parser.feed(bytes); }

    void closed() override { m_handler->connectionLost(); }

private:
    std::shared_ptr<LoginHandler> m_handler;
    ManagementParser m_parser;
};

VpnProcess::VpnProcess(asio::io_context &context, const Config &config, const VpnServer &server,
                       UsedGrants &grants, AddressLeaseTable &table)
    : m_context(context), m_config(config), m_server(server), m_name(protocolName(server.protocol)),
      m_grants(grants), m_table(table), m_addresses(server.network, std::random_device()()),
      m_management(context,
                   [this](LineServer::Send send) -> std::unique_ptr<LineServer::Client> {
                       auto handler = std::make_shared<LoginHandler>(
                           m_server.protocol, m_grants, m_addresses, m_table, std::move(send),
                           [name = m_name](const std::string &line) { writeLog(name + ": " + line); });
                       m_loginHandler = handler;
                       return std::make_unique<Management>(std::move(handler));
                   }),
      m_log(std::make_shared<PipeLog>(context, config.log)),
      m_backOff(firstRestartDelay, maximumRestartDelay, stableRunTime),
      m_timers(std::make_unique<Timers>(context)) {}

VpnProcess::~VpnProcess() = default;

std::string VpnProcess::path(const std::string &suffix) const {
    return m_config.runtimeFolder + '/' + m_name + suffix;
}

Result<> VpnProcess::start() {
    const std::string socket = m_config.runtimeFolder + "/management-" + m_name + ".sock";
    std::ofstream file(path(".conf"), std::ios::trunc);
    file << serverConfiguration(m_config.vpn, m_server, m_config.clientCertificatesPath(), socket)
         << serverLimits(m_config.limits.vpn, m_server, m_config.controlKeyPath());
    file.close();
    if (!file) {
        return Failure{"runtime_folder: cannot write " + path(".conf")};
    }
    if (auto opened = m_log->open(path(".log")); !opened) {
        return Failure{"runtime_folder: " + opened.error()};
    }
    auto bound = m_management.start(socket);
    if (bound) {
        startProcess();
    }
    return bound;
}

void VpnProcess::startProcess() {
    const FileDescriptor log = m_log->newPipe();
    if (!log.isOpen()) {
        writeLog(m_name + ": cannot make a pipe: " + std::strerror(errno));
        restartLater();
        return;
    }
    std::vector<std::string> command = m_config.gateway->command;
    command.insert(command.end(), {m_config.runtimeFolder + "/vpnsrv", "--config", path(".conf")});
    m_startTime = std::chrono::steady_clock::now();
    auto process =
        ChildProcess::start(m_context, command, -1, log.get(), [this](int status) { processEnded(status); });
    if (!process) {
        writeLog(m_name + ": " + process.error());
        restartLater();
        return;
    }
    m_process = std::move(process).value();
    m_running = true;
}

void VpnProcess::processEnded(int status) {
    m_running = false;
    if (m_stopped) {
        finishStop();
        return;
    }
    writeLog(m_name + ": the OpenVPN server ended with status " + std::to_string(status) + ", see " +
             path(".log"));
    restartLater();
}

void VpnProcess::restartLater() {
    const auto ran = std::chrono::steady_clock::now() - m_startTime;
    m_timers->restart.expires_after(m_backOff.next(std::chrono::duration_cast<milliseconds>(ran)));
    m_timers->restart.async_wait([this](const boost::system::error_code &cancelled) {
        if (!cancelled && !m_stopped) {
            startProcess();
        }
    });
}

void VpnProcess::stop(std::function<void()> stopped) {
    m_stopped = std::move(stopped);
    m_timers->restart.cancel();
    if (!m_running) {
        asio::post(m_context, [this] { finishStop(); });
        return;
    }
    m_process->signal(SIGTERM);
    m_timers->stop.expires_after(stopTimeout);
    m_timers->stop.async_wait([this](const boost::system::error_code &cancelled) {
        if (!cancelled && m_running) {
            writeLog(m_name + ": the OpenVPN server does not end, killing it");
            m_process->signal(SIGKILL);
        }
    });
}

void VpnProcess::finishStop() {
    m_timers->stop.cancel();
    m_management.stop();
    m_stopped();
}

std::size_t VpnProcess::endSessions(const std::function<bool(const Grant &)> &ends) {
    const auto handler = m_loginHandler.lock();
    return handler ? handler->endSessions(ends) : 0;
}

ServerStatus VpnProcess::status() const {
    const auto handler = m_loginHandler.lock();
    return {m_name, m_running, m_running && handler && handler->ready(),
            handler ? handler->sessionCount() : 0,
            handler ? handler->refusedLogins() : std::map<std::string, std::uint64_t>()};
}

} // namespace quorvane::service
