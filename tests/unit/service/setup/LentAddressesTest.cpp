#include "setup/LentAddresses.h"

#include "FakeMachine.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

using Texts = std::vector<std::string>;

template <typename Value>
Texts texts(const std::vector<Value> &values) {
    Texts all;
    for (const Value &value : values) {
        all.push_back(value.text());
    }
    return all;
}

Texts lent(const std::string &list) {
    test::FakeMachine machine;
    const auto addresses = lentAddresses(list, MachineNetwork::read(machine).value());
    return addresses ? texts(addresses.value()) : Texts{addresses.error()};
}

std::vector<Ipv4Address> addresses(const Texts &list) {
    std::vector<Ipv4Address> all;
    for (const std::string &text : list) {
        all.push_back(*Ipv4Address::parse(text));
    }
    return all;
}

TEST(LentAddresses, NetworksAndAddressesInOrder) {
    EXPECT_EQ(lent("203.0.113.4/30"), (Texts{"203.0.113.4", "203.0.113.5", "203.0.113.6", "203.0.113.7"}));
    EXPECT_EQ(lent("203.0.113.9,203.0.113.8/31"), (Texts{"203.0.113.9", "203.0.113.8"}));
}

TEST(LentAddresses, OfANetworkOfTheMachineTheAddressesInUseAreLeftOut) {
    EXPECT_EQ(lent("198.51.100.0/29"), (Texts{"198.51.100.2", "198.51.100.3", "198.51.100.4", "198.51.100.5",
                                              "198.51.100.6", "198.51.100.7"}));
    EXPECT_EQ(lent("198.51.100.10/31"), (Texts{"198.51.100.11"}));
    EXPECT_EQ(lent("198.51.100.254/31"), (Texts{"198.51.100.254"}));
}

TEST(LentAddresses, WhatIsNoListIsAFailure) {
    for (const char *list : {"", "x", "203.0.113.1/28", "203.0.113.1,", "10.0.0.0/8", "198.51.100.0/32x"}) {
        const Texts found = lent(list);
        ASSERT_EQ(found.size(), 1U);
        EXPECT_FALSE(Ipv4Address::parse(found[0])) << list;
    }
    EXPECT_EQ(lent("10.0.0.0/20,10.1.0.0/20"), Texts{"more than 4096 addresses"});
}

TEST(LentAddresses, MakeTheFewestNetworks) {
    EXPECT_EQ(texts(networksOf(addresses({"10.0.0.3", "10.0.0.1", "10.0.0.2", "10.0.0.0", "10.0.0.4"}))),
              (Texts{"10.0.0.0/30", "10.0.0.4/32"}));
    EXPECT_EQ(texts(networksOf(addresses({"10.0.0.1", "10.0.0.2", "10.0.0.2"}))),
              (Texts{"10.0.0.1/32", "10.0.0.2/32"}));
    EXPECT_EQ(texts(networksOf(addresses({"255.255.255.254", "255.255.255.255"}))),
              Texts{"255.255.255.254/31"});
    EXPECT_TRUE(networksOf({}).empty());
}

TEST(LentAddresses, RoutesAreAddedWhereTheyAreMissing) {
    test::FakeMachine machine;
    machine.answers["ip -json -4 route show table local proto 171"] =
        R"([{"dst":"203.0.113.4/31"},{"dst":"203.0.113.9"}])";
    const auto wanted = addresses({"203.0.113.4", "203.0.113.5", "203.0.113.7", "198.51.100.10"});
    ASSERT_TRUE(routeLentAddresses(machine, wanted, FormerRoutes::Keep));
    EXPECT_EQ(machine.batch, "route replace local 203.0.113.7 dev lo table local proto 171\n");
    machine.batch.clear();
    ASSERT_TRUE(routeLentAddresses(machine, wanted, FormerRoutes::Remove));
    EXPECT_EQ(machine.batch, "route del local 203.0.113.9 dev lo table local proto 171\n"
                             "route replace local 203.0.113.7 dev lo table local proto 171\n");
}

TEST(LentAddresses, AMachineThatCannotBeReadIsAFailure) {
    test::FakeMachine machine;
    machine.answers["ip -json -4 route show table local proto 171"] = "x";
    EXPECT_FALSE(routeLentAddresses(machine, {}, FormerRoutes::Remove));
    machine.answers.clear();
    EXPECT_FALSE(routeLentAddresses(machine, {}, FormerRoutes::Remove));
    EXPECT_EQ(machine.batch, "");
}

} // namespace

} // namespace quorvane::service
