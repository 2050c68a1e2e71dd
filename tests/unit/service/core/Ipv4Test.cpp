#include "core/Ipv4.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvane::service {

namespace {

Ipv4Address address(std::string_view text) {
    return *Ipv4Address::parse(text);
}

class MalformedAddress : public testing::TestWithParam<std::string_view> {};

TEST_P(MalformedAddress, IsRefused) {
    EXPECT_FALSE(Ipv4Address::parse(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Ipv4, MalformedAddress,
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
