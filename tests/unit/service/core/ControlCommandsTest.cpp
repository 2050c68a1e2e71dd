#include "core/ControlCommands.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quorvane::service {

namespace {

using nlohmann::json;

class ControlCommandsTest : public testing::Test {
protected:
    json answerTo(const std::string &line) { return json::parse(m_commands.answer(line)); }

    AnnouncedRequests m_announced;
    ServiceStatus m_status;
    ControlCommands m_commands{m_announced, [this] {
                                   return m_status;
                               }};
};

TEST_F(ControlCommandsTest, AnnouncesAndReports) {
    EXPECT_EQ(answerTo(R"({"command":"announce","target":"/ip","count":2})"), json::parse(R"({"ok":true})"));
    EXPECT_EQ(answerTo(R"({"command":"announce","pattern":"/x\u00e9.*"})"), json::parse(R"({"ok":true})"));
    EXPECT_TRUE(m_announced.consume("/ip"));
    EXPECT_FALSE(m_announced.consume("/\xff"));
    EXPECT_EQ(answerTo(R"({"command":"report"})"),
              json::parse(R"({"ok":true,"unexpected":["/\u00ff"],"outstanding":[
                  {"target":"/ip","count":1},{"pattern":"/x\u00e9.*","count":1}]})"));
    EXPECT_EQ(answerTo(R"({"command":"clear"})").at("ok"), true);
    EXPECT_TRUE(answerTo(R"({"command":"report"})").at("outstanding").empty());
}

TEST_F(ControlCommandsTest, AnEmptyTargetCanBeAnnounced) {
    EXPECT_EQ(answerTo(R"({"command":"announce","target":""})").at("ok"), true);
    EXPECT_TRUE(m_announced.consume(""));
}

TEST_F(ControlCommandsTest, ReportsTheStatusOfTheServers) {
    m_status = {{{"udp", true, true, 3}, {"tcp", true, false, 0}}, 7};
    EXPECT_EQ(answerTo(R"({"command":"status"})"),
              json::parse(R"({"ok":true,"ready":false,"credentials":7,"servers":{
                  "udp":{"running":true,"ready":true,"clients":3},
                  "tcp":{"running":true,"ready":false,"clients":0}}})"));
    m_status.servers[1].ready = true;
    EXPECT_EQ(answerTo(R"({"command":"status"})").at("ready"), true);
}

TEST_F(ControlCommandsTest, AnswersAMalformedCommandWithAnError) {
    for (const std::string line : {"", "x", "[]", "{}", "\xff", R"({"command":1})", R"({"command":"other"})",
                                   R"({"command":"announce"})", R"({"command":"announce","pattern":"("})",
                                   R"({"command":"announce","target":"/","count":-1})",
                                   R"({"command":"announce","target":"/","cuont":1})",
                                   R"({"command":"announce","target":"/\u0000"})"}) {
        const json answer = answerTo(line);
        EXPECT_EQ(answer.at("ok"), false) << line;
        EXPECT_FALSE(answer.at("error").get<std::string>().empty());
    }
    EXPECT_FALSE(m_announced.consume("/"));
}

} // namespace

} // namespace quorvane::service
