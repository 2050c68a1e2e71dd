#include "core/GrantJournal.h"
#include "core/UsedGrants.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/resource.h>
#include <sys/stat.h>

namespace quorvane::service {

namespace {

using std::chrono::microseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using Refusal = UsedGrants::Refusal;

const Ipv4Address berlin = *Ipv4Address::parse("203.0.113.5");
const Ipv4Address tunnelAddress = *Ipv4Address::parse("10.8.0.2");

UsedGrant usedBy(const std::string &user) {
    return {user,          Grant::TimePoint(microseconds(1000000001)), berlin, "198.51.100.10",
            tunnelAddress, UserTokens::TimePoint(seconds(2000))};
}

TEST(JournalLine, IsReadAsItWasWritten) {
    UsedGrant grant = usedBy("user1");
    EXPECT_EQ(journalLine(grant),
              R"(["user1",1000000001,"203.0.113.5","198.51.100.10","10.8.0.2",2000000000])"
              "\n");
    EXPECT_EQ(usedGrantIn(journalLine(grant)), grant);
    grant.tunnel.reset();
    grant.source = "";
    EXPECT_EQ(usedGrantIn(journalLine(grant)), grant);
}

TEST(JournalLine, MalformedOnesAreNoGrant) {
    const std::string right = R"(["u",1,"203.0.113.5","s","10.8.0.2",2])";
    ASSERT_TRUE(usedGrantIn(right));
    for (std::size_t length = 0; length < right.size(); ++length) {
        EXPECT_FALSE(usedGrantIn(right.substr(0, length))) << length;
    }
    for (const char *wrong :
         {"", "{}", "[]", R"([1,1,"203.0.113.5","s",null,2])", R"(["u",-1,"203.0.113.5","s",null,2])",
          R"(["u",1.5,"203.0.113.5","s",null,2])", R"(["u","1","203.0.113.5","s",null,2])",
          R"(["u",1,"203.0.113","s",null,2])", R"(["u",1,3,"s",null,2])", R"(["u",1,"203.0.113.5",4,null,2])",
          R"(["u",1,"203.0.113.5","s","",2])", R"(["u",1,"203.0.113.5","s",5,2])",
          R"(["u",1,"203.0.113.5","s",null,9223372036854776])", R"(["u",1,"203.0.113.5","s",null,2,3])",
          R"(["u",1,"203.0.113.5","s",null])", R"(["u",1,"203.0.113.5","s",null,2] x)"}) {
        EXPECT_FALSE(usedGrantIn(wrong)) << wrong;
    }
    EXPECT_TRUE(usedGrantIn(R"(["u",1,"203.0.113.5","s",null,9223372036854775])"));
}

class GrantJournalTest : public testing::Test {
protected:
    GrantJournalTest() { std::filesystem::create_directories(m_folder); }

    ~GrantJournalTest() override { std::filesystem::remove_all(m_folder); }

    [[nodiscard]] std::string content() const {
        std::ostringstream text;
        text << std::ifstream(m_path).rdbuf();
        return text.str();
    }

    /// What a restarted gateway reads.
    [[nodiscard]] std::vector<UsedGrant> reopened() const {
        GrantJournal journal;
        auto grants = journal.open(m_path);
        EXPECT_TRUE(grants.ok());
        return std::move(grants).value();
    }

    std::string m_folder = testing::TempDir() + "grant-journal-" + std::to_string(getpid());
    std::string m_path = m_folder + "/used-grants";
    GrantJournal m_journal;
};

TEST_F(GrantJournalTest, ANewFileIsPrivateAndEmpty) {
    const auto grants = m_journal.open(m_path);
    ASSERT_TRUE(grants.ok());
    EXPECT_THAT(grants.value(), IsEmpty());

    struct stat state {};

    ASSERT_EQ(stat(m_path.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 07777, 0600U);
}

TEST_F(GrantJournalTest, WhatIsAppendedIsReadAgainInItsOrder) {
    ASSERT_TRUE(m_journal.open(m_path).ok());
    m_journal.append(usedBy("user1"));
    m_journal.append(usedBy("user2"));
    EXPECT_EQ(m_journal.lines(), 2U);
    EXPECT_THAT(reopened(), ElementsAre(usedBy("user1"), usedBy("user2")));
}

TEST_F(GrantJournalTest, ALineThatWasWrittenInPartIsLeftOut) {
    std::ofstream(m_path) << journalLine(usedBy("user1")) << journalLine(usedBy("user2")).substr(0, 30);
    ASSERT_EQ(chmod(m_path.c_str(), 0600), 0);
    const auto grants = m_journal.open(m_path);
    ASSERT_TRUE(grants.ok());
    EXPECT_THAT(grants.value(), ElementsAre(usedBy("user1")));
    m_journal.append(usedBy("user3"));
    EXPECT_THAT(reopened(), ElementsAre(usedBy("user1"), usedBy("user3")));
}

TEST_F(GrantJournalTest, AFileThatOthersCouldReadOrWriteIsRefused) {
    std::ofstream(m_path) << journalLine(usedBy("user1"));
    ASSERT_EQ(chmod(m_path.c_str(), 0644), 0);
    EXPECT_FALSE(m_journal.open(m_path).ok());
}

TEST_F(GrantJournalTest, RewritingReplacesAllLines) {
    ASSERT_TRUE(m_journal.open(m_path).ok());
    m_journal.append(usedBy("user1"));
    ASSERT_TRUE(m_journal.rewrite({usedBy("user2")}).ok());
    EXPECT_EQ(m_journal.lines(), 1U);
    m_journal.append(usedBy("user3"));
    EXPECT_THAT(reopened(), ElementsAre(usedBy("user2"), usedBy("user3")));
}

TEST_F(GrantJournalTest, AFullDiskLeavesNoPartOfALine) {
    ASSERT_TRUE(m_journal.open(m_path).ok());
    m_journal.append(usedBy("user1"));
    const std::string before = content();
    // The limit of the file's size has the effect of a full disk, also for what is captured here.
    rlimit former{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit nearly{before.size() + 10, former.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    testing::internal::CaptureStderr();
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &nearly), 0);
    m_journal.append(usedBy("user2"));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &former), 0);
    std::signal(SIGXFSZ, handler);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr("a used grant is unknown after a restart"));
    EXPECT_EQ(content(), before);
    m_journal.append(usedBy("user3"));
    EXPECT_THAT(reopened(), ElementsAre(usedBy("user1"), usedBy("user3")));
}

