#include "setup/RoleAnswers.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

using nlohmann::json;

json api() {
    return json::parse(
        R"({"ok":true,"ready":true,"credentials":0,"draining":false,"revocations":2,"confined":true,
        "servers":{},"lends":{"now":0,"all":0,"failed":0},"refused":{"requests":5},
        "certificates":{"tls.certificate":100},"etcd":{"node":"first","since":7}})");
}

json gateway() {
    return json::parse(
        R"({"ok":true,"ready":true,"credentials":3,"draining":true,"revocations":1,"confined":false,
        "servers":{"udp":{"ready":true}},"lends":{"now":1,"all":9,"failed":2},"refused":{"requests":0},
        "certificates":{"vpn.certificate":200},"etcd":{"node":"second","since":8}})");
}

TEST(RoleAnswers, AreThoseOfOneServiceTogether) {
    EXPECT_EQ(mergedStatus({{"api", api()}, {"gateway", gateway()}}, {}),
              json::parse(R"({"ok":true,"ready":true,
        "credentials":3,"draining":true,"revocations":2,"confined":true,"servers":{"udp":{"ready":true}},
        "lends":{"now":1,"all":9,"failed":2},"refused":{"requests":5},
        "certificates":{"tls.certificate":100,"vpn.certificate":200},"etcd":{"node":"first","since":7}})"));
}

TEST(RoleAnswers, OneThatIsNotReadyMakesTheServiceNotReady) {
    json starting = gateway();
    starting["ready"] = false;
    EXPECT_EQ(mergedStatus({{"api", api()}, {"gateway", starting}}, {}).at("ready"), false);
    EXPECT_EQ(mergedStatus({{"api", starting}, {"gateway", api()}}, {}).at("ready"), false);
}

TEST(RoleAnswers, OneThatDoesNotRunIsNamed) {
    const json status = mergedStatus({{"api", api()}}, {"gateway"});
    EXPECT_EQ(status.at("ready"), false);
    EXPECT_EQ(status.at("not_running"), json::array({"gateway"}));
}

TEST(RoleAnswers, ASingleProcessReportsForItself) {
    EXPECT_EQ(mergedStatus({{"", api()}}, {}), api());
}

} // namespace

} // namespace quorvane::service
