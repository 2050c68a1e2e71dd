#include "guard/TunnelRules.h"
#include "FakeRouting.h"

#include <gtest/gtest.h>

namespace quorvane::guard {

namespace {

constexpr unsigned cable = FakeRouting::cable;
constexpr unsigned tunnel = FakeRouting::tunnel;
constexpr const char *server = "203.0.113.5";

Route throughRouter(const std::string &destination, unsigned char protocol = RTPROT_BOOT) {
    return routeTo(destination, cable, true, protocol);
}

} // namespace

/// A home before a session, and with the tunnel up.
class TunnelRules : public testing::Test {
protected:
    TunnelRules() : before(home.current) {
        home.bringUp(server);
        now = home.current;
    }

    [[nodiscard]] std::string error() const {
        const auto checked = checkTunnel(before, now, facts);
        return checked ? "" : checked.error();
    }

    [[nodiscard]] bool leadsPast(const Route &route) const {
        return leadsPastTunnel(route, before, now, facts);
    }

public:
    FakeRouting home;
    NetworkState before;
    NetworkState now;
    TunnelFacts facts{tunnel, {*hostOf(server)}};
};

TEST_F(TunnelRules, AnHonestTunnelIsAccepted) {
    EXPECT_EQ(error(), "");
}

TEST_F(TunnelRules, BothHalvesMustGoToTheOwnDevice) {
    for (const char *half : {"0.0.0.0/1", "128.0.0.0/1"}) {
        NetworkState changed = home.current;
        changed.routes.erase(routeTo(half, tunnel, true));
        EXPECT_FALSE(carriesAll(changed, tunnel)) << half << " is missing";
        changed.routes.insert(throughRouter(half));
        EXPECT_FALSE(carriesAll(changed, tunnel)) << half << " leads through the router";
        changed.routes.insert(routeTo(half, tunnel, true));
        EXPECT_FALSE(carriesAll(changed, tunnel)) << half << " leads through the router as well";
    }
    now.routes.erase(routeTo("0.0.0.0/1", tunnel, true));
    EXPECT_EQ(error(), "its device does not carry all IPv4 addresses");
    EXPECT_FALSE(carriesAll(home.current, cable));
}

TEST_F(TunnelRules, AHalfThatRefusesPacketsDoesNotCarryThem) {
    Route half = routeTo("0.0.0.0/1", tunnel, true);
    now.routes.erase(half);
    half.type = RTN_UNREACHABLE;
    half.message += " unreachable";
    now.routes.insert(half);
    EXPECT_FALSE(carriesAll(now, tunnel));
}

TEST_F(TunnelRules, AnyOtherRouteThroughAGatewayIsRefused) {
    now.routes.insert(throughRouter("8.8.8.8/32"));
    EXPECT_EQ(error(), "the route to 8.8.8.8/32 leads past it");
}

TEST_F(TunnelRules, OnlyTheWholeAddressOfTheServerIsItsRoute) {
    EXPECT_FALSE(leadsPast(throughRouter("203.0.113.5/32")));
    EXPECT_TRUE(leadsPast(throughRouter("203.0.113.5/31")));
    EXPECT_TRUE(leadsPast(throughRouter("203.0.113.0/24")));
    EXPECT_TRUE(leadsPast(throughRouter("203.0.113.6/32")));
}

TEST_F(TunnelRules, WhatHasGoneIsRefused) {
    before.routes.insert(throughRouter("10.0.0.0/8"));
    EXPECT_EQ(error(), "the route to 10.0.0.0/8 has gone");
    now = home.current;
    before = now;
    now.rules.clear();
    EXPECT_EQ(error(), "a routing rule has gone");
    now = before;
    now.addresses.clear();
    EXPECT_EQ(error(), "the address 192.168.77.2/32 has gone");
}

TEST_F(TunnelRules, RoutesThatComeAndGoByThemselvesMayHaveGone) {
    before.routes.insert(throughRouter("2001:db8::/64", RTPROT_RA));
    before.routes.insert(routeTo("172.17.0.0/16", 3, false, RTPROT_KERNEL));
    before.routes.insert(throughRouter("9.9.9.9/32", RTPROT_REDIRECT));
    EXPECT_EQ(error(), "");
}

TEST_F(TunnelRules, RoutesOfTheHomeDoNotLeadPast) {
    EXPECT_FALSE(leadsPast(throughRouter("0.0.0.0/0", RTPROT_DHCP))) << "another default route";
    EXPECT_FALSE(leadsPast(routeTo("172.17.0.0/16", 3, false, RTPROT_KERNEL))) << "a connected network";
    EXPECT_FALSE(leadsPast(throughRouter("192.168.77.128/25"))) << "within a connected network";
    before.routes.insert(throughRouter("10.0.0.0/8"));
    EXPECT_FALSE(leadsPast(throughRouter("10.0.0.0/8"))) << "a route that was there before comes back";
    EXPECT_TRUE(leadsPast(throughRouter("10.0.0.0/9")));
    EXPECT_FALSE(leadsPast(routeTo("10.9.0.0/16", tunnel, true))) << "the tunnel's own";
}

TEST_F(TunnelRules, ADefaultRouteOfADeviceIsNoConnectedNetwork) {
    now.routes.insert(routeTo("0.0.0.0/0", cable, false));
    EXPECT_TRUE(leadsPast(throughRouter("8.8.8.8/32")));
}

TEST_F(TunnelRules, TheTunnelsOwnNetworkIsNoConnectedNetworkOfTheHome) {
    EXPECT_TRUE(leadsPast(throughRouter("10.8.3.0/24")));
}

TEST_F(TunnelRules, AnotherTableCountsWhenARuleLeadsToItFirst) {
    Route other = throughRouter("0.0.0.0/0");
    other.table = 100;
    other.message += " table 100";
    EXPECT_FALSE(leadsPast(other));
    now.rules.insert({AF_INET, 100, 32767, "late"});
    EXPECT_FALSE(leadsPast(other));
    now.rules.insert({AF_INET6, 100, 50, "other family"});
    EXPECT_FALSE(leadsPast(other));
    now.rules.insert({AF_INET, 100, 50, "early"});
    EXPECT_TRUE(leadsPast(other));
}

TEST_F(TunnelRules, Ipv6CountsWhereTheTunnelCarriesIt) {
    const Route past = throughRouter("2001:db8:5::/48");
    EXPECT_FALSE(leadsPast(past));
    now.routes.insert(routeTo("2000::/3", tunnel, true));
    EXPECT_TRUE(leadsPast(past));
    EXPECT_FALSE(leadsPast(throughRouter("::/0"))) << "less than the tunnel's route";
}

TEST_F(TunnelRules, WhatCameIsTakenBackAndWhatWentIsPutBack) {
    home.takeDown();
    home.current.routes.insert(throughRouter("8.8.8.8/32"));
    home.current.routes.erase(throughRouter("0.0.0.0/0"));
    const Repair repair = repairOf(before, home.current, facts.servers);
    EXPECT_EQ(repair.remove, (std::vector{throughRouter("203.0.113.5/32"), throughRouter("8.8.8.8/32")}));
    EXPECT_EQ(repair.add, std::vector{throughRouter("0.0.0.0/0")});
}

TEST_F(TunnelRules, WhatTheHomeHasChangedIsKept) {
    home.takeDown();
    const Route router = throughRouter("0.0.0.0/0");
    home.current.routes = {throughRouter("0.0.0.0/0", RTPROT_DHCP), throughRouter("10.0.0.0/8", RTPROT_DHCP),
                           routeTo("172.17.0.0/16", 3, false, RTPROT_KERNEL),
                           routeTo("192.168.77.0/24", cable, false, RTPROT_KERNEL)};
    const Repair repair = repairOf(before, home.current, facts.servers);
    EXPECT_TRUE(repair.remove.empty());
    EXPECT_TRUE(repair.add.empty()) << "another default route has come";
}

TEST_F(TunnelRules, ADefaultRouteThatHasComeIsKept) {
    home.takeDown();
    const Route other = routeTo("0.0.0.0/0", 1, true);
    home.current.routes.insert(other);
    const Repair repair = repairOf(before, home.current, facts.servers);
    EXPECT_EQ(std::ranges::count(repair.remove, other), 0);
}

TEST_F(TunnelRules, ADeviceInAnotherNetworkIsKeptAsItIs) {
    home.takeDown();
    home.current.addresses = {{cable, *hostOf("10.1.1.2")}};
    home.current.routes = {throughRouter("203.0.113.5/32"), throughRouter("10.2.0.0/16")};
    const Repair repair = repairOf(before, home.current, facts.servers);
    EXPECT_EQ(repair.remove, std::vector{throughRouter("203.0.113.5/32")}) << "but not the server's route";
    EXPECT_TRUE(repair.add.empty());
}

TEST_F(TunnelRules, AnotherDeviceOfTheSameNumberIsKeptAsItIs) {
    home.takeDown();
    home.current.devices[cable] = "usb0";
    home.current.routes = {throughRouter("10.2.0.0/16")};
    const Repair repair = repairOf(before, home.current, facts.servers);
    EXPECT_TRUE(repair.remove.empty());
    EXPECT_TRUE(repair.add.empty());
}

TEST_F(TunnelRules, RoutesOfADeviceThatHasComeAreKept) {
    home.takeDown();
    home.current.devices[9] = "tun3";
    home.current.routes.insert(routeTo("10.0.0.0/8", 9, true));
    EXPECT_EQ(repairOf(before, home.current, facts.servers).remove,
              std::vector{throughRouter("203.0.113.5/32")});
}

TEST_F(TunnelRules, RoutesWithoutAGatewayArePutBackFirst) {
    before.routes.insert(throughRouter("1.0.0.0/8"));
    before.routes.insert(routeTo("9.0.0.1/32", cable, false));
    const Repair repair = repairOf(before, home.current, facts.servers);
    ASSERT_EQ(repair.add.size(), 2U);
    EXPECT_FALSE(repair.add.front().leadsThroughGateway());
}

TEST(Network, ContainsWhatBeginsWithTheSameBits) {
    const auto network = [](const std::string &text) {
        return routeTo(text, 1, false).destination;
    };
    EXPECT_TRUE(network("128.0.0.0/1").contains(network("203.0.113.0/24")));
    EXPECT_FALSE(network("0.0.0.0/1").contains(network("203.0.113.0/24")));
    EXPECT_TRUE(network("0.0.0.0/0").contains(network("203.0.113.0/24")));
    EXPECT_FALSE(network("203.0.113.0/24").contains(network("203.0.113.0/23")));
    EXPECT_TRUE(network("203.0.113.0/24").contains(network("203.0.113.0/24")));
    EXPECT_TRUE(network("192.168.77.128/25").contains(network("192.168.77.200/32")));
    EXPECT_FALSE(network("192.168.77.128/25").contains(network("192.168.77.100/32")));
    EXPECT_FALSE(network("0.0.0.0/0").contains(network("::/0")));
    EXPECT_TRUE(network("fc00::/7").contains(network("fd00::/8")));
    EXPECT_EQ(textOf(network("fc00::/7")), "fc00::/7");
}

} // namespace quorvane::guard
