#include "core/ControlCommands.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quorvane::service {

namespace {

using nlohmann::json;

class ControlCommandsTest : public testing::Test {
protected:
    json answerTo(const std::string &line) { return json::parse(m_commands.answer(line)); }

    Result<> ordered(const std::string &order) {
        m_orders.push_back(order);
        return m_failure.empty() ? Result<>() : Failure{m_failure};
    }

    Result<std::size_t> ended(const std::string &order) {
        const auto done = ordered(order);
        return done ? Result<std::size_t>(3) : Failure{done.error()};
    }

    AnnouncedRequests m_announced;
    ServiceStatus m_status;
    std::vector<std::string> m_orders;
    std::string m_failure; ///< of every order; empty: none
    ControlCommands m_commands{m_announced,
                               [this] { return m_status; },
                               {[this](bool on) { return ordered(on ? "drain" : "drain no more"); },
                                [this](const std::string &user) { return ended("user " + user); },
                                [this](Ipv4Address address) {
                                    return ended("address " + address.text());
                                }}};
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
    m_status = {{{"udp", true, true, 3, {{"unknown user", 4}}}, {"tcp", true, false, 0}}, 7,   true, 2,
                {9, 1, 3, {{"requests", 5}}, {{"tls.certificate", 1800000000}}},          true};
    EXPECT_EQ(answerTo(R"({"command":"status"})"),
              json::parse(
                  R"({"ok":true,"ready":false,"credentials":7,"draining":true,"revocations":2,"confined":true,
                  "servers":{
                  "udp":{"running":true,"ready":true,"clients":3,"refused_logins":{"unknown user":4}},
                  "tcp":{"running":true,"ready":false,"clients":0,"refused_logins":{}}},
                  "lends":{"now":3,"all":9,"failed":1},"refused":{"requests":5},
                  "certificates":{"tls.certificate":1800000000}})"));
    m_status.servers[1].ready = true;
    EXPECT_EQ(answerTo(R"({"command":"status"})").at("ready"), true);
}

TEST_F(ControlCommandsTest, PassesTheOperatorsOrdersOn) {
    EXPECT_EQ(answerTo(R"({"command":"drain"})"), json::parse(R"({"ok":true})"));
    EXPECT_EQ(answerTo(R"({"command":"drain","on":false})"), json::parse(R"({"ok":true})"));
    const auto ended = json::parse(R"({"ok":true,"ended":3})");
    EXPECT_EQ(answerTo(R"({"command":"revoke","user":"user1"})"), ended);
    EXPECT_EQ(answerTo(R"({"command":"revoke","address":"203.0.113.5"})"), ended);
    EXPECT_EQ(m_orders,
              (std::vector<std::string>{"drain", "drain no more", "user user1", "address 203.0.113.5"}));
    m_failure = "the disk is full";
    for (const std::string line : {R"({"command":"drain"})", R"({"command":"revoke","user":"user1"})",
                                   R"({"command":"revoke","address":"203.0.113.5"})"}) {
        EXPECT_EQ(answerTo(line), json::parse(R"({"ok":false,"error":"the disk is full"})"));
    }
}

TEST_F(ControlCommandsTest, MalformedOrdersAreNotPassedOn) {
    for (const std::string line :
         {R"({"command":"drain","on":1})", R"({"command":"drain","off":true})", R"({"command":"revoke"})",
          R"({"command":"revoke","user":"u","address":"203.0.113.5"})", R"({"command":"revoke","user":""})",
          R"({"command":"revoke","address":"host"})", R"({"command":"revoke","user":"u","x":1})"}) {
        EXPECT_EQ(answerTo(line).at("ok"), false) << line;
    }
    EXPECT_TRUE(m_orders.empty());
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
