#include "core/ManagementParser.h"
#include "core/Grant.h"

#include <gtest/gtest.h>

#include <vector>

namespace quorvane::service {

namespace {

using Kind = ManagementEvent::Kind;

class ManagementParserTest : public testing::Test {
protected:
    std::vector<ManagementEvent> m_events;
    ManagementParser m_parser{[this](const ManagementEvent &event) {
        m_events.push_back(event);
    }};
};

constexpr std::string_view loginLines = ">CLIENT:CONNECT,7,2\r\n"
                                        ">CLIENT:ENV,n_clients=0\r\n"
                                        ">CLIENT:ENV,password=pa=ss,word\r\n"
                                        ">CLIENT:ENV,untrusted_ip=198.51.100.10\r\n"
                                        ">CLIENT:ENV,username=user1\r\n"
                                        ">CLIENT:ENV,END\r\n";

TEST_F(ManagementParserTest, ReadsALogin) {
    EXPECT_TRUE(m_parser.feed(loginLines));
    ASSERT_EQ(m_events.size(), 1U);
    EXPECT_EQ(m_events[0].kind, Kind::Connect);
    EXPECT_EQ(m_events[0].client, 7U);
    EXPECT_EQ(m_events[0].key, 2U);
    EXPECT_EQ(m_events[0].field("username"), "user1");
    EXPECT_EQ(m_events[0].field("password"), "pa=ss,word");
    EXPECT_EQ(m_events[0].field("untrusted_ip"), "198.51.100.10");
    EXPECT_EQ(m_events[0].field("n_clients"), "");
}

TEST_F(ManagementParserTest, ReadsTheGrantOfACertificate) {
    m_parser.feed(">CLIENT:CONNECT,7,2\n>CLIENT:ENV,X509_0_CN=user1\n>CLIENT:ENV,X509_0_O=203.0.113.5\n"
                  ">CLIENT:ENV,X509_0_OU=tcp\n>CLIENT:ENV,X509_0_serialNumber=1000\n"
                  ">CLIENT:ENV,X509_0_dnQualifier=2000\n>CLIENT:ENV,X509_1_CN=Sessions\n"
                  ">CLIENT:ENV,END\n");
    ASSERT_EQ(m_events.size(), 1U);
    EXPECT_EQ(m_events[0].fields.size(), 5U);
    const auto grant = grantOf([this](std::string_view name) { return m_events[0].field(name); });
    ASSERT_TRUE(grant);
    EXPECT_EQ(grant->user, "user1");
    EXPECT_EQ(grant->address.text(), "203.0.113.5");
}

TEST_F(ManagementParserTest, AcceptsAnyDivisionOfTheBytes) {
    for (const char byte : loginLines) {
        EXPECT_TRUE(m_parser.feed({&byte, 1}));
    }
    ASSERT_EQ(m_events.size(), 1U);
    EXPECT_EQ(m_events[0].field("username"), "user1");
}

TEST_F(ManagementParserTest, ReadsTheOtherNotifications) {
    m_parser.feed(">INFO:OpenVPN Management Interface Version 5 -- type 'help' for more info\r\n"
                  ">HOLD:Waiting for hold release:0\r\n"
                  "SUCCESS: hold release succeeded\r\n"
                  ">STATE:1700000000,CONNECTED,SUCCESS,10.8.0.1,,,,\r\n"
                  ">STATE:1700000001\r\n"
                  "ERROR: unknown command\r\n"
                  ">FATAL:Cannot bind\r\n"
                  ">CLIENT:ESTABLISHED,3\n>CLIENT:ENV,END\n"
                  ">CLIENT:DISCONNECT,3\n>CLIENT:ENV,END\n"
                  ">CLIENT:REAUTH,3,1\n>CLIENT:ENV,END\n");
    ASSERT_EQ(m_events.size(), 8U);
    EXPECT_EQ(m_events[0].kind, Kind::Hold);
    EXPECT_EQ(m_events[1].kind, Kind::State);
    EXPECT_EQ(m_events[1].text, "CONNECTED");
    EXPECT_EQ(m_events[2].text, "");
    EXPECT_EQ(m_events[3].kind, Kind::Error);
    EXPECT_EQ(m_events[3].text, " unknown command");
    EXPECT_EQ(m_events[4].kind, Kind::Fatal);
    EXPECT_EQ(m_events[5].kind, Kind::Established);
    EXPECT_EQ(m_events[6].kind, Kind::Disconnect);
    EXPECT_EQ(m_events[6].client, 3U);
    EXPECT_EQ(m_events[7].kind, Kind::Reauth);
    EXPECT_EQ(m_events[7].key, 1U);
}

TEST_F(ManagementParserTest, IgnoresUnknownLines) {
    EXPECT_TRUE(m_parser.feed("\n\r\n>\n>CLIENT\n>CLIENT:\n>CLIENT:ADDRESS,1,10.8.0.2,1\n>CLIENT:ENV,END\n"
                              ">CLIENT:CR_RESPONSE,1,2,abcd\n>CLIENT:ENV,username=x\n>CLIENT:ENV,END\n"
                              ">BYTECOUNT:1,2\nnonsense\n>CLIENT:ENV\n>CLIENT:ENV,\n"));
    EXPECT_TRUE(m_events.empty());
}

TEST_F(ManagementParserTest, AnAddressNotificationHasNoFields) {
    m_parser.feed(">CLIENT:ADDRESS,7,10.8.0.2,1\n");
    m_parser.feed(loginLines);
    EXPECT_EQ(m_events.size(), 1U);
}

TEST_F(ManagementParserTest, NumbersMustBeNumbers) {
    for (const std::string header : {"CONNECT,x,1", "CONNECT,1,", "CONNECT,1", "CONNECT,-1,1", "CONNECT, 1,1",
                                     "CONNECT,99999999999999999999,1", "DISCONNECT,", "DISCONNECT,1x"}) {
        m_parser.feed(">CLIENT:" + header + "\n>CLIENT:ENV,username=u\n>CLIENT:ENV,END\n");
    }
    EXPECT_TRUE(m_events.empty());
}

TEST_F(ManagementParserTest, AnUnfinishedNotificationIsDroppedByTheNext) {
    m_parser.feed(">CLIENT:CONNECT,1,1\n>CLIENT:ENV,username=first\n>CLIENT:ENV,password=p\n");
    m_parser.feed(">CLIENT:CONNECT,2,1\n>CLIENT:ENV,username=second\n>CLIENT:ENV,END\n>CLIENT:ENV,END\n");
    ASSERT_EQ(m_events.size(), 1U);
    EXPECT_EQ(m_events[0].client, 2U);
    EXPECT_EQ(m_events[0].field("username"), "second");
    EXPECT_EQ(m_events[0].field("password"), "");
}

TEST_F(ManagementParserTest, OtherNotificationsMayComeBetweenTheFields) {
    m_parser.feed(">CLIENT:CONNECT,1,1\n>CLIENT:ENV,username=u\n>STATE:1,CONNECTED\n>CLIENT:ENV,END\n");
    ASSERT_EQ(m_events.size(), 2U);
    EXPECT_EQ(m_events[0].kind, Kind::State);
    EXPECT_EQ(m_events[1].field("username"), "u");
}

TEST_F(ManagementParserTest, ATooLongLineEndsTheParsing) {
    EXPECT_TRUE(m_parser.feed(std::string(ManagementParser::maximumLineLength, 'x')));
    EXPECT_FALSE(m_parser.feed("x"));
    EXPECT_FALSE(m_parser.feed("\n>HOLD:\n"));
    EXPECT_TRUE(m_events.empty());
}

TEST_F(ManagementParserTest, TheLimitAppliesToOneLineNotToTheStream) {
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(m_parser.feed(std::string(ManagementParser::maximumLineLength, 'x') + '\n'));
    }
    EXPECT_TRUE(m_parser.feed(">HOLD:\n"));
    EXPECT_EQ(m_events.size(), 1U);
}

TEST_F(ManagementParserTest, BinaryBytesDoNoHarm) {
    std::string bytes;
    for (int i = 0; i < 100000; ++i) {
        bytes += static_cast<char>(i * 7919 >> 3);
        bytes += i % 50 == 0 ? "\n" : "";
    }
    EXPECT_TRUE(m_parser.feed(bytes));
    EXPECT_TRUE(m_parser.feed("\n>HOLD:\n"));
    EXPECT_EQ(m_events.size(), 1U);
}

} // namespace

} // namespace quorvane::service
