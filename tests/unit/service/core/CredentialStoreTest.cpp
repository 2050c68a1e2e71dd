#include "core/CredentialStore.h"

#include <gtest/gtest.h>

#include <vector>

namespace quorvane::service {

namespace {

using std::chrono::seconds;
using Refusal = CredentialStore::Refusal;

const Ipv4Address berlin = *Ipv4Address::parse("203.0.113.5");
const Ipv4Address boston = *Ipv4Address::parse("203.0.113.42");
const std::string home = "198.51.100.10";

class CredentialStoreTest : public testing::Test {
protected:
    std::chrono::system_clock::time_point m_now{seconds(1000)};
    UserTokens m_tokens{{UserTokens::Key{1}}};
    CredentialStore m_store{m_tokens, seconds(100), seconds(10), [this] { return m_now; }, 3};
};

TEST_F(CredentialStoreTest, IssuesDifferentUrlSafeCredentials) {
    const auto first = m_store.issue();
    const auto second = m_store.issue();
    EXPECT_NE(first.user, second.user);
    EXPECT_NE(first.password, second.password);
    for (const std::string &text : {first.user, first.password}) {
        EXPECT_GE(text.size(), 20U);
        EXPECT_EQ(text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
                  std::string::npos);
    }
}

TEST_F(CredentialStoreTest, AGrantAllowsALoginWithItsAddress) {
    const auto credentials = m_store.issue();
    ASSERT_TRUE(m_store.grant(credentials.user, berlin));
    const auto login = m_store.login(credentials.user, credentials.password, home);
    EXPECT_EQ(login.refusal, Refusal::None);
    EXPECT_EQ(login.address, berlin);
}

TEST_F(CredentialStoreTest, TheSameSourceMayLogInAgainWithItsAddressUntilTheUserExpires) {
    const auto credentials = m_store.issue();
    m_store.grant(credentials.user, berlin);
    m_store.login(credentials.user, credentials.password, home);
    m_now += seconds(99); // long after the limit for the first login
    const auto again = m_store.login(credentials.user, credentials.password, home);
    EXPECT_EQ(again.refusal, Refusal::None);
    EXPECT_EQ(again.address, berlin);
    m_now += seconds(1);
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).refusal, Refusal::UnknownUser);
}

TEST_F(CredentialStoreTest, AnotherSourceMayNotUseAUsedGrant) {
    const auto credentials = m_store.issue();
    m_store.grant(credentials.user, berlin);
    m_store.login(credentials.user, credentials.password, home);
    for (const char *elsewhere : {"198.51.100.11", "198.51.100.1", "198.51.100.100", ""}) {
        EXPECT_EQ(m_store.login(credentials.user, credentials.password, elsewhere).refusal,
                  Refusal::UsedElsewhere);
    }
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).refusal, Refusal::None);
    m_store.grant(credentials.user, boston);
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, "198.51.100.11").address, boston);
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).refusal, Refusal::UsedElsewhere);
}

TEST_F(CredentialStoreTest, AnUnknownSourceLogsInOnce) {
    const auto credentials = m_store.issue();
    m_store.grant(credentials.user, berlin);
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, "").refusal, Refusal::None);
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, "").refusal, Refusal::UsedElsewhere);
}

TEST_F(CredentialStoreTest, EveryGrantAllowsAnotherLogin) {
    const auto credentials = m_store.issue();
    for (const Ipv4Address address : {berlin, boston, berlin}) {
        ASSERT_TRUE(m_store.grant(credentials.user, address));
        EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).address, address);
    }
}

TEST_F(CredentialStoreTest, GrantsReplaceEachOtherAndDoNotAddUp) {
    const auto credentials = m_store.issue();
    m_store.grant(credentials.user, berlin);
    m_store.grant(credentials.user, boston);
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).address, boston);
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).address, boston);
}

TEST_F(CredentialStoreTest, ALoginWithoutAGrantIsRefused) {
    const auto credentials = m_store.issue();
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).refusal, Refusal::NotGranted);
}

TEST_F(CredentialStoreTest, AWrongPasswordIsRefusedAndKeepsTheGrant) {
    const auto credentials = m_store.issue();
    m_store.grant(credentials.user, berlin);
    for (const std::string &wrong :
         {std::string(), credentials.password + 'x', credentials.password.substr(1),
          std::string(credentials.password.size(), 'x')}) {
        EXPECT_EQ(m_store.login(credentials.user, wrong, home).refusal, Refusal::WrongPassword);
    }
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).refusal, Refusal::None);
}

