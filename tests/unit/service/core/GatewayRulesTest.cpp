#include "core/GatewayRules.h"
#include "SampleConfig.h"
#include "core/PortRules.h"

#include <gmock/gmock.h>

namespace quorvane::service {

namespace {

using testing::HasSubstr;
using testing::Not;

Ipv4Address address(std::string_view text) {
    return *Ipv4Address::parse(text);
}

/// The sample with a gateway and a listener.
Config gatewayConfig() {
    Config config = test::sampleConfig();
    config.gateway = Gateway();
    config.listen = {{"192.0.2.10", 443}};
    return config;
}

std::string setupOf(const Config &config) {
    return GatewayRules(config).setup();
}

TEST(GatewayRules, ReplacesTheTablesOfAnEarlierRun) {
    Config config = gatewayConfig();
    config.gateway->wanInterface = "wan";
    EXPECT_EQ(setupOf(config),
              "add table ip quorvane\n"
              "add table ip6 quorvane\n"
              "delete table ip quorvane\n"
              "delete table ip6 quorvane\n"
              "table ip quorvane {\n"
              " map lent { type ipv4_addr : ipv4_addr; }\n"
              " set allowed { type ipv4_addr; }\n"
              " chain postrouting {\n"
              "  type nat hook postrouting priority srcnat; policy accept;\n"
              "  ip saddr { 10.8.0.0/16, 10.9.0.0/16 } oifname \"wan\" snat to ip saddr map @lent\n"
              " }\n"
              " chain received {\n"
              "  type nat hook input priority 100; policy accept;\n"
              "  iifname { \"qrv-udp\", \"qrv-tcp\" } snat to ip saddr map @lent\n"
              " }\n"
              " chain guarded {\n"
              "  ip daddr 192.0.2.10 tcp dport 443 accept\n"
              "  ct state related accept\n"
              "  counter drop\n"
              " }\n"
              " chain input {\n"
              "  type filter hook input priority filter; policy accept;\n"
              "  iifname { \"qrv-udp\", \"qrv-tcp\" } ip saddr != @allowed counter drop\n"
              "  iifname { \"qrv-udp\", \"qrv-tcp\" } goto guarded\n"
              " }\n"
              " chain forward {\n"
              "  type filter hook forward priority filter; policy accept;\n"
              "  iifname { \"qrv-udp\", \"qrv-tcp\" } ip saddr != @allowed counter drop\n"
              "  ip saddr { 10.8.0.0/16, 10.9.0.0/16 } ip saddr != @allowed counter drop\n"
              "  oifname { \"qrv-udp\", \"qrv-tcp\" } ct state new counter drop\n"
              "  iifname { \"qrv-udp\", \"qrv-tcp\" } oifname != \"wan\" counter drop\n"
              "  iifname { \"qrv-udp\", \"qrv-tcp\" } ip daddr { 0.0.0.0/8, 10.0.0.0/8, 100.64.0.0/10, "
              "127.0.0.0/8, 169.254.0.0/16, 172.16.0.0/12, 192.168.0.0/16, 224.0.0.0/3 } goto guarded\n"
              " }\n" +
                  portRules(config.vpn, config.limits.vpn) +
                  "}\n"
                  "table ip6 quorvane {\n"
                  " chain input {\n"
                  "  type filter hook input priority filter; policy accept;\n"
                  "  iifname { \"qrv-udp\", \"qrv-tcp\" } counter drop\n"
                  " }\n"
                  " chain forward {\n"
                  "  type filter hook forward priority filter; policy accept;\n"
                  "  iifname { \"qrv-udp\", \"qrv-tcp\" } counter drop\n"
                  " }\n"
                  "}\n");
}

TEST(GatewayRules, WithoutAWanInterfaceAndWithOneProtocol) {
    Config config = gatewayConfig();
    config.vpn.tcp.reset();
    const std::string setup = setupOf(config);
    EXPECT_THAT(setup, HasSubstr("  ip saddr { 10.8.0.0/16 } snat to ip saddr map @lent\n"));
    EXPECT_THAT(setup, Not(HasSubstr("qrv-tcp")));
    EXPECT_THAT(setup, Not(HasSubstr("oifname !=")));
}

TEST(GatewayRules, ClientsReachListenersResolversAndAllowedNetworksOfTheGateway) {
    Config config = gatewayConfig();
    config.listen = {{"192.0.2.10", 443}, {"0.0.0.0", 8443}, {"::", 443}, {"127.0.0.1", 0}};
    config.vpn.dns = {address("10.0.0.53")};
    config.gateway->allowPrivate = {*Ipv4Network::parse("192.168.5.0/24")};
    EXPECT_THAT(setupOf(config),
                HasSubstr(" chain guarded {\n"
                          "  ip daddr 192.0.2.10 tcp dport 443 accept\n"
                          "  fib daddr type local tcp dport 8443 accept\n"
                          "  ip daddr 10.0.0.53 meta l4proto { tcp, udp } th dport 53 accept\n"
                          "  ip daddr 192.168.5.0/24 accept\n"
                          "  ct state related accept\n"
                          "  counter drop\n"
                          " }\n"));
}

TEST(GatewayRules, OnlyEmptiesTablesThatAreNotItsOwn) {
    Config config = gatewayConfig();
    config.gateway->createTables = false;
    config.gateway->table = "t";
    config.gateway->map = "m";
    config.gateway->set = "s";
    const GatewayRules rules(config);
    EXPECT_EQ(rules.setup(), "flush map ip t m\nflush set ip t s\n");
    EXPECT_EQ(rules.teardown(), rules.setup());
}

TEST(GatewayRules, LeasesAreAddedAndRemovedInOneTransaction) {
    const Config config = gatewayConfig();
    const GatewayRules rules(config);
    EXPECT_EQ(rules.lend(address("10.8.0.2"), address("203.0.113.5")),
              "add element ip quorvane lent { 10.8.0.2 : 203.0.113.5 }\n"
              "add element ip quorvane allowed { 10.8.0.2 }\n");
    EXPECT_EQ(rules.release(address("10.8.0.2")), "delete element ip quorvane allowed { 10.8.0.2 }\n"
                                                  "delete element ip quorvane lent { 10.8.0.2 }\n");
    EXPECT_EQ(rules.teardown(), "add table ip quorvane\nadd table ip6 quorvane\n"
                                "delete table ip quorvane\ndelete table ip6 quorvane\n");
}

} // namespace

} // namespace quorvane::service
