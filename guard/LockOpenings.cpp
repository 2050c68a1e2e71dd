#include "LockOpenings.h"

#include "Routing.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstring>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane::guard {

namespace {

constexpr const char *table = "inet quorvane_lock";
constexpr const char *defaultPort = "1194";

/// What the directives say about the ways, apart from the servers.
struct Ways {
    std::set<std::string> protocols;
    std::set<std::string> ports;
};

std::string familyOf(const std::string &protocol) {
    return protocol.substr(0, 3); // "udp4", "tcp-client", ...
}

/// Adds what is in the directives and in their blocks: for an opening it does not matter which server a port
/// belongs to.
void collectWays(const std::vector<Directive> &directives, Ways &ways) {
    for (const Directive &directive : directives) {
        const auto &tokens = directive.tokens;
        if (directive.name() == "connection") {
            if (const auto within = parseBlock(directive)) {
                collectWays(within.value(), ways);
            }
        } else if (directive.name() == "proto" && tokens.size() > 1) {
            ways.protocols.insert(familyOf(tokens[1]));
        } else if ((directive.name() == "port" || directive.name() == "rport") && tokens.size() > 1) {
            ways.ports.insert(tokens[1]);
        }
    }
}

void collectEndpoints(const std::vector<Directive> &directives, const Ways &ways, std::set<Endpoint> &found) {
    for (const Directive &directive : directives) {
        const auto &tokens = directive.tokens;
        if (directive.name() == "connection") {
            if (const auto within = parseBlock(directive)) {
                collectEndpoints(within.value(), ways, found);
            }
        }
        const auto host =
            directive.name() == "remote" && tokens.size() > 1 ? hostOf(tokens[1]) : std::nullopt;
        if (!host || host->family != AF_INET) {
            continue;
        }
        const auto ports = tokens.size() > 2 ? std::set{tokens[2]} : ways.ports;
        const auto protocols = tokens.size() > 3 ? std::set{familyOf(tokens[3])} : ways.protocols;
        for (const std::string &port : ports) {
            for (const std::string &protocol : protocols) {
                found.insert({tokens[1], protocol, static_cast<unsigned>(std::stoul(port))});
            }
        }
    }
}

std::string flushed(const std::string &set) {
    return "flush set " + std::string(table) + " " + set + "; ";
}

std::string added(const std::string &set, const std::string &elements) {
    return "add element " + std::string(table) + " " + set + " { " + elements + " }; ";
}

} // namespace

std::set<Endpoint> endpointsOf(const std::vector<Directive> &directives) {
    Ways ways;
    collectWays(directives, ways);
    if (ways.ports.empty()) {
        ways.ports.insert(defaultPort);
    }
    if (ways.protocols.empty()) {
        ways.protocols.insert("udp");
    }
    std::set<Endpoint> found;
    collectEndpoints(directives, ways, found);
    return found;
}

Result<> LockOpenings::openForServers(const std::set<Endpoint> &servers) const {
    std::string elements;
    for (const Endpoint &server : servers) {
        elements += (elements.empty() ? "" : ", ") + server.address + " . " + server.protocol + " . " +
                    std::to_string(server.port);
    }
    return run(flushed("tunnels") + flushed("servers") +
               (elements.empty() ? "" : added("servers", elements)));
}

Result<> LockOpenings::openForDevice(unsigned device) const {
    return run(flushed("tunnels") + added("tunnels", std::to_string(device)));
}

void LockOpenings::close() const {
    static_cast<void>(run(flushed("tunnels") + flushed("servers")));
}

Result<> LockOpenings::run(const std::string &commands) const {
    if (access(m_note.c_str(), F_OK) != 0) {
        return {};
    }
    std::string program = m_nft;
    std::string argument = commands;
    std::string path = "PATH=/usr/sbin:/usr/bin:/sbin:/bin";
    const std::array<char *, 3> arguments{program.data(), argument.data(), nullptr};
    const std::array<char *, 2> environment{path.data(), nullptr};
    pid_t process = -1;
    int status = posix_spawn(&process, m_nft.c_str(), nullptr, nullptr, arguments.data(), environment.data());
    if (status != 0) {
        return Failure{"the network lock cannot be opened: " + std::string(std::strerror(status))};
    }
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        return Failure{"the network lock cannot be opened"};
    }
    return {};
}

} // namespace quorvane::guard
