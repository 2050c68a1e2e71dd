#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>

#include "Service.h"

#include "ControlConnection.h"
#include "FolderLock.h"
#include "HttpsServer.h"
#include "LineServer.h"
#include "MetricsServer.h"
#include "ServiceLog.h"
#include "SharedNode.h"
#include "VpnGateway.h"
#include "core/AnnouncedRequests.h"
#include "core/Api.h"
#include "core/CertificateExpiry.h"
#include "core/ClientAuthority.h"
#include "core/ControlCommands.h"
#include "core/ControlKey.h"
#include "core/Metrics.h"
#include "core/OperatorState.h"
#include "core/PrivateFile.h"
#include "core/PrivateFolder.h"
#include "core/RequestLog.h"
#include "core/UsedGrants.h"
#include "core/UserTokens.h"
#include "sandbox/Sandbox.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace quorvane::service {

namespace {

namespace asio = boost::asio;

std::string readFile(const std::string &path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string folderOf(const std::string &path) {
    const std::string folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? std::string(".") : folder;
}

/// The folders whose files the service trusts.
Result<> prepareFolders(const Config &config) {
    if (auto made = makePrivateFolder(config.runtimeFolder); !made) {
        return Failure{"runtime_folder: " + made.error()};
    }
    auto checked = checkPrivateFolder(folderOf(config.stateFilePath()));
    return checked ? Result<>() : Failure{"state_file: " + checked.error()};
}

/// Owns and connects all parts of the service. Members are destroyed from the last to the first.
class Service {
public:
    explicit Service(Config &config)
        : m_config(config), m_users(m_tokens, config.credentialLifetime, config.grantLifetime,
                                    &std::chrono::system_clock::now, &m_operatorState),
          m_grants(m_users,
                   {[this](Ipv4Address address) { return lends(address); },
                    [this] {
                        return m_operatorState.draining();
                    }},
                   &std::chrono::system_clock::now),
          m_api(config, readFile(config.vpn.ca), m_users),
          m_log(config.log, config.strict ? &m_announced : nullptr, &std::chrono::system_clock::now),
          m_https(
              m_context, config, [this](const HttpRequest &request) { return m_api.answer(request); }, m_log),
          m_commands(
              m_announced, [this] { return status(); }, operatorOrders()),
          m_control(m_context,
                    [this](LineServer::Send send) {
                        return std::make_unique<ControlConnection>(m_commands, std::move(send));
                    }),
          m_metrics(m_context, [this] { return metricsPage(metrics()); }),
          m_signals(m_context, SIGTERM, SIGINT), m_reopenSignal(m_context, SIGHUP) {
        m_api.setDraining([this] { return m_operatorState.draining(); });
        if (config.etcd) {
            shareFacts();
        }
        if (config.lendsAddresses()) {
            m_gateway = std::make_unique<VpnGateway>(m_context, config, m_grants);
        }
    }

    Result<> start() {
        if (auto prepared = prepareFolders(m_config); !prepared) {
            return prepared;
        }
        if (auto locked = m_lock.acquire(m_config.runtimeFolder + "/lock"); !locked) {
            return locked;
        }
        if (auto loaded = loadKeys(); !loaded) {
            return loaded;
        }
        if (auto loaded = m_operatorState.load(m_config.stateFilePath()); !loaded) {
            return Failure{"state_file: " + loaded.error()};
        }
        if (m_gateway) {
            if (auto restored = m_grants.restore(m_config.runtimeFolder + "/used-grants"); !restored) {
                return Failure{"runtime_folder: " + restored.error()};
            }
        }
        if (auto begun = m_shared ? m_shared->start() : Result<>(); !begun) {
            return begun;
        }
        removeAddresses(); // a killed service may have left the file
        if (m_config.answersRequests()) {
            if (auto listening = listen(); !listening) {
                return listening;
            }
        }
        if (auto bound = m_control.start(m_config.runtimeFolder + "/control.sock"); !bound) {
            return bound;
        }
        if (m_config.metrics) {
            if (auto bound = m_metrics.start(*m_config.metrics); !bound) {
                return bound;
            }
        }
        m_signals.async_wait([this](boost::system::error_code error, int) {
            if (!error) {
                stop();
            }
        });
        awaitReopenSignal();
        readExpiries();
        if (auto confined = confine(); !confined) {
            return confined;
        }
        auto written = m_config.answersRequests() ? writeAddresses() : Result<>();
        if (written && m_gateway) {
            m_gateway->start([this](const std::string &reason) {
                writeLog(reason);
                m_failed = true;
                stop();
            });
        }
        return written;
    }

    void run() { m_context.run(); }

    /// Also reports the unexpected requests on standard error.
    [[nodiscard]] int exitStatus() const {
        for (const std::string &target : m_announced.unexpected()) {
            std::fprintf(stderr, "quorvane-service: unexpected request: %s\n", jsonText(target).c_str());
        }
        if (m_failed) {
            return exitFailed;
        }
        return m_announced.unexpected().empty() ? exitClean : exitUnexpectedRequests;
    }

private:
    Result<> listen() {
        if (auto opened = m_log.open(m_config.requestLog); !opened) {
            return opened;
        }
        for (const Announcement &announcement : m_config.announced) {
            if (auto announced = m_announced.announce(announcement); !announced) {
                return announced;
            }
        }
        return m_https.start();
    }

    /// A configured key must exist; one in the runtime folder is made at the first start.
    template <typename Keys>
    static Result<Keys> keysOf(const char *setting, const std::string &configured, const std::string &path) {
        auto keys = configured.empty() ? Keys::loadOrMake(path) : Keys::load(path);
        return keys ? std::move(keys) : Failure{std::string(setting) + ": " + keys.error()};
    }

    Result<> loadKeys() {
        auto tokens = keysOf<UserTokens>("keys", m_config.userKeys, m_config.userKeysPath());
        if (!tokens) {
            return Failure{tokens.error()};
        }
        auto controlKey =
            keysOf<ControlKey>("vpn.control_key", m_config.vpn.controlKey, m_config.controlKeyPath());
        if (!controlKey) {
            return Failure{controlKey.error()};
        }
        auto authority = keysOf<ClientAuthority>("vpn.client_authority", m_config.vpn.clientAuthority,
                                                 m_config.clientAuthorityPath());
        if (!authority) {
            return Failure{authority.error()};
        }
        if (m_config.answersRequests() && !authority.value().canSign()) {
            return Failure{"vpn.client_authority: " + m_config.clientAuthorityPath() + " contains no key"};
        }
        m_tokens = std::move(tokens).value();
        m_controlKey = std::move(controlKey).value();
        m_authority = std::move(authority).value();
        m_api.useKeys(*m_controlKey, *m_authority);
        return writePrivateFile(m_config.clientCertificatesPath(), m_authority->certificates());
    }

    void shareFacts() {
        m_operatorState.share();
        m_shared = std::make_unique<SharedNode>(
            m_context, m_config, m_operatorState,
            SharedNode::Local{[this](Ipv4Address address) { return hasSession(address); },
                              [this] { return m_gateway && allReady(m_gateway->status()); },
                              [this] {
                                  endForbiddenSessions();
                              }});
        m_api.setOffered([this](Ipv4Address address) { return m_shared->offers(address); });
    }

    [[nodiscard]] bool lends(Ipv4Address address) const {
        return m_config.groupOf(address) != nullptr && (!m_shared || m_shared->lends(address));
    }

    [[nodiscard]] bool hasSession(Ipv4Address address) {
        bool found = false;
        if (m_gateway) {
            m_gateway->endSessions([&found, address](const Grant &grant) {
                found = found || grant.address == address;
                return false;
            });
        }
        return found;
    }

    OperatorOrders operatorOrders() {
        return {[this] { asio::post(m_context, [this] { reloadOrEnd(); }); },
                [this](bool on) { return drain(on); },
                [this](const std::string &user) { return revokeUser(user); },
                [this](Ipv4Address address) { return revokeAddress(address); },
                [this](const std::string &gateway, const OperatorOrders::Released &released) {
                    if (m_shared) {
                        m_shared->release(gateway, released);
                    } else {
                        released(Failure{"there are no other nodes: the configuration has no \"etcd\""});
                    }
                },
                [this] {
                    return m_shared && !m_shared->connected();
                }};
    }

    /// At a gateway among others that gateway's drain, else that of the whole service.
    Result<> drain(bool on) {
        auto drained = m_shared && !m_config.lendsAddresses() ? m_operatorState.setAllDraining(on)
                                                              : m_operatorState.setDraining(on);
        if (m_shared) {
            m_shared->update();
        }
        return drained;
    }

    /// Ends the sessions that an order or another gateway's claim forbids. Returns their number.
    std::size_t endForbiddenSessions() {
        if (!m_gateway) {
            return 0;
        }
        return m_gateway->endSessions([this](const Grant &grant) {
            return m_operatorState.revokesUser(grant.user) || m_operatorState.revokesGrant(grant) ||
                   (m_shared && m_shared->isLost(grant.address));
        });
    }

    /// After an order was given, which counts although it may not be written.
    Result<std::size_t> carryOut(const Result<> &ordered) {
        if (m_shared) {
            m_shared->update();
        }
        const std::size_t ended = endForbiddenSessions();
        return ordered ? Result<std::size_t>(ended) : Failure{ordered.error()};
    }

    Result<std::size_t> revokeUser(const std::string &user) {
        const auto found = m_tokens.open(user);
        if (!found) {
            return Failure{"there is no such user"};
        }
        return carryOut(m_operatorState.revokeUser(user, found->end));
    }

    Result<std::size_t> revokeAddress(Ipv4Address address) {
        if (m_config.groupOf(address) == nullptr && !(m_shared && m_shared->isOwned(address))) {
            return Failure{"the address is not lent here"};
        }
        const auto end = std::chrono::system_clock::now() + m_config.credentialLifetime;
        return carryOut(m_operatorState.revokeAddress(address, end));
    }

    /// A process that only answers requests has opened all that it needs; it accepts nothing before this.
    Result<> confine() {
        if (m_config.role != Role::Api) {
            return {};
        }
        auto confined = confineProcess(
            {{m_config.runtimeFolder, folderOf(m_config.requestLog), folderOf(m_config.stateFilePath())},
             m_shared != nullptr});
        m_isConfined = confined.ok();
        return confined;
    }

    void readExpiries() {
        m_expiries.clear();
        const std::vector<std::pair<std::string, std::string>> files = {
            {"tls.certificate", m_config.tlsCertificate},
            {"vpn.ca", m_config.vpn.ca},
            {"vpn.certificate", m_config.vpn.certificate}};
        for (const auto &[key, path] : files) {
            if (const auto expiry = certificateExpiry(path)) {
                m_expiries.emplace_back(key, *expiry);
            }
        }
    }

    /// One line "address port" per listener. The file is made only when all of them are bound.
    Result<> writeAddresses() {
        const std::string path = m_config.runtimeFolder + "/listening";
        std::ofstream file(path + ".new", std::ios::trunc);
        for (const std::string &address : m_https.bound()) {
            file << address << '\n';
        }
        file.close();
        std::error_code error;
        std::filesystem::rename(path + ".new", path, error);
        if (!file || error) {
            return Failure{"runtime_folder: cannot write " + path};
        }
        return {};
    }

    /// A confined process can read no file: it ends, and its supervisor starts it again.
    void reloadOrEnd() {
        if (m_isConfined) {
            writeLog("ends, to be started with the files as they are now");
            stop();
        } else {
            reload();
        }
    }

    /// Takes the lent addresses and the listener's certificate as they are in their files now. What cannot be
    /// used leaves the former ones in use. All other settings count from the next start on; a confined
    /// process cannot read files, so there everything does.
    void reload() {
        if (m_isConfined) {
            return;
        }
        auto read = loadConfig(m_config.file, m_config.role);
        if (read) {
            Config changed = std::move(read).value();
            m_config.groups = std::move(changed.groups);
            m_config.homes = std::move(changed.homes);
            m_config.tlsCertificate = std::move(changed.tlsCertificate);
            m_config.tlsKey = std::move(changed.tlsKey);
        } else {
            writeLog("the former configuration stays in use: " + read.error());
        }
        readExpiries();
        if (m_shared) {
            m_shared->update();
        }
        if (!m_config.answersRequests()) {
            return;
        }
        if (const auto loaded = m_https.reloadCertificate(); !loaded) {
            writeLog("the former certificate stays in use: " + loaded.error());
        }
    }

    /// After SIGHUP the logs are opened again, too: another program may have renamed them.
    void awaitReopenSignal() {
        m_reopenSignal.async_wait([this](boost::system::error_code error, int) {
            if (!error) {
                if (m_config.answersRequests()) {
                    m_log.reopen();
                }
                if (m_gateway) {
                    m_gateway->reopenLogs();
                }
                reload();
                awaitReopenSignal();
            }
        });
    }

    void removeAddresses() {
        std::error_code ignored;
        std::filesystem::remove(m_config.runtimeFolder + "/listening", ignored);
    }

    void stop() {
        if (std::exchange(m_stopping, true)) {
            return;
        }
        m_signals.cancel();
        m_reopenSignal.cancel();
        removeAddresses();
        if (m_shared) {
            m_shared->stop();
        }
        m_https.stop();
        m_control.stop();
        m_metrics.stop();
        if (m_gateway) {
            m_gateway->stop([] {});
        }
    }

    [[nodiscard]] Metrics metrics() const {
        Metrics values;
        values.uptime =
            std::chrono::floor<std::chrono::seconds>(std::chrono::steady_clock::now() - m_started);
        if (m_gateway) {
            values.servers = m_gateway->status();
        }
        values.facts = facts();
        if (m_shared) {
            values.etcdConnected = m_shared->connected();
        }
        return values;
    }

    [[nodiscard]] Facts facts() const {
        Facts values;
        if (m_gateway) {
            values.lends = m_gateway->lends().all;
            values.failedLends = m_gateway->lends().failed;
            values.currentLends = m_gateway->lends().current;
        }
        for (std::size_t index = 0; index < limitCount; ++index) {
            const auto limit = static_cast<Limit>(index);
            values.refused.emplace_back(limitName(limit), m_https.limits().refused(limit));
        }
        values.certificates = m_expiries;
        return values;
    }

    [[nodiscard]] ServiceStatus status() {
        return {m_gateway ? m_gateway->status() : std::vector<ServerStatus>(),
                m_grants.size(),
                m_operatorState.draining(),
                m_operatorState.revocations(),
                facts(),
                m_isConfined,
                m_shared ? std::optional(m_shared->status()) : std::nullopt};
    }

    Config &m_config;
    FolderLock m_lock;
    asio::io_context m_context{1};
    UserTokens m_tokens; ///< without keys until they are loaded by start()
    OperatorState m_operatorState{&std::chrono::system_clock::now};
    VpnUsers m_users;
    UsedGrants m_grants;
    std::optional<ControlKey> m_controlKey;
    std::optional<ClientAuthority> m_authority;
    Api m_api;
    AnnouncedRequests m_announced;
    RequestLog m_log;
    HttpsServer m_https;
    std::unique_ptr<SharedNode> m_shared;  ///< null when there are no other nodes
    std::unique_ptr<VpnGateway> m_gateway; ///< null when none is configured
    ControlCommands m_commands;
    LineServer m_control;
    MetricsServer m_metrics;
    std::chrono::steady_clock::time_point m_started = std::chrono::steady_clock::now();
    asio::signal_set m_signals;
    asio::signal_set m_reopenSignal;
    std::vector<std::pair<std::string, std::int64_t>> m_expiries; ///< of certificates, by key
    bool m_isConfined = false;
    bool m_stopping = false;
    bool m_failed = false;
};

} // namespace

int runService(Config config) {
    Service service(config);
    if (const auto started = service.start(); !started) {
        std::fprintf(stderr, "quorvane-service: %s\n", started.error().c_str());
        return exitFailed;
    }
    service.run();
    return service.exitStatus();
}

} // namespace quorvane::service
