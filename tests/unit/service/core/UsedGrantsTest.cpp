#include "core/UsedGrants.h"
#include "core/OperatorState.h"

#include <gtest/gtest.h>

#include <vector>

namespace quorvane::service {

namespace {

using std::chrono::seconds;
using Refusal = UsedGrants::Refusal;

const Ipv4Address berlin = *Ipv4Address::parse("203.0.113.5");
const Ipv4Address boston = *Ipv4Address::parse("203.0.113.42");
const Ipv4Address foreign = *Ipv4Address::parse("203.0.113.99");
const std::string home = "198.51.100.10";

class UsedGrantsTest : public testing::Test {
protected:
    [[nodiscard]] Grant granted(const Credentials &credentials, Ipv4Address address) {
        return m_users.grant(credentials.user, address, Protocol::Udp).value();
    }

    Refusal login(const Credentials &credentials, const std::optional<Grant> &grant,
                  const std::string &source = home) {
        return m_grants.login({credentials.user, credentials.password, grant, Protocol::Udp, source}).refusal;
    }

    Clock m_clock = [this] {
        return m_now;
    };
    std::chrono::system_clock::time_point m_now{seconds(1000)};
    UserTokens m_tokens{{UserTokens::Key{1}}};
    bool m_draining = false;
    OperatorState m_state{m_clock};
    VpnUsers m_users{m_tokens, seconds(100), seconds(10), m_clock, &m_state};
    UsedGrants m_grants{m_users,
                        {[](Ipv4Address address) { return address != foreign; },
                         [this] {
                             return m_draining;
                         }},
                        m_clock,
                        3};
    Credentials m_user = m_users.issue();
};

TEST_F(UsedGrantsTest, AGrantAllowsALogin) {
    EXPECT_EQ(login(m_user, granted(m_user, berlin)), Refusal::None);
    EXPECT_EQ(m_grants.size(), 1U);
}

TEST_F(UsedGrantsTest, NothingIsRememberedOfARefusedLogin) {
    const Grant grant = granted(m_user, berlin);
    EXPECT_EQ(login({"unknown", "x"}, grant), Refusal::UnknownUser);
    EXPECT_EQ(login({"", ""}, grant), Refusal::UnknownUser);
    EXPECT_EQ(login(m_user, std::nullopt), Refusal::NoGrant);
    EXPECT_EQ(login(m_user, granted(m_user, foreign)), Refusal::ForeignAddress);
    EXPECT_EQ(login(m_user, granted(m_users.issue(), berlin)), Refusal::OtherUser);
    EXPECT_EQ(login(m_user, m_users.grant(m_user.user, berlin, Protocol::Tcp)), Refusal::OtherServer);
    EXPECT_EQ(m_grants.size(), 0U);
    EXPECT_EQ(login(m_user, grant), Refusal::None);
}

TEST_F(UsedGrantsTest, AWrongPasswordIsRefused) {
    const Grant grant = granted(m_user, berlin);
    for (const std::string &wrong : {std::string(), m_user.password + 'x', m_user.password.substr(1),
                                     std::string(m_user.password.size(), 'x')}) {
        EXPECT_EQ(login({m_user.user, wrong}, grant), Refusal::WrongPassword);
    }
    EXPECT_EQ(login(m_user, grant), Refusal::None);
}

TEST_F(UsedGrantsTest, TheFirstLoginMustComeSoon) {
    const Grant late = granted(m_user, berlin);
    m_now += seconds(10);
    EXPECT_EQ(login(m_user, late), Refusal::TooLate);
    const Grant fresh = granted(m_user, berlin);
    m_now += seconds(9);
    EXPECT_EQ(login(m_user, fresh), Refusal::None);
}

TEST_F(UsedGrantsTest, TheSameSourceMayLogInAgainUntilTheUserExpires) {
    const Grant grant = granted(m_user, berlin);
    login(m_user, grant);
    m_now += seconds(99); // long after the limit for the first login
    EXPECT_EQ(login(m_user, grant), Refusal::None);
    m_now += seconds(1);
    EXPECT_EQ(login(m_user, grant), Refusal::UnknownUser);
    EXPECT_EQ(m_grants.size(), 0U);
}

TEST_F(UsedGrantsTest, AnotherSourceMayNotUseAUsedGrant) {
    const Grant grant = granted(m_user, berlin);
    login(m_user, grant);
    for (const char *elsewhere : {"198.51.100.11", "198.51.100.1", "198.51.100.100", ""}) {
        EXPECT_EQ(login(m_user, grant, elsewhere), Refusal::UsedElsewhere);
    }
    EXPECT_EQ(login(m_user, grant), Refusal::None);
    EXPECT_EQ(login(m_user, granted(m_user, boston), "198.51.100.11"), Refusal::None);
}

TEST_F(UsedGrantsTest, AnUnknownSourceLogsInOnce) {
    const Grant grant = granted(m_user, berlin);
    EXPECT_EQ(login(m_user, grant, ""), Refusal::None);
    EXPECT_EQ(login(m_user, grant, ""), Refusal::UsedElsewhere);
}

TEST_F(UsedGrantsTest, EarlierGrantsEndWithTheUseOfALaterOne) {
    const Grant first = granted(m_user, berlin);
    const Grant second = granted(m_user, boston);
    const Grant third = granted(m_user, berlin);
    EXPECT_EQ(login(m_user, first), Refusal::None) << "no later one was used yet";
    EXPECT_EQ(login(m_user, third), Refusal::None);
    EXPECT_EQ(login(m_user, first), Refusal::Replaced);
    EXPECT_EQ(login(m_user, second), Refusal::Replaced);
    EXPECT_EQ(login(m_user, third), Refusal::None);
    EXPECT_EQ(m_grants.size(), 1U);
}

TEST_F(UsedGrantsTest, OfTwoGrantsOfOneMomentTheFirstUsedCounts) {
    const Grant first = granted(m_user, berlin);
    Grant second = granted(m_user, boston);
    second.issued = first.issued; // from another machine
    EXPECT_EQ(login(m_user, first), Refusal::None);
    EXPECT_EQ(login(m_user, second), Refusal::Replaced);
}

TEST_F(UsedGrantsTest, ARevokedUserIsUnknown) {
    const Grant grant = granted(m_user, berlin);
    EXPECT_EQ(login(m_user, grant), Refusal::None);
    static_cast<void>(m_state.revokeUser(m_user.user, m_now + seconds(100))); // there is no file
    EXPECT_EQ(login(m_user, grant), Refusal::UnknownUser);
    EXPECT_FALSE(m_users.grant(m_user.user, berlin, Protocol::Udp));
}

TEST_F(UsedGrantsTest, GrantsOfARevokedAddressAreRefusedUnlessTheyAreNewer) {
    const Grant used = granted(m_user, berlin);
    EXPECT_EQ(login(m_user, used), Refusal::None);
    const auto other = m_users.issue();
    const Grant unused = granted(other, berlin);
    const Grant elsewhere = granted(other, boston);
    m_now += seconds(1);
    static_cast<void>(m_state.revokeAddress(berlin, m_now + seconds(100))); // there is no file
    EXPECT_EQ(login(m_user, used), Refusal::Revoked);
    EXPECT_EQ(login(other, unused), Refusal::Revoked);
    EXPECT_EQ(login(other, elsewhere), Refusal::None);
    m_now += seconds(1);
    EXPECT_EQ(login(m_user, granted(m_user, berlin)), Refusal::None);
}

TEST_F(UsedGrantsTest, WhileItDrainsOnlyUsedGrantsLogIn) {
    const Grant used = granted(m_user, berlin);
    EXPECT_EQ(login(m_user, used), Refusal::None);
    m_draining = true;
    EXPECT_EQ(login(m_user, used), Refusal::None);
    const Grant another = granted(m_user, boston);
    EXPECT_EQ(login(m_user, another), Refusal::Draining);
    m_draining = false;
    EXPECT_EQ(login(m_user, another), Refusal::None);
}

TEST_F(UsedGrantsTest, TheTunnelAddressIsOfTheSameGrantOnly) {
    const Ipv4Address tunnel = *Ipv4Address::parse("10.8.0.2");
    const auto attempt = [this](const Grant &grant) {
        return m_grants.login({m_user.user, m_user.password, grant, Protocol::Udp, home});
    };
    const Grant grant = granted(m_user, berlin);
    EXPECT_EQ(attempt(grant).tunnel, std::nullopt);
    m_grants.setTunnelAddress(m_user.user, tunnel);
    EXPECT_EQ(attempt(grant).tunnel, tunnel);
    EXPECT_EQ(attempt(granted(m_user, berlin)).tunnel, std::nullopt);
}

TEST_F(UsedGrantsTest, AUserWithoutAUsedGrantHasNoTunnelAddress) {
    m_grants.setTunnelAddress(m_user.user, berlin);
    EXPECT_EQ(m_grants.size(), 0U);
}

TEST_F(UsedGrantsTest, WhenThereAreTooManyTheFirstToExpireIsForgotten) {
    std::vector<Credentials> users;
    std::vector<Grant> grants;
    for (int i = 0; i < 4; ++i) {
        users.push_back(m_users.issue());
        grants.push_back(granted(users.back(), boston));
        m_now += seconds(1);
    }
    for (const std::size_t i : {2U, 0U, 3U, 1U}) {
        EXPECT_EQ(login(users[i], grants[i]), Refusal::None);
    }
    EXPECT_EQ(m_grants.size(), 3U);
    m_now += seconds(20);
    EXPECT_EQ(login(users[0], grants[0]), Refusal::TooLate);
    for (const std::size_t i : {1U, 2U, 3U}) {
        EXPECT_EQ(login(users[i], grants[i]), Refusal::None);
    }
}

TEST_F(UsedGrantsTest, AnotherGrantOfAKnownUserTakesNoOthersPlace) {
    std::vector<Credentials> users;
    std::vector<Grant> grants;
    for (int i = 0; i < 3; ++i) {
        users.push_back(m_users.issue());
        grants.push_back(granted(users.back(), boston));
        login(users.back(), grants.back());
        m_now += seconds(1);
    }
    EXPECT_EQ(login(users[2], granted(users[2], berlin)), Refusal::None);
    m_now += seconds(20);
    EXPECT_EQ(login(users[0], grants[0]), Refusal::None);
}

} // namespace

} // namespace quorvane::service
