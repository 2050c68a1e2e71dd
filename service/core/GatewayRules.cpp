#include "GatewayRules.h"

#include "PortRules.h"

#include <string_view>

namespace quorvane::service {

namespace {

/// What belongs to no public host: "this" network, private and shared networks, loopback, link-local and
/// multicast addresses.
constexpr std::string_view privateNetworks = "0.0.0.0/8, 10.0.0.0/8, 100.64.0.0/10, 127.0.0.0/8, "
                                             "169.254.0.0/16, 172.16.0.0/12, 192.168.0.0/16, 224.0.0.0/3";

std::string elementCommand(const std::string &command, const Gateway &gateway, const std::string &container,
                           const std::string &element) {
    return command + " element ip " + gateway.table + ' ' + container + " { " + element + " }\n";
}

} // namespace

GatewayRules::GatewayRules(const Config &config)
    : m_config(config), m_gateway(*config.gateway), m_vpn(config.vpn) {}

std::string GatewayRules::ruleset() const {
    std::string networks;
    std::string devices;
    for (const auto &server : {m_vpn.udp, m_vpn.tcp}) {
        if (server) {
            networks += (networks.empty() ? "" : ", ") + server->network.text();
            devices += (devices.empty() ? "\"" : ", \"") + server->device + '"';
        }
    }
    const std::string wan =
        m_gateway.wanInterface.empty() ? "" : "oifname \"" + m_gateway.wanInterface + "\" ";
    const std::string translation = "snat to ip saddr map @" + m_gateway.map + "\n }\n";
    std::string rules = "table ip " + m_gateway.table + " {\n";
    rules += " map " + m_gateway.map + " { type ipv4_addr : ipv4_addr; }\n";
    rules += " set " + m_gateway.set + " { type ipv4_addr; }\n";
    rules += " chain postrouting {\n  type nat hook postrouting priority srcnat; policy accept;\n";
    rules += "  ip saddr { " + networks + " } " + wan + translation;
    // What a program of the gateway itself receives is not forwarded and does not pass the chain above.
    rules += " chain received {\n  type nat hook input priority 100; policy accept;\n";
    rules += "  iifname { " + devices + " } " + translation;
    rules += ownChains(devices) + forwardChain(networks, devices);
    rules += portRules(m_vpn, m_config.limits.vpn) + "}\n";
    rules += "table ip6 " + m_gateway.table + " {\n";
    for (const std::string hook : {"input", "forward"}) {
        rules += " chain " + hook + " {\n  type filter hook " + hook +
                 " priority filter; policy accept;\n  iifname { " + devices + " } counter drop\n }\n";
    }
    return rules + "}\n";
}

/// The chain for packets to the gateway itself, and the exceptions that forwarded ones have, too.
std::string GatewayRules::ownChains(const std::string &devices) const {
    std::string rules = " chain guarded {\n";
    for (const ListenAddress &listen : m_config.listen) {
        const auto address = Ipv4Address::parse(listen.address);
        if (!address || listen.port == 0) {
            continue; // the tunnels have no IPv6, and a port of the system's choice is for tests
        }
        const std::string destination =
            address->value == 0 ? "fib daddr type local" : "ip daddr " + address->text();
        rules += "  " + destination + " tcp dport " + std::to_string(listen.port) + " accept\n";
    }
    for (const Ipv4Address resolver : m_vpn.dns) {
        rules += "  ip daddr " + resolver.text() + " meta l4proto { tcp, udp } th dport 53 accept\n";
    }
    for (const Ipv4Network &network : m_gateway.allowPrivate) {
        rules += "  ip daddr " + network.text() + " accept\n";
    }
    // Errors about the packets of the connections that are accepted above.
    rules += "  ct state related accept\n  counter drop\n }\n";
    rules += " chain input {\n  type filter hook input priority filter; policy accept;\n";
    rules += "  iifname { " + devices + " } ip saddr != @" + m_gateway.set + " counter drop\n";
    return rules + "  iifname { " + devices + " } goto guarded\n }\n";
}

std::string GatewayRules::forwardChain(const std::string &networks, const std::string &devices) const {
    std::string rules = " chain forward {\n  type filter hook forward priority filter; policy accept;\n";
    rules += "  iifname { " + devices + " } ip saddr != @" + m_gateway.set + " counter drop\n";
    rules += "  ip saddr { " + networks + " } ip saddr != @" + m_gateway.set + " counter drop\n";
    // No new connections to a client, neither from another client nor from outside.
    rules += "  oifname { " + devices + " } ct state new counter drop\n";
    if (!m_gateway.wanInterface.empty()) {
        // By another interface a packet would leave with its tunnel address.
        rules += "  iifname { " + devices + " } oifname != \"" + m_gateway.wanInterface + "\" counter drop\n";
    }
    return rules + "  iifname { " + devices + " } ip daddr { " + std::string(privateNetworks) +
           " } goto guarded\n }\n";
}

std::string GatewayRules::setup() const {
    return m_gateway.createTables ? teardown() + ruleset() : teardown();
}

std::string GatewayRules::teardown() const {
    const std::string &table = m_gateway.table;
    if (!m_gateway.createTables) {
        return "flush map ip " + table + ' ' + m_gateway.map + "\nflush set ip " + table + ' ' +
               m_gateway.set + '\n';
    }
    // The tables are added first so that deleting them cannot fail.
    return "add table ip " + table + "\nadd table ip6 " + table + "\ndelete table ip " + table +
           "\ndelete table ip6 " + table + '\n';
}

std::string GatewayRules::lend(Ipv4Address tunnel, Ipv4Address lent) const {
    return elementCommand("add", m_gateway, m_gateway.map, tunnel.text() + " : " + lent.text()) +
           elementCommand("add", m_gateway, m_gateway.set, tunnel.text());
}

std::string GatewayRules::release(Ipv4Address tunnel) const {
    return elementCommand("delete", m_gateway, m_gateway.set, tunnel.text()) +
           elementCommand("delete", m_gateway, m_gateway.map, tunnel.text());
}

} // namespace quorvane::service
