#include "PortRules.h"

namespace quorvane::service {

namespace {

/// Sources that are remembered, about 10 MB of the kernel's memory for each server.
constexpr unsigned maximumSources = 65536;
constexpr unsigned sourceSeconds = 30;

/// The first byte of OpenVPN's packets is the kind, 3 to 6 and 9 to 11, in the upper five bits and the number
/// of a key in the lower three.
constexpr std::string_view kinds = "{ 0x18-0x37, 0x48-0x5f }";
/// Kind 10 begins a session, kind 11 returns the cookie. Both contain a wrapped key of 299 bytes or more.
constexpr std::string_view startKind = "0x50-0x57";
constexpr std::string_view startAndCookieKinds = "0x50-0x5f";
constexpr unsigned minimumStartLength = 8 + 1 + 8 + 299;

std::string port(const VpnServer &server) {
    return protocolName(server.protocol) + " dport " + std::to_string(server.port);
}

std::string setName(const VpnServer &server) {
    return protocolName(server.protocol) + "_starts";
}

std::string chainName(const VpnServer &server) {
    return protocolName(server.protocol) + "_port";
}

std::string startLimit(const VpnServer &server, const VpnLimits &limits) {
    return " update @" + setName(server) + " { ip saddr limit rate over " +
           std::to_string(limits.startsPerSecond) + "/second burst " + std::to_string(limits.startsBurst) +
           " packets } counter drop\n";
}

std::string udpChain(const VpnServer &server, const VpnLimits &limits) {
    const std::string kind = "  @th,64,8 ";
    std::string rules = kind + "!= " + std::string(kinds) + " counter drop\n";
    rules += kind + std::string(startAndCookieKinds) + " udp length < " + std::to_string(minimumStartLength) +
             " counter drop\n";
    return rules + kind + std::string(startKind) + startLimit(server, limits);
}

std::string tcpChain(const VpnServer &server, const VpnLimits &limits) {
    return "  tcp flags & (fin | syn | rst | ack) == syn" + startLimit(server, limits);
}

} // namespace

std::string portRules(const Vpn &vpn, const VpnLimits &limits) {
    std::string sets;
    std::string chains;
    std::string arriving;
    std::string leaving;
    for (const auto &server : {vpn.udp, vpn.tcp}) {
        if (!server) {
            continue;
        }
        const bool udp = server->protocol == Protocol::Udp;
        sets += " set " + setName(*server) + " { type ipv4_addr; size " + std::to_string(maximumSources) +
                "; flags dynamic,timeout; timeout " + std::to_string(sourceSeconds) + "s; }\n";
        chains += " chain " + chainName(*server) + " {\n  notrack\n" +
                  (udp ? udpChain(*server, limits) : tcpChain(*server, limits)) + " }\n";
        arriving += "  fib daddr type local " + port(*server) + " goto " + chainName(*server) + '\n';
        leaving +=
            "  " + protocolName(server->protocol) + " sport " + std::to_string(server->port) + " notrack\n";
    }
    return sets + chains + " chain arriving {\n  type filter hook prerouting priority raw; policy accept;\n" +
           arriving + " }\n chain leaving {\n  type filter hook output priority raw; policy accept;\n" +
           leaving + " }\n";
}

} // namespace quorvane::service
