#include "core/RequestLog.h"
#include "core/AnnouncementJson.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <fstream>

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

TEST(RequestLog, ReportsWhyItCannotBeOpened) {
    RequestLog log(nullptr, [] { return std::chrono::system_clock::time_point(); });
    const auto opened = log.open("/nonexistent/folder/log");
    ASSERT_FALSE(opened);
    EXPECT_NE(opened.error().find("request_log: cannot write /nonexistent/folder/log"), std::string::npos);
}

} // namespace

} // namespace quorvane::service
