#include "setup/StatusText.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

using nlohmann::json;

const auto now = std::chrono::system_clock::from_time_t(1800000000);

TEST(StatusText, ShowsTheFacts) {
    const json status = json::parse(R"({"ok":true,"ready":false,"draining":true,"servers":{
        "tcp":{"running":true,"ready":false,"clients":0,"refused_logins":{}},
        "udp":{"running":true,"ready":true,"clients":3,"refused_logins":{"unknown user":4}},
        "x":{"running":false,"ready":false,"clients":0}},
        "lends":{"now":3,"all":9,"failed":1},"refused":{"requests":5,"connections":0},
        "certificates":{"tls.certificate":1800864000,"vpn.ca":1799999999}})");
    EXPECT_EQ(statusText(status, now), "service               runs and is not ready\n"
                                       "                      drained: no new sessions\n"
                                       "server tcp            starting, 0 sessions\n"
                                       "server udp            ready, 3 sessions\n"
                                       "server x              not running, 0 sessions\n"
                                       "lends                 3 now, 9 since the start, 1 failed\n"
                                       "refused requests      requests 5\n"
                                       "refused logins tcp    none\n"
                                       "refused logins udp    unknown user 4\n"
                                       "tls.certificate       until 2027-01-25, 10 days left\n"
                                       "vpn.ca                until 2027-01-15, EXPIRED\n");
}

TEST(StatusText, ShowsWhatIsKnownOfOtherNodes) {
    json status = json::parse(R"({"ok":true,"ready":true,"etcd":{"node":"gw1","connected":true,
        "endpoint":"10.0.0.1:2379","since":1800000000,"pending_orders":0,"replaced":false,
        "gateways":{"gw1":{"addresses":["203.0.113.5"],"draining":false,"since":1800000000},
                    "gw2":{"addresses":[],"draining":true,"since":1800000000}},
        "owned_by_others":{"203.0.113.6":"gw2"}}})");
    EXPECT_EQ(statusText(status, now),
              "service               ready\n"
              "etcd                  connected to 10.0.0.1:2379 since 2027-01-15 08:00:00 UTC\n"
              "node                  gw1\n"
              "gateway gw1           1 addresses, since 2027-01-15 08:00:00 UTC\n"
              "gateway gw2           0 addresses, since 2027-01-15 08:00:00 UTC, drained\n"
              "orders                0 not yet shared\n"
              "203.0.113.6           NOT lent here: owned by gateway gw2\n");
    status["etcd"] = json::parse(R"({"node":"gw1","connected":false,"problem":"no answer in time",
        "since":1800000000,"pending_orders":2,"replaced":true})");
    EXPECT_EQ(statusText(status, now),
              "service               ready\n"
              "etcd                  NOT connected since 2027-01-15 08:00:00 UTC: no answer in time\n"
              "node                  gw1\n"
              "orders                2 not yet shared\n"
              "                      ANOTHER gateway has this one's name: nothing is lent here\n");
}

TEST(StatusText, LeavesOutWhatIsNotThere) {
    EXPECT_EQ(statusText(json::parse(R"({"ok":true,"ready":true})"), now), "service               ready\n");
}

} // namespace

} // namespace quorvane::service