TEST_F(CredentialStoreTest, UnknownUsersAreRefused) {
    EXPECT_FALSE(m_store.knows("unknown"));
    EXPECT_FALSE(m_store.grant("unknown", berlin));
    EXPECT_EQ(m_store.login("unknown", "x", home).refusal, Refusal::UnknownUser);
    EXPECT_EQ(m_store.login("", "", home).refusal, Refusal::UnknownUser);
}

TEST_F(CredentialStoreTest, AUserExpires) {
    const auto credentials = m_store.issue();
    m_now += seconds(99);
    EXPECT_TRUE(m_store.grant(credentials.user, berlin));
    m_now += seconds(1);
    EXPECT_FALSE(m_store.knows(credentials.user));
    EXPECT_FALSE(m_store.grant(credentials.user, berlin));
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).refusal, Refusal::UnknownUser);
    EXPECT_EQ(m_store.size(), 0U);
}

TEST_F(CredentialStoreTest, AGrantExpires) {
    const auto credentials = m_store.issue();
    m_store.grant(credentials.user, berlin);
    m_now += seconds(10);
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).refusal, Refusal::NotGranted);
    m_store.grant(credentials.user, berlin);
    m_now += seconds(9);
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).refusal, Refusal::None);
}

TEST_F(CredentialStoreTest, NothingIsStoredOfUsersWithoutAGrant) {
    const auto victim = m_store.issue();
    for (int i = 0; i < 1000; ++i) {
        EXPECT_NE(m_store.issue().user, victim.user);
    }
    EXPECT_EQ(m_store.size(), 0U);
    ASSERT_TRUE(m_store.grant(victim.user, berlin));
    EXPECT_EQ(m_store.login(victim.user, victim.password, home).address, berlin);
    EXPECT_EQ(m_store.size(), 1U);
}

TEST_F(CredentialStoreTest, AStoreAfterARestartKnowsTheUsers) {
    const auto credentials = m_store.issue();
    const UserTokens sameKeys({UserTokens::Key{1}});
    CredentialStore restarted(sameKeys, seconds(100), seconds(10), [this] { return m_now; });
    EXPECT_EQ(restarted.login(credentials.user, credentials.password, home).refusal, Refusal::NotGranted);
    ASSERT_TRUE(restarted.grant(credentials.user, berlin));
    EXPECT_EQ(restarted.login(credentials.user, credentials.password, home).address, berlin);
}

TEST_F(CredentialStoreTest, TheOldestUnusedGrantIsReplacedAndNoUsedOne) {
    const auto used = m_store.issue();
    m_store.grant(used.user, berlin);
    m_store.login(used.user, used.password, home);
    std::vector<Credentials> users;
    for (int i = 0; i < 4; ++i) {
        users.push_back(m_store.issue());
        m_store.grant(users.back().user, boston);
    }
    EXPECT_EQ(m_store.size(), 4U);
    EXPECT_EQ(m_store.login(users[0].user, users[0].password, home).refusal, Refusal::NotGranted);
    EXPECT_EQ(m_store.login(users[1].user, users[1].password, home).refusal, Refusal::None);
    EXPECT_EQ(m_store.login(used.user, used.password, home).address, berlin);
}

TEST_F(CredentialStoreTest, GrantsAreForgottenAtTheirEnd) {
    const auto used = m_store.issue();
    m_store.grant(used.user, berlin);
    m_store.login(used.user, used.password, home);
    m_store.grant(m_store.issue().user, boston);
    EXPECT_EQ(m_store.size(), 2U);
    m_now += seconds(10);
    EXPECT_EQ(m_store.size(), 1U);
    m_now += seconds(90);
    EXPECT_EQ(m_store.size(), 0U);
}

TEST_F(CredentialStoreTest, AClockThatIsSetBackRevivesNoGrant) {
    const auto credentials = m_store.issue();
    m_store.grant(credentials.user, berlin);
    m_now += seconds(10);
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).refusal, Refusal::NotGranted);
    m_now -= seconds(5);
    EXPECT_EQ(m_store.login(credentials.user, credentials.password, home).refusal, Refusal::NotGranted);
}

} // namespace

} // namespace quorvane::service
