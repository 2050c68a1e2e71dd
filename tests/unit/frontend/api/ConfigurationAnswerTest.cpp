#include "frontend/api/ConfigurationAnswer.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

TEST(Certificate, MarkerLineAndFinalBreakReturnThreeLines) {
    EXPECT_EQ(ConfigurationAnswer::getCertificate(text("VPNConfig: client<br />remote 1.2.3.4 443<br />")),
              text("client\nremote 1.2.3.4 443\n"));
}

TEST(Certificate, NoTextOrNoMarkerReturnsNone) {
    EXPECT_TRUE(ConfigurationAnswer::getCertificate(QString()).isNull());
    EXPECT_TRUE(ConfigurationAnswer::getCertificate(text("")).isNull());
    EXPECT_TRUE(ConfigurationAnswer::getCertificate(text("VPNConfig:client")).isNull());
    EXPECT_TRUE(ConfigurationAnswer::getCertificate(text("vpnconfig: client")).isNull());
}

TEST(Certificate, NothingAfterTheMarkerIsAnEmptyConfiguration) {
    EXPECT_TRUE(sameText(ConfigurationAnswer::getCertificate(text("VPNConfig: ")), text("")));
}

TEST(Certificate, FirstMarkerCountsAndNothingIsTrimmed) {
    EXPECT_EQ(ConfigurationAnswer::getCertificate(text("x VPNConfig:  a <BR /><br>VPNConfig: b\n")),
              text(" a <BR /><br>VPNConfig: b\n"));
}

TEST(RemoteAddress, UpToTheNextBreak) {
    EXPECT_EQ(ConfigurationAnswer::getIPAdress(text("a<br />remote 1.2.3.4 443<br />b")),
              text("1.2.3.4 443"));
}

TEST(RemoteAddress, NeedsItsMarkerAndABreakBehindIt) {
    EXPECT_TRUE(ConfigurationAnswer::getIPAdress(text("a<br />remote 1.2.3.4 443")).isNull());
    EXPECT_TRUE(ConfigurationAnswer::getIPAdress(text("a<br />Remote 1.2.3.4<br />")).isNull());
    EXPECT_TRUE(ConfigurationAnswer::getIPAdress(QString()).isNull());
}

TEST(RemoteAddress, EmptyAddressIsNotNull) {
    EXPECT_TRUE(sameText(ConfigurationAnswer::getIPAdress(text("remote <br />")), text("")));
}

TEST(ArgumentError, ExactTextOnly) {
    EXPECT_TRUE(ConfigurationAnswer::isArgumentError(text("ERR: Argument parsing error")));
    EXPECT_FALSE(ConfigurationAnswer::isArgumentError(text("ERR: Argument parsing error\n")));
    EXPECT_FALSE(ConfigurationAnswer::isArgumentError(QString()));
}

} // namespace

} // namespace quorvane
