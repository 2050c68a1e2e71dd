#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>

#include "VpnProcess.h"

#include "ServiceLog.h"
#include "core/ManagementParser.h"
#include "core/VpnConfiguration.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <random>
#include <unistd.h>

namespace quorvane::service {

namespace asio = boost::asio;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds FirstPause{200};
constexpr milliseconds LongestPause{5000};
constexpr milliseconds Settled{10000};
/// What a server gets to say goodbye to its clients.
constexpr std::chrono::seconds StopTime{3};

} // namespace

struct VpnProcess::Timers {
    explicit Timers(asio::io_context &context) : relaunch(context), stop(context) {}

    asio::steady_timer relaunch;
    asio::steady_timer stop;
};

/// One management connection.
class VpnProcess::Management : public LineServer::Client {
public:
    explicit Management(std::shared_ptr<LoginDesk> desk)
        : m_desk(std::move(desk)), m_parser([this](const ManagementEvent &event) { m_desk->handle(event); }) {
    }

    bool received(std::string_view bytes) override { return m_parser.feed(bytes); }

    void closed() override { m_desk->connectionLost(); }

private:
    std::shared_ptr<LoginDesk> m_desk;
    ManagementParser m_parser;
};

VpnProcess::VpnProcess(asio::io_context &context, const Config &config, const VpnServer &server,
                       CredentialStore &credentials, LendingTable &table)
    : m_context(context), m_config(config), m_server(server), m_name(protocolName(server.protocol)),
      m_credentials(credentials), m_table(table), m_addresses(server.network, std::random_device()()),
      m_management(context,
                   [this](LineServer::Send send) -> std::unique_ptr<LineServer::Client> {
                       auto desk = std::make_shared<LoginDesk>(
                           m_credentials, m_addresses, m_table, std::move(send),
                           [name = m_name](const std::string &line) { note(name + ": " + line); });
                       m_desk = desk;
                       return std::make_unique<Management>(std::move(desk));
                   }),
      m_backOff(FirstPause, LongestPause, Settled), m_timers(std::make_unique<Timers>(context)) {}

VpnProcess::~VpnProcess() = default;

std::string VpnProcess::path(const std::string &suffix) const {
    return m_config.runtimeFolder + '/' + m_name + suffix;
}

Result<> VpnProcess::start() {
    const std::string socket = m_config.runtimeFolder + "/management-" + m_name + ".sock";
    std::ofstream file(path(".conf"), std::ios::trunc);
    file << serverConfiguration(m_config.vpn, m_server, socket);
    file.close();
    if (!file) {
        return Failure{"runtime_folder: cannot write " + path(".conf")};
    }
    auto bound = m_management.start(socket);
    if (bound) {
        launch();
    }
    return bound;
}

void VpnProcess::launch() {
    const int log = open(path(".log").c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (log < 0) {
        note(m_name + ": cannot write " + path(".log") + ": " + std::strerror(errno));
        launchLater();
        return;
    }
    std::vector<std::string> command = m_config.gateway->command;
    command.insert(command.end(), {m_config.runtimeFolder + "/vpnsrv", "--config", path(".conf")});
    m_launched = std::chrono::steady_clock::now();
    auto process = ChildProcess::start(m_context, command, -1, log, [this](int status) { ended(status); });
    close(log);
    if (!process) {
        note(m_name + ": " + process.error());
        launchLater();
        return;
    }
    m_process = std::move(process).value();
    m_running = true;
}

void VpnProcess::ended(int status) {
    m_running = false;
    if (m_stopped) {
        finishStop();
        return;
    }
    note(m_name + ": the OpenVPN server ended with status " + std::to_string(status) + ", see " +
         path(".log"));
    launchLater();
}

void VpnProcess::launchLater() {
    const auto ran = std::chrono::steady_clock::now() - m_launched;
    m_timers->relaunch.expires_after(m_backOff.next(std::chrono::duration_cast<milliseconds>(ran)));
    m_timers->relaunch.async_wait([this](const boost::system::error_code &cancelled) {
        if (!cancelled && !m_stopped) {
            launch();
        }
    });
}

void VpnProcess::stop(std::function<void()> stopped) {
    m_stopped = std::move(stopped);
    m_timers->relaunch.cancel();
    if (!m_running) {
        asio::post(m_context, [this] { finishStop(); });
        return;
    }
    m_process->signal(SIGTERM);
    m_timers->stop.expires_after(StopTime);
    m_timers->stop.async_wait([this](const boost::system::error_code &cancelled) {
        if (!cancelled && m_running) {
            note(m_name + ": the OpenVPN server does not end, killing it");
            m_process->signal(SIGKILL);
        }
    });
}

void VpnProcess::finishStop() {
    m_timers->stop.cancel();
    m_management.stop();
    m_stopped();
}

ServerStatus VpnProcess::status() const {
    const auto desk = m_desk.lock();
    return {m_name, m_running, m_running && desk && desk->ready(), desk ? desk->sessions() : 0};
}

} // namespace quorvane::service
