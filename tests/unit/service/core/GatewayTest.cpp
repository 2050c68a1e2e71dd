#include "SampleConfig.h"
#include "core/BackOff.h"
#include "core/GatewayRules.h"
#include "core/TunnelAddresses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace quorvane::service {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::Not;

Ipv4Address address(std::string_view text) {
    return *Ipv4Address::parse(text);
}

TEST(TunnelAddresses, GivesEveryClientAddressOnceAndThenNone) {
    TunnelAddresses addresses(*Ipv4Network::parse("10.8.0.0/29"), 3);
    std::set<std::string> given;
    for (int i = 0; i < 5; ++i) {
        given.insert(addresses.take()->text());
    }
    EXPECT_EQ(given, (std::set<std::string>{"10.8.0.2", "10.8.0.3", "10.8.0.4", "10.8.0.5", "10.8.0.6"}));
    EXPECT_EQ(addresses.take(), std::nullopt);
    addresses.giveBack(address("10.8.0.4"));
    EXPECT_EQ(addresses.take(), address("10.8.0.4"));
    EXPECT_EQ(addresses.take(), std::nullopt);
}

TEST(TunnelAddresses, AReturnedAddressRestsAsLongAsPossible) {
    TunnelAddresses addresses(*Ipv4Network::parse("10.8.0.0/29"), 0);
    EXPECT_EQ(addresses.take(), address("10.8.0.2"));
    addresses.giveBack(address("10.8.0.2"));
    EXPECT_EQ(addresses.take(), address("10.8.0.3"));
    EXPECT_EQ(addresses.take(), address("10.8.0.4"));
    EXPECT_EQ(addresses.take(), address("10.8.0.5"));
    EXPECT_EQ(addresses.take(), address("10.8.0.6"));
    EXPECT_EQ(addresses.take(), address("10.8.0.2"));
}

TEST(TunnelAddresses, AnyStartIsFine) {
    TunnelAddresses addresses(*Ipv4Network::parse("10.0.0.0/8"), 0xffffffff);
    const auto first = addresses.take();
    ASSERT_TRUE(first);
    EXPECT_TRUE(addresses.network().contains(*first));
    EXPECT_GE(first->value, address("10.0.0.2").value);
    EXPECT_LE(first->value, address("10.255.255.254").value);
    addresses.giveBack(address("10.1.2.3")); // was never taken
    EXPECT_EQ(addresses.taken(), 1U);
}

TEST(GatewayRules, ReplacesTheTablesOfAPredecessor) {
    const Config config = test::sampleConfig();
    Gateway gateway;
    gateway.wanInterface = "wan";
    EXPECT_EQ(GatewayRules(gateway, config.vpn).setup(),
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
              " }\n"
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
    const std::string setup = GatewayRules(gateway, config.vpn).setup();
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
    const GatewayRules rules(gateway, config.vpn);
    EXPECT_EQ(rules.setup(), "flush map ip t m\nflush set ip t s\n");
    EXPECT_EQ(rules.teardown(), rules.setup());
}

TEST(GatewayRules, RowsComeAndGoInOneTransaction) {
    const Config config = test::sampleConfig();
    const Gateway gateway;
    const GatewayRules rules(gateway, config.vpn);
    EXPECT_EQ(rules.lend(address("10.8.0.2"), address("203.0.113.5")),
              "add element ip quorvane lent { 10.8.0.2 : 203.0.113.5 }\n"
              "add element ip quorvane allowed { 10.8.0.2 }\n");
    EXPECT_EQ(rules.takeBack(address("10.8.0.2")), "delete element ip quorvane allowed { 10.8.0.2 }\n"
                                                   "delete element ip quorvane lent { 10.8.0.2 }\n");
    EXPECT_EQ(rules.teardown(), "add table ip quorvane\nadd table ip6 quorvane\n"
                                "delete table ip quorvane\ndelete table ip6 quorvane\n");
}

TEST(BackOff, DoublesUpToItsLimitAndForgetsAfterALongRun) {
    BackOff backOff(milliseconds(100), milliseconds(500), milliseconds(1000));
    EXPECT_EQ(backOff.next(milliseconds(0)), milliseconds(100));
    EXPECT_EQ(backOff.next(milliseconds(999)), milliseconds(200));
    EXPECT_EQ(backOff.next(milliseconds(0)), milliseconds(400));
    EXPECT_EQ(backOff.next(milliseconds(0)), milliseconds(500));
    EXPECT_EQ(backOff.next(milliseconds(0)), milliseconds(500));
    EXPECT_EQ(backOff.next(milliseconds(1000)), milliseconds(100));
    EXPECT_EQ(backOff.next(milliseconds(0)), milliseconds(200));
}

class NoAddress : public testing::TestWithParam<std::string_view> {};

TEST_P(NoAddress, IsRefused) {
    EXPECT_FALSE(Ipv4Address::parse(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Ipv4, NoAddress,
                         testing::Values("", "1.2.3", "1.2.3.4.5", "1.2.3.256", "1.2.3.04", "1.2.3.4 ",
                                         " 1.2.3.4", "1.2.3.-4", "1.2.3.+4", "1..3.4", "a.b.c.d", "1.2.3.4\n",
                                         "0x1.2.3.4", "99999999999.1.1.1"));

TEST(Ipv4, ReadsAndWritesAddresses) {
    for (const std::string text : {"0.0.0.0", "255.255.255.255", "203.0.113.5", "10.0.0.1"}) {
        EXPECT_EQ(address(text).text(), text);
    }
}

TEST(Ipv4, Networks) {
    const auto network = Ipv4Network::parse("10.8.0.0/16");
    ASSERT_TRUE(network);
    EXPECT_EQ(network->mask().text(), "255.255.0.0");
    EXPECT_TRUE(network->contains(address("10.8.255.255")));
    EXPECT_FALSE(network->contains(address("10.9.0.0")));
    EXPECT_EQ(network->size(), 65536U);
    EXPECT_EQ(Ipv4Network::parse("0.0.0.0/0")->size(), std::uint64_t{1} << 32);
    EXPECT_TRUE(Ipv4Network::parse("0.0.0.0/0")->contains(address("9.9.9.9")));
    EXPECT_TRUE(network->overlaps(*Ipv4Network::parse("10.8.1.0/24")));
    EXPECT_TRUE(Ipv4Network::parse("10.8.1.0/24")->overlaps(*network));
    EXPECT_FALSE(network->overlaps(*Ipv4Network::parse("10.9.0.0/16")));
    for (const std::string_view text :
         {"10.8.0.0", "10.8.0.1/16", "10.8.0.0/33", "10.8.0.0/", "/16", "10.8.0.0/16x"}) {
        EXPECT_FALSE(Ipv4Network::parse(text)) << text;
    }
}

} // namespace
} // namespace quorvane::service
