#include "core/CallerLimits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

using std::chrono::seconds;
using testing::ElementsAre;

TEST(Caller, IsAnAddressOrANetworkOfIpv6) {
    EXPECT_EQ(Caller::of("198.51.100.10").text(), "198.51.100.10");
    EXPECT_EQ(Caller::of("::ffff:198.51.100.10"), Caller::of("198.51.100.10"));
    EXPECT_NE(Caller::of("198.51.100.10"), Caller::of("198.51.100.11"));
    EXPECT_EQ(Caller::of("2001:db8:0:1::1").text(), "2001:db8:0:1::/64");
    EXPECT_EQ(Caller::of("2001:db8:0:1:ffff::2"), Caller::of("2001:db8:0:1::1"));
    EXPECT_NE(Caller::of("2001:db8:0:2::1"), Caller::of("2001:db8:0:1::1"));
    EXPECT_EQ(Caller::of("fe80::1%eth0"), Caller::of("fe80::2%lo"));
    EXPECT_EQ(Caller::of("nonsense"), Caller::of(""));
}

class CallerLimitsTest : public testing::Test {
protected:
    CallerLimitsTest() {
        m_rates.requestsPerSecond = 2;
        m_rates.burstSeconds = 5;
        m_rates.connections = 2;
    }

    /// How many of so many requests are admitted.
    int admitted(CallerLimits &limits, const Caller &caller, int requests) {
        int count = 0;
        for (int i = 0; i < requests; ++i) {
            count += limits.admit(caller, Limit::Requests) ? 1 : 0;
        }
        return count;
    }

    CallerLimits made() {
        return {m_rates, [this] { return m_now; },
                [this](const Caller &caller, Limit limit, std::uint64_t count) {
                    m_reports.push_back(caller.text() + ' ' + std::string(limitName(limit)) + ' ' +
                                        std::to_string(count));
                }};
    }

    PerCallerLimits m_rates;
    std::chrono::steady_clock::time_point m_now;
    std::vector<std::string> m_reports;
    Caller m_one = Caller::of("198.51.100.10");
    Caller m_other = Caller::of("198.51.100.11");
};

TEST_F(CallerLimitsTest, ABurstThenTheRate) {
    CallerLimits limits = made();
    EXPECT_EQ(admitted(limits, m_one, 100), 10);
    EXPECT_EQ(admitted(limits, m_other, 100), 10) << "another caller has supplies of its own";
    m_now += seconds(1);
    EXPECT_EQ(admitted(limits, m_one, 100), 2);
    m_now += seconds(3600);
    EXPECT_EQ(admitted(limits, m_one, 100), 10);
    EXPECT_TRUE(limits.admit(m_one, Limit::Handshakes)) << "each limit has supplies of its own";
}

TEST_F(CallerLimitsTest, ZeroIsNoLimit) {
    m_rates.requestsPerSecond = 0;
    m_rates.connections = 0;
    CallerLimits limits = made();
    EXPECT_EQ(admitted(limits, m_one, 10000), 10000);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_TRUE(limits.open(m_one));
    }
    limits.close(m_one);
}

TEST_F(CallerLimitsTest, ConnectionsAtOnce) {
    CallerLimits limits = made();
    EXPECT_TRUE(limits.open(m_one));
    EXPECT_TRUE(limits.open(m_one));
    EXPECT_FALSE(limits.open(m_one));
    EXPECT_TRUE(limits.open(m_other));
    limits.close(m_one);
    EXPECT_TRUE(limits.open(m_one));
    EXPECT_EQ(limits.refused(Limit::OpenConnections), 1U);
}

TEST_F(CallerLimitsTest, ReportsARefusalAtOnceAndThenOnceAMinute) {
    CallerLimits limits = made();
    admitted(limits, m_one, 15);
    EXPECT_THAT(m_reports, ElementsAre("198.51.100.10 requests 1"));
    limits.reportOld();
    EXPECT_EQ(m_reports.size(), 1U);
    m_now += seconds(60);
    limits.reportOld();
    limits.reportOld();
    EXPECT_THAT(m_reports, ElementsAre("198.51.100.10 requests 1", "198.51.100.10 requests 4"));
    EXPECT_EQ(limits.refused(Limit::Requests), 5U);
}

TEST_F(CallerLimitsTest, ManyCallersReplaceEachOtherAndAreAllReported) {
    m_rates.requestsPerSecond = 1;
    m_rates.burstSeconds = 1;
    std::uint64_t reported = 0;
    CallerLimits counting{m_rates, [this] { return m_now; },
                          [&reported](const Caller &, Limit, std::uint64_t count) {
                              reported += count;
                          }};
    for (std::uint32_t i = 0; i < 200000; ++i) {
        const Caller caller = Caller::of("10." + std::to_string(i >> 16) + '.' +
                                         std::to_string(i >> 8 & 255) + '.' + std::to_string(i & 255));
        EXPECT_EQ(admitted(counting, caller, 3), 1);
    }
    m_now += seconds(60);
    counting.reportOld();
    EXPECT_EQ(reported, 400000U);
    EXPECT_EQ(counting.remembered(), 16384U) << "the places of the table";
}

} // namespace

} // namespace quorvane::service
