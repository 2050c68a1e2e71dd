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

TEST(GatewayRules, ReplacesTheTablesOfAnEarlierRun) {
    const Config config = test::sampleConfig();
    Gateway gateway;
    gateway.wanInterface = "wan";
    EXPECT_EQ(GatewayRules(gateway, config.vpn, config.limits.vpn).setup(),
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
              " chain forward {\n"
              "  type filter hook forward priority filter; policy accept;\n"
              "  iifname { \"qrv-udp\", \"qrv-tcp\" } ip saddr != @allowed counter drop\n"
              "  ip saddr { 10.8.0.0/16, 10.9.0.0/16 } ip saddr != @allowed counter drop\n"
              "  oifname { \"qrv-udp\", \"qrv-tcp\" } ct state new counter drop\n"
              "  iifname { \"qrv-udp\", \"qrv-tcp\" } oifname != \"wan\" counter drop\n"
              " }\n" +
                  portRules(config.vpn, config.limits.vpn) +
                  "}\n"
                  "table ip6 quorvane {\n"
                  " chain forward {\n"
                  "  type filter hook forward priority filter; policy accept;\n"
                  "  iifname { \"qrv-udp\", \"qrv-tcp\" } counter drop\n"
                  " }\n"
                  "}\n");
}

TEST(GatewayRules, WithoutAWanInterfaceAndWithOneProtocol) {
    Config config = test::sampleConfig();
    config.vpn.tcp.reset();
    const Gateway gateway;
    const std::string setup = GatewayRules(gateway, config.vpn, config.limits.vpn).setup();
    EXPECT_THAT(setup, HasSubstr("  ip saddr { 10.8.0.0/16 } snat to ip saddr map @lent\n"));
    EXPECT_THAT(setup, Not(HasSubstr("qrv-tcp")));
    EXPECT_THAT(setup, Not(HasSubstr("oifname !=")));
}

TEST(GatewayRules, OnlyEmptiesTablesThatAreNotItsOwn) {
    const Config config = test::sampleConfig();
    Gateway gateway;
    gateway.createTables = false;
    gateway.table = "t";
    gateway.map = "m";
    gateway.set = "s";
    const GatewayRules rules(gateway, config.vpn, config.limits.vpn);
    EXPECT_EQ(rules.setup(), "flush map ip t m\nflush set ip t s\n");
    EXPECT_EQ(rules.teardown(), rules.setup());
}

TEST(GatewayRules, LeasesAreAddedAndRemovedInOneTransaction) {
    const Config config = test::sampleConfig();
    const Gateway gateway;
    const GatewayRules rules(gateway, config.vpn, config.limits.vpn);
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
