#include "guard/LockOpenings.h"

#include "FakeNft.h"

#include <gtest/gtest.h>

namespace quorvane::guard {

namespace {

std::set<Endpoint> endpointsOfText(const std::string &text) {
    const auto directives = parse(text);
    return directives ? endpointsOf(directives.value()) : std::set<Endpoint>();
}

const std::string flushes = "flush set inet quorvane_lock tunnels; flush set inet quorvane_lock servers; ";

} // namespace

TEST(LockEndpoints, PortAndProtocolComeFromTheLine) {
    EXPECT_EQ(endpointsOfText("remote 192.0.2.1 443 tcp-client\n"),
              (std::set<Endpoint>{{"192.0.2.1", "tcp", 443}}));
    EXPECT_EQ(endpointsOfText("remote 192.0.2.1 53 udp4\nproto tcp\nport 7\n"),
              (std::set<Endpoint>{{"192.0.2.1", "udp", 53}}));
}

TEST(LockEndpoints, AreOpenVpnsOwnWithoutAnyOther) {
    EXPECT_EQ(endpointsOfText("remote 192.0.2.1\n"), (std::set<Endpoint>{{"192.0.2.1", "udp", 1194}}));
}

TEST(LockEndpoints, AreTheSettingsOfTheConfigurationWhereTheLineHasNone) {
    EXPECT_EQ(endpointsOfText("remote 192.0.2.1\nproto tcp4\nrport 8443\n"),
              (std::set<Endpoint>{{"192.0.2.1", "tcp", 8443}}));
    EXPECT_EQ(endpointsOfText("remote 192.0.2.1 99\nport 8\nproto udp\n"),
              (std::set<Endpoint>{{"192.0.2.1", "udp", 99}}));
}

TEST(LockEndpoints, BlocksAreRead) {
    EXPECT_EQ(endpointsOfText("<connection>\nremote 192.0.2.1 1\nproto tcp\n</connection>\n"
                              "<connection>\nremote 192.0.2.2 2 udp\n</connection>\n"),
              (std::set<Endpoint>{{"192.0.2.1", "tcp", 1}, {"192.0.2.2", "udp", 2}}));
}

TEST(LockEndpoints, NamesAndIpv6AreLeftOut) {
    EXPECT_TRUE(endpointsOfText("remote vpn.example.com 1\nremote 2001:db8::1 1\n").empty());
}

TEST(LockOpenings, WithoutAClosedLockNothingIsRun) {
    const FakeNft nft;
    const LockOpenings openings(FakeNft::note(), FakeNft::program());
    EXPECT_TRUE(openings.openForServers({{"192.0.2.1", "udp", 1}}));
    EXPECT_TRUE(openings.openForDevice(4));
    openings.close();
    EXPECT_TRUE(FakeNft::calls().empty());
}

TEST(LockOpenings, ServersReplaceWhatAnotherSessionHasLeft) {
    const FakeNft nft;
    FakeNft::closeLock();
    const LockOpenings openings(FakeNft::note(), FakeNft::program());
    EXPECT_TRUE(openings.openForServers({{"192.0.2.1", "udp", 1}, {"192.0.2.2", "tcp", 443}}));
    EXPECT_TRUE(openings.openForServers({}));
    EXPECT_EQ(FakeNft::calls(),
              (std::vector<std::string>{flushes + "add element inet quorvane_lock servers "
                                                  "{ 192.0.2.1 . udp . 1, 192.0.2.2 . tcp . 443 }; ",
                                        flushes}));
}

TEST(LockOpenings, DeviceReplacesAnEarlierOne) {
    const FakeNft nft;
    FakeNft::closeLock();
    EXPECT_TRUE(LockOpenings(FakeNft::note(), FakeNft::program()).openForDevice(12));
    EXPECT_EQ(FakeNft::calls(),
              (std::vector<std::string>{"flush set inet quorvane_lock tunnels; "
                                        "add element inet quorvane_lock tunnels { 12 }; "}));
}

TEST(LockOpenings, FailuresAreReported) {
    const FakeNft nft;
    FakeNft::closeLock();
    const auto missing = LockOpenings(FakeNft::note(), "/nonexistent/nft").openForDevice(1);
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(), "the network lock cannot be opened: No such file or directory");
    FakeNft::refuse();
    const auto refused = LockOpenings(FakeNft::note(), FakeNft::program()).openForServers({});
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error(), "the network lock cannot be opened");
}

} // namespace quorvane::guard
