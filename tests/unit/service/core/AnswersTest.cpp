#include "core/Answers.h"
#include "SampleConfig.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

using test::sampleConfig;

TEST(Answers, TheServerListByteForByte) {
    EXPECT_EQ(serverListAnswer(sampleConfig(), sampleConfig().groups, "198.51.100.10", {"user1", "pass1"}),
              "STATUS: 0<br />ClientIP: 198.51.100.10<br />CC: AT<br />"
              "LOCATIONS: DE;BER;Germany Berlin;1|US;BOS;United States Boston;0<br />"
              "VPNUser: user1<br />VPNPass: pass1<br />"
              "Server: 1,Berlin,BER,DE,Germany,1|203.0.113.5,203.0.113.6<br />"
              "Server: 2,Boston,BOS,US,United States,0|203.0.113.42");
}

TEST(Answers, TheCountryComesFromTheHomeNetworkOrTheLentAddress) {
    const Config config = sampleConfig();
    EXPECT_EQ(config.countryOf("198.51.100.255"), "AT");
    EXPECT_EQ(config.countryOf("203.0.113.42"), "US");
    EXPECT_EQ(config.countryOf("192.0.2.1"), "XX");
    EXPECT_EQ(config.countryOf("::1"), "XX");
    EXPECT_EQ(config.countryOf(""), "XX");
}

TEST(Answers, TheStatusAnswer) {
    EXPECT_EQ(statusAnswer(0, "192.0.2.1"), "STATUS: 0<br />ClientIP: 192.0.2.1");
}

TEST(Answers, AConfigurationKeepsItsLines) {
    EXPECT_EQ(configurationAnswer("client\nremote 1.2.3.4 443\n"),
              "VPNConfig: client<br />remote 1.2.3.4 443<br />");
    EXPECT_EQ(configurationAnswer(""), "VPNConfig: ");
}

TEST(Answers, LinesAreJoinedWithoutALineFeed) {
    EXPECT_EQ(joinLines({}), "");
    EXPECT_EQ(joinLines({"a"}), "a");
    EXPECT_EQ(joinLines({"a", "b"}), "a<br />b");
}

TEST(Answers, PagesEscapeWhatTheyShow) {
    const std::string page = webPage("<i>&\"", "XX");
    EXPECT_EQ(page.find("<i>"), std::string::npos);
    EXPECT_NE(page.find("&lt;i&gt;&amp;&quot;"), std::string::npos);
    EXPECT_NE(page.find("unknown"), std::string::npos);
    EXPECT_NE(errorPage(404, "Not Found", "a<b").find("a&lt;b"), std::string::npos);
}

} // namespace

} // namespace quorvane::service
