#include "core/OperatorState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace quorvane::service {

namespace {

using std::chrono::seconds;
using testing::HasSubstr;

const Ipv4Address berlin = *Ipv4Address::parse("203.0.113.5");
const Ipv4Address boston = *Ipv4Address::parse("203.0.113.42");

class OperatorStateTest : public testing::Test {
protected:
    OperatorStateTest() { std::filesystem::create_directories(m_folder); }

    ~OperatorStateTest() override { std::filesystem::remove_all(m_folder); }

    [[nodiscard]] static Grant grant(Ipv4Address address, Grant::TimePoint issued) {
        return {"user1", address, Protocol::Udp, issued, issued + seconds(10)};
    }

    /// What a restarted service would know.
    [[nodiscard]] OperatorState restarted() const {
        OperatorState state(m_clock);
        EXPECT_TRUE(state.load(m_path).ok());
        return state;
    }

    Clock m_clock = [this] {
        return m_now;
    };
    std::chrono::system_clock::time_point m_now{seconds(1000)};
    std::string m_folder = testing::TempDir() + "operator-state-" + std::to_string(getpid());
    std::string m_path = m_folder + "/operator.json";
    OperatorState m_state{m_clock};
};

TEST_F(OperatorStateTest, NothingIsOrderedWithoutAFile) {
    ASSERT_TRUE(m_state.load(m_path).ok());
    EXPECT_FALSE(m_state.draining());
    EXPECT_FALSE(m_state.revokesUser("user1"));
    EXPECT_FALSE(m_state.revokesGrant(grant(berlin, Grant::TimePoint(seconds(1)))));
    EXPECT_EQ(m_state.revocations(), 0U);
    EXPECT_FALSE(std::filesystem::exists(m_path));
}

TEST_F(OperatorStateTest, EveryOrderCountsAfterARestart) {
    ASSERT_TRUE(m_state.load(m_path).ok());
    EXPECT_TRUE(m_state.setDraining(true).ok());
    EXPECT_TRUE(m_state.revokeUser("user1", m_now + seconds(100)).ok());
    EXPECT_TRUE(m_state.revokeAddress(berlin, m_now + seconds(100)).ok());
    const Grant::TimePoint now{seconds(1000)};
    for (const OperatorState &state : {m_state, restarted()}) {
        EXPECT_TRUE(state.draining());
        EXPECT_TRUE(state.revokesUser("user1"));
        EXPECT_FALSE(state.revokesUser("user2"));
        EXPECT_TRUE(state.revokesGrant(grant(berlin, now)));
        EXPECT_FALSE(state.revokesGrant(grant(berlin, now + std::chrono::microseconds(1))));
        EXPECT_FALSE(state.revokesGrant(grant(boston, now)));
        EXPECT_EQ(state.revocations(), 2U);
    }
    EXPECT_TRUE(m_state.setDraining(false).ok());
    EXPECT_FALSE(restarted().draining());
    EXPECT_TRUE(restarted().revokesUser("user1"));

    struct stat state {};

    ASSERT_EQ(stat(m_path.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777, 0600U);
}

TEST_F(OperatorStateTest, WhatHasExpiredIsForgotten) {
    ASSERT_TRUE(m_state.load(m_path).ok());
    EXPECT_TRUE(m_state.revokeUser("user1", m_now + seconds(100)).ok());
    EXPECT_TRUE(m_state.revokeAddress(berlin, m_now + seconds(100)).ok());
    m_now += seconds(100);
    EXPECT_TRUE(m_state.revokeUser("user2", m_now + seconds(100)).ok());
    EXPECT_EQ(m_state.revocations(), 1U);
    EXPECT_TRUE(restarted().revokesUser("user2"));
}

TEST_F(OperatorStateTest, HundredUsersCanBeRevoked) {
    ASSERT_TRUE(m_state.load(m_path).ok());
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(m_state.revokeUser(std::string(50, 'u') + std::to_string(i), m_now + seconds(9)).ok());
    }
    EXPECT_EQ(restarted().revocations(), 100U);
}

TEST_F(OperatorStateTest, AnOrderThatCannotBeWrittenCountsNevertheless) {
    ASSERT_TRUE(m_state.load(m_folder + "/none/operator.json").ok());
    const auto done = m_state.revokeUser("user1", m_now + seconds(100));
    ASSERT_FALSE(done.ok());
    EXPECT_THAT(done.error(), HasSubstr("until the next start"));
    EXPECT_TRUE(m_state.revokesUser("user1"));
}

class SharedOperatorStateTest : public OperatorStateTest {
protected:
    SharedOperatorStateTest() {
        m_state.share();
        EXPECT_TRUE(m_state.load(m_path).ok());
    }