/// A gateway that is restarted.
class RestartedGatewayTest : public GrantJournalTest {
protected:
    [[nodiscard]] UsedGrants started(std::size_t maximum = 500000) {
        UsedGrants grants(m_users, {[](Ipv4Address) {
                              return true;
                          }},
                          m_clock, maximum);
        EXPECT_TRUE(grants.restore(m_path).ok());
        return grants;
    }

    UsedGrants::Login login(UsedGrants &grants, const Credentials &user, const Grant &grant,
                            const std::string &source = "198.51.100.10") {
        return grants.login({user.user, user.password, grant, Protocol::Udp, source});
    }

    Clock m_clock = [this] {
        return m_now;
    };
    std::chrono::system_clock::time_point m_now{seconds(1000)};
    UserTokens m_tokens{{UserTokens::Key{1}}};
    VpnUsers m_users{m_tokens, seconds(100), seconds(10), m_clock};
    Credentials m_user = m_users.issue();
    Grant m_grant = m_users.grant(m_user.user, berlin, Protocol::Udp).value();
};

TEST_F(RestartedGatewayTest, AClientThatReconnectsIsKnownAndGetsItsTunnelAddress) {
    {
        UsedGrants before = started();
        ASSERT_EQ(login(before, m_user, m_grant).refusal, Refusal::None);
        before.setTunnelAddress(m_user.user, tunnelAddress);
    }
    m_now += seconds(50); // long after the limit for the first login
    UsedGrants after = started();
    EXPECT_EQ(after.size(), 1U);
    const auto again = login(after, m_user, m_grant);
    EXPECT_EQ(again.refusal, Refusal::None);
    EXPECT_EQ(again.tunnel, tunnelAddress);
}

TEST_F(RestartedGatewayTest, AUsedGrantIsUselessElsewhere) {
    {
        UsedGrants before = started();
        ASSERT_EQ(login(before, m_user, m_grant).refusal, Refusal::None);
    }
    UsedGrants after = started();
    EXPECT_EQ(login(after, m_user, m_grant, "198.51.100.11").refusal, Refusal::UsedElsewhere);
}

TEST_F(RestartedGatewayTest, EarlierGrantsStayRefused) {
    const Grant later = m_users.grant(m_user.user, berlin, Protocol::Udp).value();
    {
        UsedGrants before = started();
        ASSERT_EQ(login(before, m_user, m_grant).refusal, Refusal::None);
        ASSERT_EQ(login(before, m_user, later).refusal, Refusal::None);
    }
    UsedGrants after = started();
    EXPECT_EQ(login(after, m_user, m_grant).refusal, Refusal::Replaced);
    EXPECT_EQ(login(after, m_user, later).refusal, Refusal::None);
}

TEST_F(RestartedGatewayTest, ExpiredUsersLeaveTheJournal) {
    {
        UsedGrants before = started();
        ASSERT_EQ(login(before, m_user, m_grant).refusal, Refusal::None);
    }
    EXPECT_NE(content(), "");
    m_now += seconds(100);
    EXPECT_EQ(started().size(), 0U);
    EXPECT_EQ(content(), "");
}

TEST_F(RestartedGatewayTest, NoMoreGrantsThanTheMaximumAreRestored) {
    {
        UsedGrants before = started();
        for (int i = 0; i < 5; ++i) {
            const auto user = m_users.issue();
            const auto grant = m_users.grant(user.user, berlin, Protocol::Udp).value();
            ASSERT_EQ(login(before, user, grant).refusal, Refusal::None);
        }
    }
    EXPECT_EQ(started(3).size(), 3U);
    EXPECT_EQ(started().size(), 3U) << "what is forgotten is no longer in the journal";
}

TEST_F(RestartedGatewayTest, TheJournalDoesNotGrowWithTheNumberOfLogins) {
    UsedGrants grants = started();
    ASSERT_EQ(login(grants, m_user, m_grant).refusal, Refusal::None);
    for (std::uint32_t i = 0; i < 5000; ++i) {
        grants.setTunnelAddress(m_user.user, Ipv4Address{i});
    }
    const std::string text = content();
    EXPECT_LT(std::count(text.begin(), text.end(), '\n'), 1010);
    EXPECT_EQ(login(grants, m_user, m_grant).tunnel, Ipv4Address{4999});
    UsedGrants after = started();
    EXPECT_EQ(login(after, m_user, m_grant).tunnel, Ipv4Address{4999});
}

} // namespace

} // namespace quorvane::service
