#include "CheckNetwork.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sched.h>
#include <sstream>
#include <sys/file.h>
#include <sys/stat.h>

namespace quorvane::service {

namespace {

constexpr const char *lockFile = "/run/quorvane-check.lock";
constexpr const char *name = "quorvane-check";
constexpr const char *outerDevice = "qrv-check0";
constexpr const char *innerDevice = "qrv-check1";
/// Networks of four addresses are looked for in these.
constexpr const char *candidates[] = {"10.250.250.0/24", "172.30.250.0/24", "192.168.250.0/24"};

/// The destinations of all routes but the default one.
Result<std::vector<Ipv4Network>> routedNetworks(Machine &machine) {
    const auto shown = machine.run({"ip", "-json", "-4", "route", "show", "table", "all"});
    if (!shown) {
        return Failure{shown.error()};
    }
    std::vector<Ipv4Network> networks;
    const auto routes = nlohmann::json::parse(shown.value(), nullptr, false);
    for (const auto &route : routes.is_array() ? routes : nlohmann::json::array()) {
        const std::string destination = route.value("dst", "");
        const auto address = Ipv4Address::parse(destination);
        const auto network = address ? Ipv4Network{*address, 32} : Ipv4Network::parse(destination);
        if (network && network->prefix > 0) {
            networks.push_back(*network);
        }
    }
    return networks;
}

} // namespace

std::optional<Ipv4Network> freeLinkNetwork(const std::vector<Ipv4Network> &used) {
    for (const char *candidate : candidates) {
        const Ipv4Network whole = *Ipv4Network::parse(candidate);
        for (std::uint32_t offset = 0; offset < whole.size(); offset += 4) {
            const Ipv4Network network{{whole.base.value + offset}, 30};
            if (std::none_of(used.begin(), used.end(),
                             [&](const Ipv4Network &other) { return other.overlaps(network); })) {
                return network;
            }
        }
    }
    return std::nullopt;
}

CheckNetwork::~CheckNetwork() {
    if (m_lock.isOpen()) {
        remove();
    }
}

std::string CheckNetwork::folder() {
    return "/run/quorvane-check";
}

Result<> CheckNetwork::make(const std::vector<Ipv4Network> &used) {
    FileDescriptor lock(open(lockFile, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!lock.isOpen() || flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        return Failure{errno == EWOULDBLOCK ? std::string("another check is running")
                                            : std::string(lockFile) + ": " + std::strerror(errno)};
    }
    m_lock = std::move(lock);
    remove();
    auto routed = routedNetworks(m_machine);
    if (!routed) {
        return Failure{routed.error()};
    }
    std::vector<Ipv4Network> all = std::move(routed).value();
    all.insert(all.end(), used.begin(), used.end());
    const auto network = freeLinkNetwork(all);
    if (!network) {
        return Failure{"no private network is free for the check"};
    }
    if (mkdir(folder().c_str(), 0700) != 0) {
        return Failure{"cannot make " + folder() + ": " + std::strerror(errno)};
    }
    const std::string outer = Ipv4Address{network->base.value + 1}.text();
    const std::string inner = Ipv4Address{network->base.value + 2}.text();
    const std::string outside = std::string("link add ") + outerDevice + " type veth peer name " +
                                innerDevice + " netns " + name + "\naddress add " + outer + "/30 dev " +
                                outerDevice + "\nlink set " + outerDevice + " up\n";
    const std::string inside = "address add " + inner + "/30 dev " + innerDevice +
                               "\nlink set lo up\nlink set " + innerDevice + " up\nroute add default via " +
                               outer + '\n';
    for (const auto &[command, input] :
         {std::pair<std::vector<std::string>, std::string>{{"ip", "netns", "add", name}, ""},
          {{"ip", "-batch", "-"}, outside},
          {{"ip", "-netns", name, "-batch", "-"}, inside}}) {
        if (const auto done = m_machine.run(command, input); !done) {
            return Failure{done.error()};
        }
    }
    return {};
}

Result<> CheckNetwork::enter() {
    const FileDescriptor space(open((std::string("/run/netns/") + name).c_str(), O_RDONLY | O_CLOEXEC));
    if (!space.isOpen() || setns(space.get(), CLONE_NEWNET) != 0) {
        return Failure{std::string("cannot enter the namespace: ") + std::strerror(errno)};
    }
    return {};
}

/// What is not there is no failure.
void CheckNetwork::remove() {
    if (const auto inside = m_machine.run({"ip", "netns", "pids", name})) {
        std::istringstream processes(inside.value());
        for (pid_t process = 0; processes >> process;) {
            kill(process, SIGKILL);
        }
    }
    (void)m_machine.run({"ip", "link", "delete", outerDevice});
    (void)m_machine.run({"ip", "netns", "delete", name});
    std::error_code ignored;
    std::filesystem::remove_all(folder(), ignored);
}

} // namespace quorvane::service
