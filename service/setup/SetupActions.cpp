#include "SetupActions.h"

#include "Certificates.h"
#include "ControlClient.h"
#include "LentAddresses.h"
#include "Processes.h"
#include "ServiceCheck.h"
#include "SetupArguments.h"
#include "core/Config.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <optional>
#include <pwd.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

constexpr int exitFailed = 1;
constexpr int exitArguments = 2;
constexpr std::array units = {"quorvane-service-gateway.service", "quorvane-service-api.service"};
constexpr const char *timerUnit = "quorvane-service-renew.timer";
constexpr const char *forwardingFile = "/proc/sys/net/ipv4/ip_forward";
constexpr const char *forwarding =
    "# Written by quorvane-service setup: the gateway forwards the traffic of VPN "
    "users.\nnet.ipv4.ip_forward = 1\n";

int failed(const std::string &message, int status = exitFailed) {
    std::fprintf(stderr, "quorvane-service: %s\n", message.c_str());
    return status;
}

/// True when the machine was started by systemd.
bool hasSystemd() {
    return FileStore::exists("/run/systemd/system");
}

Result<Owners> ownersOfFiles() {
    const auto ownerNamed = [](const char *name) {
        const passwd *user = getpwnam(name);
        return user == nullptr ? std::optional<Owner>() : Owner{user->pw_uid, user->pw_gid};
    };
    const auto api = ownerNamed(apiUser);
    const auto gateway = ownerNamed(gatewayUser);
    const group *members = getgrnam(serviceGroup);
    if (!api || !gateway || members == nullptr) {
        return Failure{std::string("there are no users ") + apiUser + " and " + gatewayUser +
                       " with the group " + serviceGroup + ": the package makes them"};
    }
    return Owners{{0, 0}, *api, *gateway, members->gr_gid};
}

/// Now; at the next starts the file of sysctl does it.
Result<> forwardNow() {
    std::string value;
    std::ifstream(forwardingFile) >> value;
    if (value == "1") {
        return {};
    }
    std::ofstream file(forwardingFile);
    file << "1\n" << std::flush;
    return file ? Result<>() : Failure{std::string("cannot write ") + forwardingFile};
}

/// What a run of the setup works with.
class Setup {
public:
    Setup(Machine &machine, Places places, const Owners &owners)
        : m_machine(machine), m_places(std::move(places)), m_files(owners) {}

    int run(const SetupArguments &arguments);

private:
    Result<> readPresent(const SetupArguments &arguments);
    Result<> decide(const SetupArguments &arguments);
    Result<> writeFiles();
    Result<> useAddresses();
    Result<> startUnits(bool restart);
    Result<bool> start();
    void printWritten() const;
    void printClientLines() const;

    [[nodiscard]] std::string configPath() const { return m_places.file("service.json"); }

    Machine &m_machine;
    Places m_places;
    FileStore m_files;
    SetupRecord m_record;
    std::optional<ServiceFile> m_former;
    std::optional<ServiceFile> m_service;
    std::optional<Config> m_config;
};

/// What an earlier run made.
Result<> Setup::readPresent(const SetupArguments &arguments) {
    const bool configured = FileStore::exists(configPath());
    std::optional<SetupRecord> earlier;
    if (FileStore::exists(m_places.file("setup.json"))) {
        const auto record = SetupRecord::load(m_places);
        if (!record) {
            return Failure{record.error()};
        }
        earlier = record.value();
    } else if (configured) {
        return Failure{configPath() +
                       " was not made by the setup, which does not change it: move it away first"};
    }
    auto record = readRecord(arguments, earlier);
    if (!record) {
        return Failure{record.error()};
    }
    m_record = std::move(record).value();
    if (configured) {
        const auto text = FileStore::text(configPath());
        auto parsed = text ? ServiceFile::parse(text.value()) : Failure{text.error()};
        if (!parsed) {
            return Failure{configPath() + ' ' + parsed.error()};
        }
        m_former = std::move(parsed).value();
    }
    return {};
}

