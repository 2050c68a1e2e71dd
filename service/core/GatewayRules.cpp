#include "GatewayRules.h"

#include "PortRules.h"

namespace quorvane::service {

namespace {

std::string elementCommand(const std::string &command, const Gateway &gateway, const std::string &container,
                           const std::string &element) {
    return command + " element ip " + gateway.table + ' ' + container + " { " + element + " }\n";
}

} // namespace

GatewayRules::GatewayRules(const Gateway &gateway, const Vpn &vpn, const VpnLimits &limits)
    : m_gateway(gateway), m_vpn(vpn), m_limits(limits) {}

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
    std::string rules = "table ip " + m_gateway.table + " {\n";
    rules += " map " + m_gateway.map + " { type ipv4_addr : ipv4_addr; }\n";
    rules += " set " + m_gateway.set + " { type ipv4_addr; }\n";
    rules += " chain postrouting {\n  type nat hook postrouting priority srcnat; policy accept;\n";
    rules += "  ip saddr { " + networks + " } " + wan + "snat to ip saddr map @" + m_gateway.map + "\n }\n";
    rules += " chain forward {\n  type filter hook forward priority filter; policy accept;\n";
    rules += "  iifname { " + devices + " } ip saddr != @" + m_gateway.set + " counter drop\n";
    rules += "  ip saddr { " + networks + " } ip saddr != @" + m_gateway.set + " counter drop\n";
    // No new connections to a client, neither from another client nor from outside.
    rules += "  oifname { " + devices + " } ct state new counter drop\n";
    if (!m_gateway.wanInterface.empty()) {
        // By another interface a packet would leave with its tunnel address.
        rules += "  iifname { " + devices + " } oifname != \"" + m_gateway.wanInterface + "\" counter drop\n";
    }
    rules += " }\n" + portRules(m_vpn, m_limits) + "}\n";
    rules += "table ip6 " + m_gateway.table + " {\n chain forward {\n";
    rules += "  type filter hook forward priority filter; policy accept;\n";
    rules += "  iifname { " + devices + " } counter drop\n }\n}\n";
    return rules;
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
