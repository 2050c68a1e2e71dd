#include "core/AnnouncedRequests.h"
#include "core/AnnouncementJson.h"
#include "core/ControlCommands.h"
#include "core/RequestLog.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <fstream>

namespace quorvane::service {
namespace {

using nlohmann::json;

TEST(AnnouncedRequests, AnExactTargetCoversItsCount) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/ip", "", 2}));
    EXPECT_TRUE(announced.take("/ip"));
    EXPECT_FALSE(announced.take("/ip?"));
    EXPECT_TRUE(announced.take("/ip"));
    EXPECT_FALSE(announced.take("/ip"));
    EXPECT_EQ(announced.unexpected(), (std::vector<std::string>{"/ip?", "/ip"}));
}

TEST(AnnouncedRequests, AnExpressionMustMatchTheWholeTarget) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"", "/a[0-9]+|/b", 0}));
    EXPECT_TRUE(announced.take("/a12"));
    EXPECT_TRUE(announced.take("/b"));
    EXPECT_FALSE(announced.take("/a12x"));
    EXPECT_FALSE(announced.take("x/b"));
    EXPECT_FALSE(announced.take(""));
}

TEST(AnnouncedRequests, AnExactTargetIsNoExpression) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/?a=.*", "", 0}));
    EXPECT_TRUE(announced.take("/?a=.*"));
    EXPECT_FALSE(announced.take("/?a=b"));
}

TEST(AnnouncedRequests, TheNextAnnouncementTakesOver) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/ip", "", 1}));
    ASSERT_TRUE(announced.announce({"", "/.*", 1}));
    EXPECT_TRUE(announced.take("/ip"));
    EXPECT_TRUE(announced.take("/ip"));
    EXPECT_FALSE(announced.take("/ip"));
}

TEST(AnnouncedRequests, ReportsWhatIsOutstanding) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/a", "", 3}));
    ASSERT_TRUE(announced.announce({"", "/b.*", 0}));
    announced.take("/a");
    const auto outstanding = announced.outstanding();
    ASSERT_EQ(outstanding.size(), 1U);
    EXPECT_EQ(outstanding[0].target, "/a");
    EXPECT_EQ(outstanding[0].count, 2U);
    announced.clear();
    EXPECT_TRUE(announced.outstanding().empty());
    EXPECT_FALSE(announced.take("/b"));
}

TEST(AnnouncedRequests, AnUnreadableExpressionFails) {
    AnnouncedRequests announced;
    EXPECT_FALSE(announced.announce({"", "(", 1}));
    EXPECT_FALSE(announced.announce({"", "[", 1}));
    EXPECT_FALSE(announced.take("("));
}

TEST(AnnouncedRequests, AHugeTargetDoesNotExhaustAnything) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"", "/(a|b)*c", 1}));
    EXPECT_FALSE(announced.take('/' + std::string(200000, 'a')));
    EXPECT_TRUE(announced.take('/' + std::string(200000, 'a') + 'c'));
}

TEST(Latin1, ThereAndBack) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    EXPECT_EQ(utf8ToLatin1(latin1ToUtf8(bytes)), bytes);
    EXPECT_EQ(latin1ToUtf8("\xe9"), "\xc3\xa9");
    for (const std::string_view text : {"\xc4\x80", "\xc3", "\xc3x", "\xff", "\xe2\x82\xac"}) {
        EXPECT_EQ(utf8ToLatin1(text), std::nullopt);
    }
}

class ControlCommandsTest : public testing::Test {
protected:
    json ask(const std::string &line) { return json::parse(m_commands.answer(line)); }

    AnnouncedRequests m_announced;
    ServiceStatus m_status;
    ControlCommands m_commands{m_announced, [this] {
                                   return m_status;
                               }};
};

TEST_F(ControlCommandsTest, AnnouncesAndReports) {
    EXPECT_EQ(ask(R"({"command":"announce","target":"/ip","count":2})"), json::parse(R"({"ok":true})"));
    EXPECT_EQ(ask(R"({"command":"announce","pattern":"/x\u00e9.*"})"), json::parse(R"({"ok":true})"));
    EXPECT_TRUE(m_announced.take("/ip"));
    EXPECT_FALSE(m_announced.take("/\xff"));
    EXPECT_EQ(ask(R"({"command":"report"})"),
              json::parse(R"({"ok":true,"unexpected":["/\u00ff"],"outstanding":[
                  {"target":"/ip","count":1},{"pattern":"/x\u00e9.*","count":1}]})"));
    EXPECT_EQ(ask(R"({"command":"clear"})").at("ok"), true);
    EXPECT_TRUE(ask(R"({"command":"report"})").at("outstanding").empty());
}