/// Makes the new configuration, and checks all of it before anything is written.
Result<> Setup::decide(const SetupArguments &arguments) {
    const auto network = MachineNetwork::read(m_machine);
    if (!network) {
        return Failure{network.error()};
    }
    auto read = readSettings(arguments, network.value(), m_places);
    if (!read) {
        return Failure{read.error()};
    }
    ServiceSettings settings = std::move(read).value();
    if (m_former) {
        m_service = m_former;
        if (auto applied = m_service->apply(m_places, settings); !applied) {
            return Failure{configPath() + ' ' + applied.error()};
        }
    } else {
        if (settings.addresses.empty()) {
            return Failure{"--addresses is needed: the addresses to lend, such as 203.0.113.0/28"};
        }
        if (!settings.listenAddress) {
            settings.listenAddress = network.value().publicAddress();
        }
        if (!settings.listenAddress) {
            return Failure{"--listen is needed: there is no default route"};
        }
        settings.givenCertificate = !m_record.tlsCertificate.empty();
        std::vector<Ipv4Network> used;
        for (const OwnAddress &own : network.value().addresses) {
            used.push_back(own.network());
        }
        m_service = ServiceFile::make(m_places, settings, m_record.name, used);
    }
    auto config = parseConfig(m_service->text());
    if (!config) {
        return Failure{configPath() + ": " + config.error()};
    }
    for (const ListenAddress &listen : config.value().listen) {
        const auto address = Ipv4Address::parse(listen.address);
        if (address && config.value().groupOf(*address) != nullptr) {
            return Failure{listen.address +
                           " is an address of the HTTPS listener, which cannot be lent: what "
                           "clients send to it does not go through the tunnel"};
        }
    }
    m_config = std::move(config).value();
    return {};
}

/// The configuration comes last: an interrupted run is repeated as if it were the first one.
Result<> Setup::writeFiles() {
    Certificates certificates(m_places, m_files, std::chrono::system_clock::now());
    if (auto done = certificates.provideApi(m_record); !done) {
        return done;
    }
    if (auto done = certificates.provideVpn(); !done) {
        return done;
    }
    if (auto done = certificates.provideKeys(); !done) {
        return done;
    }
    // A machine with few packages lacks the folder, which systemd reads nevertheless.
    std::error_code ignored;
    std::filesystem::create_directory(std::filesystem::path(m_places.sysctl).parent_path(), ignored);
    if (auto done = m_files.put(m_places.sysctl, forwarding, Readers::All); !done) {
        return done;
    }
    if (auto done = m_record.save(m_places, m_files); !done) {
        return done;
    }
    if (m_former && m_former->isSame(*m_service)) {
        return m_files.adopt(configPath(), Readers::Members); // as the administrator has laid it out
    }
    return m_files.put(configPath(), m_service->text(), Readers::Members);
}

std::vector<Ipv4Address> allAddresses(const Config &config) {
    std::vector<Ipv4Address> addresses;
    for (const Group &group : config.groups) {
        addresses.insert(addresses.end(), group.addresses.begin(), group.addresses.end());
    }
    return addresses;
}

Result<> Setup::useAddresses() {
    auto done = forwardNow();
    return done ? routeLentAddresses(m_machine, allAddresses(*m_config), FormerRoutes::Keep) : done;
}

Result<> Setup::startUnits(bool restart) {
    std::vector<const char *> enabled(units.begin(), units.end());
    enabled.push_back(timerUnit);
    for (const char *unit : enabled) {
        if (const auto done = m_machine.run({"systemctl", "--quiet", "enable", unit}); !done) {
            return Failure{done.error()};
        }
    }
    if (const auto done = m_machine.run({"systemctl", "start", timerUnit}); !done) {
        return Failure{done.error()};
    }
    for (const char *unit : units) {
        if (const auto done = m_machine.run({"systemctl", restart ? "restart" : "start", unit}); !done) {
            return Failure{done.error()};
        }
    }
    return {};
}

