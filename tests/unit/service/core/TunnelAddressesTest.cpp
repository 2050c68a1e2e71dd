#include "core/TunnelAddresses.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace quorvane::service {

namespace {

Ipv4Address address(std::string_view text) {
    return *Ipv4Address::parse(text);
}

TEST(TunnelAddresses, AllocatesEveryClientAddressOnceAndThenNone) {
    TunnelAddresses addresses(*Ipv4Network::parse("10.8.0.0/29"), 3);
    std::set<std::string> allocated;
    for (int i = 0; i < 5; ++i) {
        allocated.insert(addresses.allocate()->text());
    }
    EXPECT_EQ(allocated, (std::set<std::string>{"10.8.0.2", "10.8.0.3", "10.8.0.4", "10.8.0.5", "10.8.0.6"}));
    EXPECT_EQ(addresses.allocate(), std::nullopt);
    addresses.release(address("10.8.0.4"));
    EXPECT_EQ(addresses.allocate(), address("10.8.0.4"));
    EXPECT_EQ(addresses.allocate(), std::nullopt);
}

TEST(TunnelAddresses, AReleasedAddressIsUnusedAsLongAsPossible) {
    TunnelAddresses addresses(*Ipv4Network::parse("10.8.0.0/29"), 0);
    EXPECT_EQ(addresses.allocate(), address("10.8.0.2"));
    addresses.release(address("10.8.0.2"));
    EXPECT_EQ(addresses.allocate(), address("10.8.0.3"));
    EXPECT_EQ(addresses.allocate(), address("10.8.0.4"));
    EXPECT_EQ(addresses.allocate(), address("10.8.0.5"));
    EXPECT_EQ(addresses.allocate(), address("10.8.0.6"));
    EXPECT_EQ(addresses.allocate(), address("10.8.0.2"));
}

TEST(TunnelAddresses, AnyStartIsFine) {
    TunnelAddresses addresses(*Ipv4Network::parse("10.0.0.0/8"), 0xffffffff);
    const auto first = addresses.allocate();
    ASSERT_TRUE(first);
    EXPECT_TRUE(addresses.network().contains(*first));
    EXPECT_GE(first->value, address("10.0.0.2").value);
    EXPECT_LE(first->value, address("10.255.255.254").value);
    addresses.release(address("10.1.2.3")); // was never allocated
    EXPECT_EQ(addresses.allocatedCount(), 1U);
}

TEST(TunnelAddresses, OnlyClientAddressesCanBePreferred) {
    TunnelAddresses addresses(*Ipv4Network::parse("10.8.0.0/29"), 0);
    for (const char *other : {"10.8.0.0", "10.8.0.1", "10.8.0.7", "10.9.0.3", "10.7.255.255", "0.0.0.0"}) {
        const auto allocated = addresses.allocatePreferred(*Ipv4Address::parse(other));
        ASSERT_TRUE(allocated.has_value()) << other;
        EXPECT_NE(allocated, Ipv4Address::parse(other));
        addresses.release(*allocated);
    }
    EXPECT_EQ(addresses.allocatePreferred(*Ipv4Address::parse("10.8.0.6")), Ipv4Address::parse("10.8.0.6"));
    EXPECT_EQ(addresses.allocatedCount(), 1U);
}

} // namespace

} // namespace quorvane::service