TEST_F(ControlCommandsTest, AnEmptyTargetCanBeAnnounced) {
    EXPECT_EQ(ask(R"({"command":"announce","target":""})").at("ok"), true);
    EXPECT_TRUE(m_announced.take(""));
}

TEST_F(ControlCommandsTest, TellsTheServersStatus) {
    m_status = {{{"udp", true, true, 3}, {"tcp", true, false, 0}}, 7};
    EXPECT_EQ(ask(R"({"command":"status"})"),
              json::parse(R"({"ok":true,"ready":false,"credentials":7,"servers":{
                  "udp":{"running":true,"ready":true,"clients":3},
                  "tcp":{"running":true,"ready":false,"clients":0}}})"));
    m_status.servers[1].ready = true;
    EXPECT_EQ(ask(R"({"command":"status"})").at("ready"), true);
}

TEST_F(ControlCommandsTest, AnswersWhatItDoesNotUnderstandWithAnError) {
    for (const std::string line : {"", "x", "[]", "{}", "\xff", R"({"command":1})", R"({"command":"other"})",
                                   R"({"command":"announce"})", R"({"command":"announce","pattern":"("})",
                                   R"({"command":"announce","target":"/","count":-1})",
                                   R"({"command":"announce","target":"/","cuont":1})",
                                   R"({"command":"announce","target":"/\u0000"})"}) {
        const json answer = ask(line);
        EXPECT_EQ(answer.at("ok"), false) << line;
        EXPECT_FALSE(answer.at("error").get<std::string>().empty());
    }
    EXPECT_FALSE(m_announced.take("/"));
}

TEST(RequestLogLine, EscapesEveryByteSoThatItComesBack) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    const std::string text = jsonText(bytes);
    EXPECT_EQ(utf8ToLatin1(json::parse(text).get<std::string>()), bytes);
    EXPECT_EQ(text.find_first_not_of("\"\\ !#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[]^_`"
                                     "abcdefghijklmnopqrstuvwxyz{|}~"),
              std::string::npos);
    EXPECT_EQ(jsonText("a\"b\\c\n\x7f\xc3"), R"("a\"b\\c\u000a\u007f\u00c3")");
}

TEST(RequestLogLine, ByteForByte) {
    Traffic traffic;
    traffic.peer = "198.51.100.10";
    traffic.host = "api.quorvane.test";
    traffic.method = "GET";
    traffic.target = "/?a=1&&b=%2B";
    traffic.status = 200;
    traffic.bytes = 12;
    const std::chrono::system_clock::time_point time{std::chrono::milliseconds(1706745599123)};
    EXPECT_EQ(
        logLine(traffic, time, false),
        R"({"time":"2024-01-31T23:59:59.123Z","event":"request","peer":"198.51.100.10",)"
        R"("host":"api.quorvane.test","method":"GET","target":"/?a=1&&b=%2B","status":200,"bytes":12})");
    traffic.event = "bad_request";
    traffic.detail = "bad \"method\"";
    const json line = json::parse(logLine(traffic, time, true));
    EXPECT_EQ(line.at("detail"), "bad \"method\"");
    EXPECT_EQ(line.at("unexpected"), true);
}

TEST(RequestLogLine, TimesHaveMillisecondsWithLeadingZeros) {
    EXPECT_EQ(isoTime(std::chrono::system_clock::time_point(std::chrono::milliseconds(7))),
              "1970-01-01T00:00:00.007Z");
}

TEST(RequestLog, AppendsLinesAndMarksUnexpectedRequests) {
    const std::string path = testing::TempDir() + "service-requests.jsonl";
    std::ofstream(path) << "{\"old\":1}\n";
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/ip", "", 1}));
    RequestLog log(&announced, [] { return std::chrono::system_clock::time_point(); });
    ASSERT_TRUE(log.open(path));
    Traffic traffic;
    traffic.target = "/ip";
    log.record(traffic);
    log.record(traffic);
    traffic.event = "handshake_failed";
    log.record(traffic);
    std::ifstream file(path);
    std::vector<json> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(json::parse(line));
    }
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_FALSE(lines[1].contains("unexpected"));
    EXPECT_TRUE(lines[2].contains("unexpected"));
    EXPECT_FALSE(lines[3].contains("unexpected"));
    EXPECT_EQ(announced.unexpected().size(), 1U);
    std::remove(path.c_str());
}

TEST(RequestLog, SaysWhyItCannotBeOpened) {
    RequestLog log(nullptr, [] { return std::chrono::system_clock::time_point(); });
    const auto opened = log.open("/nonexistent/folder/log");
    ASSERT_FALSE(opened);
    EXPECT_NE(opened.error().find("request_log: cannot write /nonexistent/folder/log"), std::string::npos);
}

} // namespace
} // namespace quorvane::service
