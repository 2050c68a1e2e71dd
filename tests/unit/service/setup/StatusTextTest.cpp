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

TEST(StatusText, LeavesOutWhatIsNotThere) {
    EXPECT_EQ(statusText(json::parse(R"({"ok":true,"ready":true})"), now), "service               ready\n");
}

} // namespace

} // namespace quorvane::service
