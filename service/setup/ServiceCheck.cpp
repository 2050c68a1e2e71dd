#include "ServiceCheck.h"

#include "Certificates.h"
#include "CheckNetwork.h"
#include "ClientSession.h"
#include "Processes.h"
#include "core/Config.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <functional>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace quorvane::service {

namespace {

using std::chrono::steady_clock;

/// After its start or a signal the service needs a moment until it is ready with what is configured.
constexpr std::chrono::seconds readyTime{20};
constexpr std::chrono::milliseconds pause{50};
constexpr const char *client = "ver=1.0&device=1";
constexpr const char *clientEnd = "systamp=Linux,setup,check&uniqueid=CHECK";

/// What the client of the check needs to know.
struct Plan {
    ServicePoint point;
    Config config;
};

/// Runs one step and prints its name, its time and its result. Of a step that failed also what to look at.
template <typename Value>
Result<Value> step(const std::string &name, const std::string &hint,
                   const std::function<Result<Value>()> &run) {
    std::printf("  %-36s ", name.c_str());
    std::fflush(stdout);
    const auto begun = steady_clock::now();
    auto done = run();
    const std::chrono::duration<double> took = steady_clock::now() - begun;
    if (!done) {
        std::printf("FAILED after %.2f s\n    %s\n    Look at: %s\n", took.count(), done.error().c_str(),
                    hint.c_str());
    } else {
        std::printf("%6.2f s", took.count());
        if constexpr (std::is_same_v<Value, Ipv4Address>) {
            std::printf("  %s", done.value().text().c_str());
        }
        std::printf("\n");
    }
    std::fflush(stdout);
    return done;
}

template <typename Value>
Result<Value> retried(const std::function<Result<Value>()> &attempt) {
    const auto end = steady_clock::now() + readyTime;
    for (;;) {
        auto result = attempt();
        if (result || steady_clock::now() > end) {
            return result;
        }
        std::this_thread::sleep_for(pause);
    }
}

Result<bool> serviceReady(const std::map<std::string, std::string> &folders) {
    const auto ready = allReadyIn(folders);
    return ready ? Result<bool>(true) : Failure{ready.error()};
}

Result<ServerList> requestList(const HttpsClient &https, Ipv4Address lent) {
    return retried<ServerList>([&]() -> Result<ServerList> {
        const auto answer = https.get(std::string("/?cmd=MRTSL&") + client + '&' + clientEnd);
        if (!answer) {
            return Failure{answer.error()};
        }
        const auto list = readServerList(answer.value());
        if (!list) {
            return Failure{"the answer is no server list: " + answer.value().substr(0, 200)};
        }
        if (!list->lends(lent)) {
            return Failure{"the server list does not have " + lent.text() +
                           ": the service has not taken the configuration"};
        }
        return *list;
    });
}

Result<bool> writePrivate(const std::string &name, const std::string &text) {
    FileStore files(Owners{{geteuid(), getegid()}, {}, {}, getegid()});
    const auto written = files.put(CheckNetwork::folder() + '/' + name, text, Readers::Root);
    return written ? Result<bool>(true) : Failure{written.error()};
}

Result<bool> requestConfiguration(const HttpsClient &https, const ServerList &list, Ipv4Address lent,
                                  const std::string &protocol) {
    const auto answer = https.get(std::string("/?cmd=VPNC&") + client + "&server=1&desiredip=" + lent.text() +
                                  "&sessid=" + list.user + "&&" + clientEnd + "&proto=" + protocol);
    if (!answer) {
        return Failure{answer.error()};
    }
    const auto configuration = readConfiguration(answer.value());
    if (!configuration) {
        return Failure{configuration.error()};
    }
    auto written = writePrivate("credentials", list.user + '\n' + list.password + '\n');
    return written ? writePrivate("client.conf", configuration.value()) : written;
}

Result<Ipv4Address> seenAddress(const HttpsClient &https, Ipv4Address lent) {
    const auto answer = https.get("/ip");
    if (!answer) {
        return Failure{answer.error()};
    }
    const std::string text = answer.value().substr(0, answer.value().find('\n'));
    if (text != lent.text()) {
        return Failure{"the service sees " + text + " instead of " + lent.text()};
    }
    return lent;
}

/// One session, with the credentials of a list of its own.
bool checkSession(const Plan &plan, const VpnServer &server, Ipv4Address lent) {
    const HttpsClient https(plan.point);
    const std::string protocol = server.protocol == Protocol::Udp ? "UDP" : "TCP";
    const std::string logs = plan.config.runtimeFolder + '/' + protocolName(server.protocol) + ".log";
    const auto list =
        step<ServerList>("server list over HTTPS",
                         "the firewall for TCP port " + std::to_string(plan.point.port) + ", " +
                             plan.config.requestLog + ", and certificate and name: quorvane-service status",
                         [&] { return requestList(https, lent); });
    if (!list) {
        return false;
    }
    const auto granted = step<bool>("configuration for " + protocol, plan.config.requestLog, [&] {
        return requestConfiguration(https, list.value(), lent, protocol);
    });
    if (!granted) {
        return false;
    }
    VpnClient vpn;
    const auto tunnel = step<bool>(
        "tunnel by OpenVPN, " + protocol + " port " + std::to_string(server.port),
        "the firewall for that port, the routes of the lent addresses (ip route show table local), " + logs,
        [&]() -> Result<bool> {
            const auto up = vpn.start(plan.config.gateway->openvpn, CheckNetwork::folder() + "/client.conf",
                                      CheckNetwork::folder() + "/credentials");
            return up ? Result<bool>(true) : Failure{up.error()};
        });
    return tunnel && step<Ipv4Address>("address seen through the tunnel",
                                       "nft list table ip quorvane, sysctl net.ipv4.ip_forward, " + logs,
                                       [&] { return seenAddress(https, lent); });
}

int runClient(const Plan &plan) {
    if (const auto entered = CheckNetwork::enter(); !entered) {
        std::printf("  %s\n", entered.error().c_str());
        return 1;
    }
    const std::vector<Ipv4Address> &addresses = plan.config.groups.front().addresses;
    for (const auto &server : {plan.config.vpn.udp, plan.config.vpn.tcp}) {
        // The second session has another address where there is one.
        const Ipv4Address lent =
            server && server->protocol == Protocol::Tcp ? addresses.back() : addresses.front();
        if (server && !checkSession(plan, *server, lent)) {
            return 1;
        }
    }
    return 0;
}

std::atomic<pid_t> clientProcess{0};

/// Signals that end a program end the client, after which its namespace is removed.
void endClient(int number) {
    if (const pid_t process = clientProcess; process > 0) {
        kill(process, number);
    }
}

int runClientProcess(const Plan &plan) {
    const pid_t process = fork();
    if (process == 0) {
        for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
            std::signal(number, SIG_DFL);
        }
        const int status = runClient(plan);
        std::fflush(nullptr);
        _exit(status);
    }
    clientProcess = process;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        std::signal(number, endClient);
    }
    int status = -1;
    while (process > 0 && waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    clientProcess = 0;
    return process > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

Result<Plan> makePlan(Machine &machine, const Places &places, const std::string &configFile) {
    const auto record = SetupRecord::load(places);
    if (!record) {
        return Failure{"the service was not made by quorvane-service setup: " + record.error()};
    }
    auto config = loadConfig(configFile);
    if (!config) {
        return Failure{config.error()};
    }
    const auto &listen = config.value().listen;
    const auto found = std::find_if(listen.begin(), listen.end(), [](const ListenAddress &entry) {
        return Ipv4Address::parse(entry.address).has_value();
    });
    if (found == listen.end() || !config.value().gateway) {
        return Failure{configFile + ": the check needs an IPv4 address in \"listen\", and a gateway"};
    }
    std::string address = found->address;
    if (address == "0.0.0.0") {
        const auto network = MachineNetwork::read(machine);
        const auto own = network ? network.value().publicAddress() : std::nullopt;
        address = own ? own->text() : "127.0.0.1";
    }
    const std::string authority =
        record.value().tlsCertificate.empty() ? places.file("api-ca.crt") : config.value().tlsCertificate;
    Plan plan{{record.value().name, found->port, address, authority}, std::move(config).value()};
    return plan;
}

} // namespace

