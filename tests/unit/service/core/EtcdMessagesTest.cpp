#include "core/EtcdMessages.h"
#include "core/Base64.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quorvane::service::etcd {

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char *header =
    R"("header":{"cluster_id":"1","member_id":"2","revision":"42","raft_term":"3"})";

std::string answer(const std::string &rest) {
    return std::string("{") + header + (rest.empty() ? "" : ",") + rest + '}';
}

std::string keyValue(const std::string &key, const std::string &value) {
    return R"({"key":")" + base64Of(key) +
           R"(","create_revision":"5","mod_revision":"7","version":"2","value":")" + base64Of(value) + "\"}";
}

TEST(EtcdMessages, ARangeEndsBehindThePrefix) {
    const json request = json::parse(rangeRequest("/q/"));
    EXPECT_EQ(request.at("key"), base64Of("/q/"));
    EXPECT_EQ(request.at("range_end"), base64Of("/q0"));
    EXPECT_EQ(json::parse(rangeRequest("a\xff\xff")).at("range_end"), base64Of("b"));
    EXPECT_EQ(json::parse(rangeRequest("\xff")).at("range_end"), base64Of(std::string(1, '\0')));
}

TEST(EtcdMessages, AsksForWhatComesAfterARevision) {
    EXPECT_EQ(json::parse(changesRequest("/q/", 41)).at("min_mod_revision"), "42");
    EXPECT_EQ(json::parse(watchRequest("/q/", 42)).at("create_request").at("start_revision"), "42");
}

TEST(EtcdMessages, WritesWithAndWithoutALease) {
    EXPECT_EQ(json::parse(putRequest("k", "v", 7)),
              json::parse(R"({"key":"aw==","value":"dg==","lease":"7"})"));
    EXPECT_FALSE(json::parse(putRequest("k", "v", 0)).contains("lease"));
    EXPECT_EQ(json::parse(leaseRequest(3)), json::parse(R"({"TTL":"3"})"));
    EXPECT_EQ(json::parse(leaseNumber(9)), json::parse(R"({"ID":"9"})"));
}

TEST(EtcdMessages, AClaimWritesOnlyAKeyThatIsNotThere) {
    EXPECT_EQ(json::parse(claimRequest("k", "v")), json::parse(R"({
        "compare":[{"result":"EQUAL","target":"CREATE","key":"aw==","create_revision":"0"}],
        "success":[{"request_put":{"key":"aw==","value":"dg=="}}],
        "failure":[{"request_range":{"key":"aw=="}}]})"));
}

TEST(EtcdMessages, ADeletionNeedsTheValueAndAnAbsentKey) {
    EXPECT_EQ(json::parse(deletionRequest({"k"}, "v", "a")), json::parse(R"({
        "compare":[{"result":"EQUAL","target":"CREATE","key":"YQ==","create_revision":"0"},
                   {"result":"EQUAL","target":"VALUE","key":"aw==","value":"dg=="}],
        "success":[{"request_delete_range":{"key":"aw=="}}]})"));
    EXPECT_EQ(json::parse(deletionRequest({"k"}, "v", "")).at("compare").size(), 1U);
}

TEST(EtcdMessages, ReadsARange) {
    const auto read = parseRange(
        answer(R"("kvs":[)" + keyValue("/q/a", "1") + "," + keyValue("/q/b", "") + R"(],"count":"2")"));
    ASSERT_TRUE(read.ok()) << read.error();
    EXPECT_EQ(read.value().revision, 42);
    EXPECT_EQ(read.value().count, 2);
    EXPECT_THAT(read.value().entries, ElementsAre(Entry{"/q/a", "1", 7}, Entry{"/q/b", "", 7}));
    EXPECT_TRUE(parseRange(answer("")).value().entries.empty());
}

TEST(EtcdMessages, ReadsAWatch) {
    EXPECT_TRUE(parseWatch(R"({"result":)" + answer(R"("created":true)") + "}").value().created);
    const auto read = parseWatch(R"({"result":)" +
                                 answer(R"("events":[{"kv":)" + keyValue("a", "1") +
                                        R"(},{"type":"DELETE","kv":{"key":"Yg==","mod_revision":"8"}}])") +
                                 "}");
    ASSERT_TRUE(read.ok()) << read.error();
    EXPECT_EQ(read.value().revision, 42);
    EXPECT_FALSE(read.value().created);
    EXPECT_THAT(read.value().events, ElementsAre(Event{false, {"a", "1", 7}}, Event{true, {"b", "", 8}}));
    EXPECT_TRUE(parseWatch(R"({"result":)" + answer(R"("canceled":true,"compact_revision":"9")") + "}")
                    .value()
                    .cancelled);
}