/// Starts the service, or has it take what has changed. False when it must be started in another way.
Result<bool> Setup::start() {
    const auto folders = runtimeFolders(configPath());
    if (!folders) {
        return Failure{folders.error()};
    }
    const bool running = std::ranges::any_of(
        folders.value(), [](const auto &entry) { return ControlClient::connect(entry.second).ok(); });
    const bool reloads = m_former && m_former->differsForReloadOnly(*m_service);
    if (hasSystemd()) {
        if (auto done = startUnits(running && !reloads); !done) {
            return Failure{done.error()};
        }
    }
    if (running && reloads && !m_files.written().empty()) {
        auto done = reloadAll(folders.value());
        return done ? Result<bool>(true) : Failure{done.error()};
    }
    if (running && !reloads && !hasSystemd()) {
        std::printf("The running service takes the new configuration when it is started again.\n");
        return false;
    }
    return hasSystemd() || running;
}

void Setup::printWritten() const {
    for (const std::string &path : m_files.written()) {
        std::printf("written: %s\n", path.c_str());
    }
    if (m_files.written().empty()) {
        std::printf("No file had to be changed.\n");
    }
    std::fflush(stdout);
}

void Setup::printClientLines() const {
    const std::uint16_t port = m_config->listen.front().port;
    const std::string host = m_record.name + (port == 443 ? "" : ':' + std::to_string(port));
    std::printf("\nFor /etc/quorvane/service.conf of every client:\n\n"
                "api_host = %s\nweb_host = %s\nreachability_host = %s\n",
                host.c_str(), host.c_str(), m_record.name.c_str());
    if (m_record.tlsCertificate.empty()) {
        std::printf("ca_file = /etc/quorvane/ca.crt\n\nwith a copy of %s as /etc/quorvane/ca.crt.\n",
                    m_places.file("api-ca.crt").c_str());
    }
    std::fflush(stdout);
}

int Setup::run(const SetupArguments &arguments) {
    if (const auto present = readPresent(arguments); !present) {
        return failed(present.error(), exitArguments);
    }
    if (const auto decided = decide(arguments); !decided) {
        return failed(decided.error(), exitArguments);
    }
    if (const auto done = writeFiles(); !done) {
        return failed(done.error());
    }
    printWritten();
    if (const auto done = useAddresses(); !done) {
        return failed(done.error());
    }
    const auto started = start();
    if (!started) {
        return failed(started.error());
    }
    int status = 0;
    if (started.value()) {
        status = checkService(m_machine, m_places, configPath());
    } else {
        std::printf("systemd does not run here: start the service in another way, as the units\n"
                    "quorvane-service-gateway.service and quorvane-service-api.service say, and then check "
                    "it by: quorvane-service setup --check\n");
    }
    printClientLines();
    return status;
}

/// New certificates; the running service takes that of the listener.
int renew(const Places &places, const Owners &owners) {
    const auto record = SetupRecord::load(places);
    if (!record) {
        return failed(record.error());
    }
    FileStore files(owners);
    Certificates certificates(places, files, std::chrono::system_clock::now());
    int status = 0;
    for (const auto &done : {certificates.provideApi(record.value()), certificates.provideVpn()}) {
        if (!done) {
            status = failed(done.error());
        }
    }
    for (const std::string &path : files.written()) {
        std::printf("renewed: %s\n", path.c_str());
    }
    if (files.written().empty()) {
        return status;
    }
    const auto folders = runtimeFolders(places.file("service.json"));
    const auto reloaded = folders ? reloadAll(folders.value()) : Failure{folders.error()};
    return reloaded ? status : failed(reloaded.error());
}

int route(Machine &machine, const std::string &path) {
    const auto text = FileStore::text(path);
    const auto config = text ? parseConfig(text.value()) : Failure{text.error()};
    if (!config) {
        return failed(path + ": " + config.error());
    }
    const auto done = routeLentAddresses(machine, allAddresses(config.value()), FormerRoutes::Remove);
    return done ? 0 : failed(done.error());
}

} // namespace

int runSetupAction(const CommandLine &line) {
    LocalMachine machine;
    const Places places;
    if (line.action == Action::Routes) {
        return route(machine, line.config);
    }
    if (geteuid() != 0) {
        return failed("only root can do that", exitArguments);
    }
    if (line.action == Action::CheckService) {
        return checkService(machine, places, line.config);
    }
    const auto owners = ownersOfFiles();
    if (!owners) {
        return failed(owners.error());
    }
    return line.action == Action::Renew ? renew(places, owners.value())
                                        : Setup(machine, places, owners.value()).run(line.setup);
}

} // namespace quorvane::service