int checkService(Machine &machine, const Places &places, const std::string &configFile) {
    const auto plan = makePlan(machine, places, configFile);
    if (!plan) {
        std::fprintf(stderr, "quorvane-service: %s\n", plan.error().c_str());
        return 1;
    }
    const Config &config = plan.value().config;
    const auto folders = runtimeFolders(configFile);
    if (!folders) {
        std::fprintf(stderr, "quorvane-service: %s\n", folders.error().c_str());
        return 1;
    }
    const auto begun = steady_clock::now();
    std::printf("Checking by sessions of a client in a network namespace:\n");
    const auto ready =
        step<bool>("service is ready", "journalctl -u 'quorvane-service-*', " + config.requestLog,
                   [&] { return retried<bool>([&] { return serviceReady(folders.value()); }); });
    if (!ready) {
        return 1;
    }
    std::vector<Ipv4Network> used;
    for (const auto &server : {config.vpn.udp, config.vpn.tcp}) {
        if (server) {
            used.push_back(server->network);
        }
    }
    CheckNetwork network(machine);
    const auto made =
        step<bool>("namespace for the client", "ip netns, the kernel's module veth", [&]() -> Result<bool> {
            const auto done = network.make(used);
            return done ? Result<bool>(true) : Failure{done.error()};
        });
    const int status = made ? runClientProcess(plan.value()) : 1;
    const std::chrono::duration<double> took = steady_clock::now() - begun;
    std::printf(status == 0 ? "The service lends addresses. (%.2f s)\n" : "The check FAILED. (%.2f s)\n",
                took.count());
    return status;
}

} // namespace quorvane::service
