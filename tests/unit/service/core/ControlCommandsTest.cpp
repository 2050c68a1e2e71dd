#include "core/ControlCommands.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quorvane::service {

namespace {

using nlohmann::json;

class ControlCommandsTest : public testing::Test {
protected:
    json answerTo(const std::string &line) {
        std::vector<std::string> answers;
        m_commands.answer(line, [&answers](const std::string &answer) { answers.push_back(answer); });
        EXPECT_EQ(answers.size(), 1U);
        return json::parse(answers.at(0));
    }

    void released(const std::string &gateway, const OperatorOrders::Released &done) {
        done(ended("release " + gateway));
    }

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
    bool m_unshared = false;
    std::string m_failure; ///< of every order; empty: none
    ControlCommands m_commands{m_announced,
                               [this] { return m_status; },
                               {[this] { m_orders.emplace_back("reload"); },
                                [this](bool on) { return ordered(on ? "drain" : "drain no more"); },
                                [this](const std::string &user) { return ended("user " + user); },
                                [this](Ipv4Address address) { return ended("address " + address.text()); },
                                [this](const std::string &gateway, const OperatorOrders::Released &done) {
                                    released(gateway, done);
                                },
                                [this] {
                                    return m_unshared;
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
    EXPECT_EQ(answerTo(R"({"command":"reload"})"), json::parse(R"({"ok":true})"));
    EXPECT_EQ(answerTo(R"({"command":"drain"})"), json::parse(R"({"ok":true})"));
    EXPECT_EQ(answerTo(R"({"command":"drain","on":false})"), json::parse(R"({"ok":true})"));
    const auto ended = json::parse(R"({"ok":true,"ended":3})");
    EXPECT_EQ(answerTo(R"({"command":"revoke","user":"user1"})"), ended);
    EXPECT_EQ(answerTo(R"({"command":"revoke","address":"203.0.113.5"})"), ended);
    EXPECT_EQ(m_orders, (std::vector<std::string>{"reload", "drain", "drain no more", "user user1",
                                                  "address 203.0.113.5"}));
    m_failure = "the disk is full";
    for (const std::string line : {R"({"command":"drain"})", R"({"command":"revoke","user":"user1"})",
                                   R"({"command":"revoke","address":"203.0.113.5"})"}) {
        EXPECT_EQ(answerTo(line), json::parse(R"({"ok":false,"error":"the disk is full"})"));
    }
}

TEST_F(ControlCommandsTest, ReportsOrdersThatAreNotSharedYet) {
    m_unshared = true;
    EXPECT_EQ(answerTo(R"({"command":"drain"})"), json::parse(R"({"ok":true,"shared":"not yet"})"));
    EXPECT_EQ(answerTo(R"({"command":"revoke","user":"user1"})"),
              json::parse(R"({"ok":true,"ended":3,"shared":"not yet"})"));
}

TEST_F(ControlCommandsTest, PassesTheReleaseOfAGatewayOn) {
    EXPECT_EQ(answerTo(R"({"command":"release","gateway":"gw1"})"),
              json::parse(R"({"ok":true,"released":3})"));
    m_failure = "it is registered";
    EXPECT_EQ(answerTo(R"({"command":"release","gateway":"gw1"})"),
              json::parse(R"({"ok":false,"error":"it is registered"})"));
    EXPECT_EQ(m_orders, (std::vector<std::string>{"release gw1", "release gw1"}));
    EXPECT_EQ(answerTo(R"({"command":"release"})").at("ok"), false);
}

TEST_F(ControlCommandsTest, ReportsWhatIsKnownOfOtherNodes) {
    SharedStatus shared;
    shared.node = "api1";
    shared.connected = true;
    shared.endpoint = "10.0.0.1:2379";
    shared.since = std::chrono::sys_seconds(std::chrono::seconds(1000));
    shared.gateways["gw1"] = {{*Ipv4Address::parse("203.0.113.5")}, true, shared.since, "a"};
    shared.pendingOrders = 2;
    shared.ownedByOthers[*Ipv4Address::parse("203.0.113.6")] = "gw2";
    m_status.shared = shared;
    EXPECT_EQ(answerTo(R"({"command":"status"})").at("etcd"),
              json::parse(R"({"node":"api1","connected":true,"endpoint":"10.0.0.1:2379","since":1000,
                  "gateways":{"gw1":{"addresses":["203.0.113.5"],"draining":true,"since":1000}},
                  "pending_orders":2,"owned_by_others":{"203.0.113.6":"gw2"},"replaced":false})"));
    m_status.shared->connected = false;
    m_status.shared->problem = "connection refused";
    const json etcd = answerTo(R"({"command":"status"})").at("etcd");
    EXPECT_EQ(etcd.at("problem"), "connection refused");
    EXPECT_FALSE(etcd.contains("endpoint"));
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
