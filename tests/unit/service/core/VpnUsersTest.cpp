#include "core/VpnUsers.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

using std::chrono::microseconds;
using std::chrono::seconds;

const Ipv4Address berlin = *Ipv4Address::parse("203.0.113.5");

class VpnUsersTest : public testing::Test {
protected:
    Clock m_clock = [this] {
        return m_now;
    };
    std::chrono::system_clock::time_point m_now{seconds(1000)};
    UserTokens m_tokens{{UserTokens::Key{1}}};
    VpnUsers m_users{m_tokens, seconds(100), seconds(10), m_clock};
};

TEST_F(VpnUsersTest, IssuesDifferentUrlSafeCredentials) {
    const auto first = m_users.issue();
    const auto second = m_users.issue();
    EXPECT_NE(first.user, second.user);
    EXPECT_NE(first.password, second.password);
    for (const std::string &text : {first.user, first.password}) {
        EXPECT_GE(text.size(), 20U);
        EXPECT_EQ(text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
                  std::string::npos);
    }
}

TEST_F(VpnUsersTest, KnowsItsUsersUntilTheyExpire) {
    const auto credentials = m_users.issue();
    m_now += seconds(99);
    const auto found = m_users.find(credentials.user);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->password, credentials.password);
    m_now += seconds(1);
    EXPECT_FALSE(m_users.find(credentials.user));
    EXPECT_FALSE(m_users.grant(credentials.user, berlin, Protocol::Udp));
}

TEST_F(VpnUsersTest, KnowsNoOthers) {
    for (const char *user : {"unknown", ""}) {
        EXPECT_FALSE(m_users.find(user));
        EXPECT_FALSE(m_users.grant(user, berlin, Protocol::Udp));
    }
}

TEST_F(VpnUsersTest, KnowsTheUsersOfAnotherProcessWithTheSameKeys) {
    const auto credentials = m_users.issue();
    const UserTokens sameKeys({UserTokens::Key{1}});
    EXPECT_TRUE(VpnUsers(sameKeys, seconds(1), seconds(1), m_clock).find(credentials.user));
    const UserTokens otherKeys({UserTokens::Key{2}});
    EXPECT_FALSE(VpnUsers(otherKeys, seconds(1), seconds(1), m_clock).find(credentials.user));
}

TEST_F(VpnUsersTest, GrantsForALimitedTime) {
    const auto credentials = m_users.issue();
    const Grant::TimePoint now{seconds(1000)};
    EXPECT_EQ(m_users.grant(credentials.user, berlin, Protocol::Tcp),
              (Grant{credentials.user, berlin, Protocol::Tcp, now, now + seconds(10)}));
    m_now += seconds(95);
    EXPECT_EQ(m_users.grant(credentials.user, berlin, Protocol::Tcp)->limit, now + seconds(100))
        << "not beyond the life of the user";
}

TEST_F(VpnUsersTest, ALaterGrantHasALaterTime) {
    const auto credentials = m_users.issue();
    const auto first = m_users.grant(credentials.user, berlin, Protocol::Udp);
    const auto second = m_users.grant(credentials.user, berlin, Protocol::Udp);
    m_now -= seconds(5);
    const auto third = m_users.grant(credentials.user, berlin, Protocol::Udp);
    EXPECT_EQ(second->issued, first->issued + microseconds(1));
    EXPECT_EQ(third->issued, second->issued + microseconds(1));
    EXPECT_EQ(third->limit, Grant::TimePoint(seconds(1005)));
}

} // namespace

} // namespace quorvane::service
