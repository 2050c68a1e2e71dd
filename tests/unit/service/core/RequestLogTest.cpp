#include "core/RequestLog.h"
#include "core/AnnouncementJson.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <fstream>
#include <limits>

namespace quorvane::service {

namespace {

using nlohmann::json;

TEST(RequestLogLine, EscapesEveryByteReversibly) {
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
    RequestLogEntry entry;
    entry.peer = "198.51.100.10";
    entry.host = "api.quorvane.test";
    entry.method = "GET";
    entry.target = "/?a=1&&b=%2B";
    entry.status = 200;
    entry.bytes = 12;
    const std::chrono::system_clock::time_point time{std::chrono::milliseconds(1706745599123)};
    EXPECT_EQ(
        logLine(entry, time, false),
        R"({"time":"2024-01-31T23:59:59.123Z","event":"request","peer":"198.51.100.10",)"
        R"("host":"api.quorvane.test","method":"GET","target":"/?a=1&&b=%2B","status":200,"bytes":12})");
    entry.event = "bad_request";
    entry.detail = "bad \"method\"";
    const json line = json::parse(logLine(entry, time, true));
    EXPECT_EQ(line.at("detail"), "bad \"method\"");
    EXPECT_EQ(line.at("unexpected"), true);
}

TEST(RequestLogLine, IsNeverLongerThanALineMayBe) {
    RequestLogEntry entry;
    entry.event = "handshake_failed";
    entry.peer = "2001:0db8:ffff:ffff:ffff:ffff:ffff:ffff";
    entry.host = entry.method = entry.detail = std::string(20000, '\xff');
    entry.target = std::string(16000, '"');
    entry.status = 431;
    entry.bytes = entry.count = std::numeric_limits<std::size_t>::max();
    const std::string text = logLine(entry, std::chrono::system_clock::now(), true) + '\n';
    EXPECT_LE(text.size(), LogFile::maximumLine);
    const json line = json::parse(text);
    EXPECT_EQ(line.at("cut"), true);
    EXPECT_EQ(line.at("target_bytes"), 16000);
    EXPECT_EQ(line.at("target").get<std::string>(), std::string(600, '"'));
}

TEST(RequestLogLine, ACutNeverDividesAnEscapeSequence) {
    EXPECT_EQ(jsonText("\xff\xff", 11), R"("\u00ff")");
    EXPECT_EQ(jsonText("a\\", 2), R"("a")");
    EXPECT_EQ(jsonText("a\\", 3), R"("a\\")");
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
    const LogLimits limits;
    RequestLog log(limits, &announced, [] { return std::chrono::system_clock::time_point(); });
    ASSERT_TRUE(log.open(path));
    RequestLogEntry entry;
    entry.target = "/ip";
    log.record(entry);
    log.record(entry);
    entry.event = "handshake_failed";
    log.record(entry);
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

TEST(RequestLog, ReportsHowManyLinesWereLeftOut) {
    const std::string path = testing::TempDir() + "service-left-out.jsonl";
    std::chrono::steady_clock::time_point now;
    LogLimits limits;
    limits.bytesPerSecond = 4096;
    RequestLog log(
        limits, nullptr, [] { return std::chrono::system_clock::time_point(); }, [&now] { return now; });
    ASSERT_TRUE(log.open(path));
    RequestLogEntry entry;
    entry.target = std::string(1000, 'x');
    for (int i = 0; i < 100; ++i) {
        log.record(entry);
    }
    now += std::chrono::seconds(1);
    log.record(entry);
    std::ifstream file(path);
    std::vector<json> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(json::parse(line));
    }
    ASSERT_GE(lines.size(), 3U);
    EXPECT_LE(lines.size(), 18U) << "16 KiB and the lines of a second";
    const json &report = lines[lines.size() - 2];
    EXPECT_EQ(report.at("event"), "left_out");
    EXPECT_EQ(report.at("count"), 100 - (lines.size() - 2));
    EXPECT_EQ(lines.back().at("event"), "request");
    std::remove(path.c_str());
}

TEST(RequestLog, ReportsWhyItCannotBeOpened) {
    const LogLimits limits;
    RequestLog log(limits, nullptr, [] { return std::chrono::system_clock::time_point(); });
    const auto opened = log.open("/nonexistent/folder/log");
    ASSERT_FALSE(opened);
    EXPECT_NE(opened.error().find("request_log: cannot write /nonexistent/folder/log"), std::string::npos);
}

} // namespace

} // namespace quorvane::service