    [[nodiscard]] OperatorState restarted() const {
        OperatorState state(m_clock);
        state.share();
        EXPECT_TRUE(state.load(m_path).ok());
        return state;
    }
};

TEST_F(SharedOperatorStateTest, OrdersArePendingUntilAllNodesCanKnowThem) {
    EXPECT_TRUE(m_state.revokeUser("user1", m_now + seconds(100)).ok());
    EXPECT_TRUE(m_state.revokeAddress(berlin, m_now + seconds(100)).ok());
    EXPECT_TRUE(m_state.setAllDraining(true).ok());
    EXPECT_EQ(m_state.pending().size(), 3U);
    EXPECT_EQ(restarted().pending(), m_state.pending());
    EXPECT_TRUE(restarted().draining());
    EXPECT_TRUE(m_state.takeShared({}).ok());
    EXPECT_TRUE(m_state.revokesUser("user1"));
    EXPECT_EQ(m_state.pending().size(), 3U);
    const SharedOrders shared = m_state.orders();
    EXPECT_TRUE(m_state.takeShared(shared).ok());
    EXPECT_TRUE(m_state.pending().empty());
    EXPECT_EQ(m_state.orders(), shared);
    EXPECT_EQ(restarted().orders(), shared);
    EXPECT_TRUE(restarted().pending().empty());
}

TEST_F(SharedOperatorStateTest, OrdersOfOtherNodesCountAndCanBeWithdrawn) {
    SharedOrders shared;
    shared.users.emplace("user1", SharedOrders::TimePoint(seconds(2000)));
    shared.drain = {true, SharedOrders::TimePoint(seconds(900))};
    EXPECT_TRUE(m_state.takeShared(shared).ok());
    for (const OperatorState &state : {m_state, restarted()}) {
        EXPECT_TRUE(state.revokesUser("user1"));
        EXPECT_TRUE(state.draining());
        EXPECT_FALSE(state.drainingHere());
    }
    EXPECT_TRUE(m_state.takeShared({}).ok());
    EXPECT_FALSE(restarted().revokesUser("user1"));
    EXPECT_FALSE(restarted().draining());
}

TEST_F(SharedOperatorStateTest, ALaterOrderOfAnotherNodeReplacesOneThatIsPending) {
    EXPECT_TRUE(m_state.setAllDraining(true).ok());
    SharedOrders shared;
    shared.drain = {false, m_state.orders().drain.given + seconds(1)};
    EXPECT_TRUE(m_state.takeShared(shared).ok());
    EXPECT_FALSE(m_state.draining());
    EXPECT_TRUE(m_state.pending().empty());
    EXPECT_TRUE(m_state.setAllDraining(true).ok());
    EXPECT_GT(m_state.orders().drain.given, shared.drain.given) << "although the clock is behind";
}

TEST_F(SharedOperatorStateTest, TheDrainOfOneProcessIsItsOwn) {
    EXPECT_TRUE(m_state.setDraining(true).ok());
    EXPECT_TRUE(m_state.pending().empty());
    EXPECT_TRUE(m_state.takeShared({}).ok());
    EXPECT_TRUE(restarted().draining());
    EXPECT_TRUE(restarted().drainingHere());
}

TEST_F(OperatorStateTest, OrdersOfBeforeThereWereOtherNodesArePending) {
    ASSERT_TRUE(m_state.load(m_path).ok());
    EXPECT_TRUE(m_state.revokeUser("user1", m_now + seconds(100)).ok());
    OperatorState state(m_clock);
    state.share();
    ASSERT_TRUE(state.load(m_path).ok());
    EXPECT_EQ(state.pending().count("users/user1"), 1U);
}

TEST_F(OperatorStateTest, AnotherContentIsRefused) {
    ASSERT_TRUE(m_state.load(m_path).ok());
    EXPECT_TRUE(m_state.setDraining(true).ok());
    for (const std::string bad : {"", "x", "[]", "{}", R"({"draining":1,"users":{},"addresses":{}})",
                                  R"({"draining":true,"users":{"u":"x"},"addresses":{}})",
                                  R"({"draining":true,"users":{},"addresses":{"host":[1,2]}})",
                                  R"({"draining":true,"users":{},"addresses":{"203.0.113.5":[1]}})"}) {
        std::ofstream(m_path, std::ios::trunc) << bad;
        const auto loaded = OperatorState(m_clock).load(m_path);
        ASSERT_FALSE(loaded.ok()) << bad;
        EXPECT_THAT(loaded.error(), HasSubstr(m_path + " is damaged: "));
    }
}

} // namespace

} // namespace quorvane::service
