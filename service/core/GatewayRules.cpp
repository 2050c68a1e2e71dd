#include "GatewayRules.h"

namespace quorvane::service {

namespace {

std::string element(const std::string &verb, const Gateway &gateway, const std::string &where,
                    const std::string &what) {
    return verb + " element ip " + gateway.table + ' ' + where + " { " + what + " }\n";
}

} // namespace

GatewayRules::GatewayRules(const Gateway &gateway, const Vpn &vpn) : m_gateway(gateway), m_vpn(vpn) {}

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
    // No way from client to client, nor in to a client from outside.
    rules += "  oifname { " + devices + " } ct state new counter drop\n";
    if (!m_gateway.wanInterface.empty()) {
        // Past the lending rule a packet would leave with its tunnel address.
        rules += "  iifname { " + devices + " } oifname != \"" + m_gateway.wanInterface + "\" counter drop\n";
    }
    rules += " }\n}\n";
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
    // Adding before deleting makes the deletion work whether or not there was a table.
    return "add table ip " + table + "\nadd table ip6 " + table + "\ndelete table ip " + table +
           "\ndelete table ip6 " + table + '\n';
}

std::string GatewayRules::lend(Ipv4Address tunnel, Ipv4Address lent) const {
    return element("add", m_gateway, m_gateway.map, tunnel.text() + " : " + lent.text()) +
           element("add", m_gateway, m_gateway.set, tunnel.text());
}

std::string GatewayRules::takeBack(Ipv4Address tunnel) const {
    return element("delete", m_gateway, m_gateway.set, tunnel.text()) +
           element("delete", m_gateway, m_gateway.map, tunnel.text());
}

} // namespace quorvane::service
