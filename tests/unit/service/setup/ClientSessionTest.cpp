#include "setup/ClientSession.h"
#include "setup/CheckNetwork.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

TEST(ClientSession, ReadsAServerList) {
    const auto list = readServerList("STATUS: 0<br />VPNUser: u<br />VPNPass: p<br />"
                                     "Server: 1,Berlin,BER,DE,Germany,0|203.0.113.4,203.0.113.50<br />"
                                     "Server: 2,Bonn,BON,DE,Germany,0|203.0.113.6");
    ASSERT_TRUE(list);
    EXPECT_EQ(list->user, "u");
    EXPECT_EQ(list->password, "p");
    for (const char *lent : {"203.0.113.4", "203.0.113.50", "203.0.113.6"}) {
        EXPECT_TRUE(list->lends(*Ipv4Address::parse(lent))) << lent;
    }
    EXPECT_FALSE(list->lends(*Ipv4Address::parse("203.0.113.5")));
    EXPECT_FALSE(readServerList("STATUS: 1<br />ClientIP: 192.0.2.1"));
    EXPECT_FALSE(readServerList(""));
    EXPECT_FALSE(readServerList("VPNUser: "));
}

TEST(ClientSession, ReadsAConfiguration) {
    EXPECT_EQ(readConfiguration("VPNConfig: client<br />dev tun<br />").value(), "client\ndev tun\n");
    EXPECT_EQ(readConfiguration("ERR: Address not available").error(),
              "the service answered: ERR: Address not available");
}

TEST(ClientSession, ItsNetworkOverlapsNothing) {
    EXPECT_EQ(freeLinkNetwork({})->text(), "10.250.250.0/30");
    EXPECT_EQ(freeLinkNetwork({*Ipv4Network::parse("10.250.250.2/32")})->text(), "10.250.250.4/30");
    EXPECT_EQ(freeLinkNetwork({*Ipv4Network::parse("10.0.0.0/8")})->text(), "172.30.250.0/30");
    EXPECT_EQ(freeLinkNetwork({*Ipv4Network::parse("0.0.0.0/0")}), std::nullopt);
}

} // namespace

} // namespace quorvane::service