TEST(EtcdMessages, ReadsLeasesAndTransactions) {
    EXPECT_EQ(parseLease(answer(R"("ID":"9","TTL":"3")")).value().id, 9);
    EXPECT_FALSE(parseLease(answer(R"("TTL":"3")")).ok());
    EXPECT_EQ(parseKeptLease(R"({"result":)" + answer(R"("ID":"9","TTL":"3")") + "}").value().seconds, 3);
    EXPECT_EQ(parseKeptLease(R"({"result":)" + answer(R"("ID":"9")") + "}").value().seconds, 0);
    EXPECT_TRUE(
        parseTransaction(answer(R"("succeeded":true,"responses":[{"response_put":{}}])")).value().succeeded);
    const auto lost = parseTransaction(
        answer(R"("responses":[{"response_range":{"kvs":[)" + keyValue("k", "gw2") + "]}}]"));
    EXPECT_FALSE(lost.value().succeeded);
    EXPECT_EQ(lost.value().found, (Entry{"k", "gw2", 7}));
    EXPECT_TRUE(parseDone(answer("")).ok());
}

TEST(EtcdMessages, ReportsErrorsAsShortPrintableTexts) {
    EXPECT_EQ(parseDone(R"({"error":"etcdserver: no leader","code":14})").error(), "etcdserver: no leader");
    EXPECT_EQ(parseWatch(R"({"error":{"grpc_code":1,"message":"a\nb"}})").error(), "a?b");
    EXPECT_EQ(parseDone(R"({"error":")" + std::string(1000, 'x') + "\"}").error(), std::string(200, 'x'));
    EXPECT_EQ(parseDone(R"({"error":5})").error(), "an error without a text");
}

TEST(EtcdMessages, RefusesWhatIsMalformed) {
    for (const std::string &bad :
         {std::string(),
          std::string("{"),
          std::string("[]"),
          std::string("{}"),
          std::string("7"),
          std::string(R"({"header":{"revision":"x"}})"),
          std::string(R"({"header":{"revision":"-1"}})"),
          std::string(R"({"header":{"revision":-1}})"),
          std::string(R"({"header":{"revision":1.5}})"),
          std::string(R"({"header":{"revision":"9223372036854775808"}})"),
          std::string(R"({"header":{"revision":9223372036854775808}})"),
          std::string(R"({"header":[]})"),
          answer(R"("kvs":{})"),
          answer(R"("kvs":[1])"),
          answer(R"("kvs":[{}])"),
          answer(R"("kvs":[{"key":"Zg"}])"),
          answer(R"("kvs":[{"key":1}])"),
          answer(R"("count":true)"),
          answer(R"("kvs":[{"key":")" + base64Of(std::string(maximumKey + 1, 'k')) + "\"}]"),
          answer(R"("kvs":[)" + keyValue("k", std::string(maximumValue + 1, 'v')) + "]")}) {
        EXPECT_FALSE(parseRange(bad).ok()) << bad.substr(0, 100);
    }
    for (const std::string &bad :
         {std::string("{}"), answer(""), R"({"result":)" + answer(R"("events":[1])") + "}",
          R"({"result":)" + answer(R"("events":[{"type":"PUT"}])") + "}",
          R"({"result":)" + answer(R"("events":[{"type":"MOVE","kv":{"key":"Yg=="}}])") + "}",
          R"({"result":)" + answer(R"("canceled":1)") + "}"}) {
        EXPECT_FALSE(parseWatch(bad).ok()) << bad;
    }
    EXPECT_THAT(parseRange(std::string(maximumAnswer + 1, ' ')).error(), HasSubstr("too long"));
}

TEST(EtcdMessages, DeepNestingIsRefused) {
    EXPECT_FALSE(parseRange(std::string(1 << 20, '[')).ok());
    EXPECT_FALSE(parseRange(std::string(1 << 20, '[') + std::string(1 << 20, ']')).ok());
}

} // namespace

} // namespace quorvane::service::etcd
