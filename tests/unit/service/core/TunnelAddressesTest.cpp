#include "core/TunnelAddresses.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace quorvane::service {
namespace {

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

} // namespace
} // namespace quorvane::service
