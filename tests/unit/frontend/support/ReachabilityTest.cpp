#include "frontend/support/Reachability.h"

#include "fakes/TestPlatform.h"
#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QThread>
#include <atomic>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

const QString host = QStringLiteral("net.quorvane.test");

class ReachabilityTest : public testing::Test {
protected:
    void setFlags(std::uint32_t flags) { m_services.reachability().setFlags(host, flags); }

    fakes::TestPlatform m_services;
    Reachability::Pointer m_monitor = Reachability::reachabilityWithHostname(host);
};

TEST(ReachabilityFlags, ReachableUnlessTransientAndConnectionRequired) {
    for (std::uint32_t flags = 0; flags < 64; ++flags) {
        const bool reachable = (flags & 2) != 0;
        const bool unfinished = (flags & 1) != 0 && (flags & 4) != 0;
        EXPECT_EQ(Reachability::isReachableWithFlags(flags), reachable && !unfinished) << flags;
    }
    EXPECT_FALSE(Reachability::isReachableWithFlags(7));
    EXPECT_TRUE(Reachability::isReachableWithFlags(3));
    EXPECT_TRUE(Reachability::isReachableWithFlags(6));
}

TEST_F(ReachabilityTest, TargetsThatCannotBeMadeAreNull) {
    EXPECT_EQ(Reachability::reachabilityWithHostname(text("")), nullptr);
    m_services.reachability().setTargetsFail(true);
    EXPECT_EQ(Reachability::reachabilityWithHostName(host), nullptr);
    EXPECT_EQ(Reachability::reachabilityWithAddress(1), nullptr);
    EXPECT_EQ(Reachability::reachabilityForInternetConnection(), nullptr);
    EXPECT_EQ(Reachability::reachabilityForLocalWiFi(), nullptr);
}

TEST_F(ReachabilityTest, AddressTargets) {
    m_services.reachability().setFlags(text("0.0.0.0"), 0);
    m_services.reachability().setFlags(text("169.254.0.0"), 131074);
    EXPECT_EQ(Reachability::reachabilityForInternetConnection()->reachabilityFlags(), 0U);
    EXPECT_EQ(Reachability::reachabilityForLocalWiFi()->reachabilityFlags(), 131074U);
}

TEST_F(ReachabilityTest, QueriesDependOnTheFlags) {
    setFlags(2);
    EXPECT_TRUE(m_monitor->isReachable());
    EXPECT_TRUE(m_monitor->isReachableViaWiFi());
    EXPECT_FALSE(m_monitor->isReachableViaWWAN());
    EXPECT_EQ(m_monitor->currentReachabilityStatus(), 2);
    EXPECT_FALSE(m_monitor->connectionRequired());

    setFlags(7); // reachable by its bit, but the connection is not established yet
    EXPECT_FALSE(m_monitor->isReachable());
    EXPECT_TRUE(m_monitor->isReachableViaWiFi());
    EXPECT_EQ(m_monitor->currentReachabilityStatus(), 0);
    EXPECT_TRUE(m_monitor->connectionRequired());
    EXPECT_TRUE(m_monitor->isConnectionRequired());

    setFlags(0);
    EXPECT_FALSE(m_monitor->isReachable());
    EXPECT_EQ(m_monitor->currentReachabilityStatus(), 0);
}

TEST_F(ReachabilityTest, OnDemandNeedsItsBitsTogether) {
    for (std::uint32_t flags = 0; flags < 64; ++flags) {
        setFlags(flags);
        EXPECT_EQ(m_monitor->isConnectionOnDemand(), (flags & 4) != 0 && (flags & (8 | 32)) != 0) << flags;
        EXPECT_EQ(m_monitor->isInterventionRequired(), (flags & 4) != 0 && (flags & 16) != 0) << flags;
    }
}

TEST_F(ReachabilityTest, UnreadableFlagsMeanNotReachable) {
    m_services.reachability().setUnreadable(host);
    EXPECT_FALSE(m_monitor->isReachable());
    EXPECT_FALSE(m_monitor->isReachableViaWiFi());
    EXPECT_EQ(m_monitor->reachabilityFlags(), 0U);
    EXPECT_EQ(m_monitor->currentReachabilityStatus(), 0);
    EXPECT_EQ(m_monitor->currentReachabilityFlags(), text("X- -------"));
}

TEST_F(ReachabilityTest, Strings) {
    setFlags(2);
    EXPECT_EQ(m_monitor->currentReachabilityString(), text("WiFi"));
    setFlags(0);
    EXPECT_EQ(m_monitor->currentReachabilityString(), text("No Connection"));
    m_monitor->reachableOnWWAN = false;
    EXPECT_EQ(m_monitor->currentReachabilityString(), text("Cellular"));
    setFlags(2);
    EXPECT_EQ(m_monitor->currentReachabilityString(), text("WiFi"));
}

TEST_F(ReachabilityTest, FlagLetters) {
    const QList<QPair<std::uint32_t, const char *>> cases{
        {0, "X- -------"},      {2, "XR -------"},
        {4, "X- c------"},      {1, "X- -t-----"},
        {16, "X- --i----"},     {8, "X- ---C---"},
        {32, "X- ----D--"},     {65536, "X- -----l-"},
        {131072, "X- ------d"}, {65536 | 131072 | 63, "XR ctiCDld"}};
    for (const auto &[flags, letters] : cases) {
        setFlags(flags);
        EXPECT_EQ(m_monitor->currentReachabilityFlags(), text(letters)) << flags;
    }
}

TEST_F(ReachabilityTest, DescriptionNamesClassAndAddress) {
    EXPECT_EQ(m_monitor->description(),
              text("<Reachability: 0x%1>").arg(reinterpret_cast<quintptr>(m_monitor.get()), 0, 16));
}

TEST_F(ReachabilityTest, CallbackOnItsQueueThenNotificationOnTheMainThread) {
    std::atomic<QThread *> blockThread = nullptr;
    std::atomic<int> reached = 0;
    std::atomic<int> lost = 0;
    m_monitor->reachableBlock = [&](Reachability &) {
        blockThread = QThread::currentThread();
        ++reached;
    };
    m_monitor->unreachableBlock = [&](Reachability &) {
        ++lost;
    };
    QObject context;
    int posted = 0;
    QThread *postThread = nullptr;
    m_services.platform().notifications->addObserver(
        text("kReachabilityChangedNotification"), &context, [&](const QVariant &object) {
            EXPECT_EQ(object.value<Reachability::Pointer>(), m_monitor);
            postThread = QThread::currentThread();
            ++posted;
        });
    ASSERT_TRUE(m_monitor->startNotifier());
    ASSERT_TRUE(spinUntil([&] { return posted == 1; })); // the first state is reported too
    EXPECT_EQ(reached, 1);
    EXPECT_NE(blockThread.load(), QThread::currentThread());
    EXPECT_EQ(postThread, QThread::currentThread());
    setFlags(0);
    ASSERT_TRUE(spinUntil([&] { return posted == 2; }));
    EXPECT_EQ(lost, 1);
    EXPECT_EQ(reached, 1);
    m_monitor->stopNotifier();
    setFlags(2);
    deliverQueued();
    EXPECT_EQ(posted, 2);
    EXPECT_EQ(reached, 1);
}

TEST_F(ReachabilityTest, RunningMonitorKeepsItselfAlive) {
    const std::weak_ptr<Reachability> watched = m_monitor;
    ASSERT_TRUE(m_monitor->startNotifier());
    m_monitor.reset();
    ASSERT_FALSE(watched.expired());
    watched.lock()->stopNotifier();
    EXPECT_TRUE(watched.expired());
}

TEST_F(ReachabilityTest, StopWithoutStartIsHarmless) {
    m_monitor->stopNotifier();
    m_monitor->stopNotifier();
    EXPECT_TRUE(m_monitor->isReachable());
}

TEST_F(ReachabilityTest, StartFailsWithoutAQueueOrACallback) {
    const std::weak_ptr<Reachability> watched = m_monitor;
    m_services.reachability().setQueuesFail(true);
    EXPECT_FALSE(m_monitor->startNotifier());
    m_services.reachability().setQueuesFail(false);
    m_services.reachability().setCallbacksFail(true);
    EXPECT_FALSE(m_monitor->startNotifier());
    m_services.reachability().setCallbacksFail(false);
    m_monitor.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(ReachabilityTest, SecondStartDeliversOnTheNewQueueOnly) {
    std::atomic<int> unreachable = 0;
    m_monitor->unreachableBlock = [&unreachable](Reachability &) {
        ++unreachable;
    };
    ASSERT_TRUE(m_monitor->startNotifier());
    ASSERT_TRUE(m_monitor->startNotifier());
    EXPECT_EQ(m_services.reachability().queueNames().size(), 2);
    setFlags(0);
    EXPECT_TRUE(spinUntil([&unreachable] { return unreachable == 1; }));
    m_monitor->stopNotifier(); // waits for what is under way
    EXPECT_EQ(unreachable, 1);
}

TEST_F(ReachabilityTest, FailedSecondStartEndsTheFirst) {
    const fakes::TestPlatform inlineQueues(fakes::FakeReachability::Queues::Inline);
    const auto monitor = Reachability::reachabilityWithHostname(host);
    int unreachable = 0;
    monitor->unreachableBlock = [&unreachable](Reachability &) {
        ++unreachable;
    };
    ASSERT_TRUE(monitor->startNotifier());
    inlineQueues.reachability().setQueuesFail(true);
    EXPECT_FALSE(monitor->startNotifier());
    inlineQueues.reachability().setFlags(host, 0);
    EXPECT_EQ(unreachable, 0) << "delivered on a queue that no longer exists";
    EXPECT_EQ(monitor.use_count(), 1);
}

TEST_F(ReachabilityTest, WithoutBlocksOnlyTheNotificationIsPosted) {
    QObject context;
    int posted = 0;
    m_services.platform().notifications->addObserver(text("kReachabilityChangedNotification"), &context,
                                                     [&](const QVariant &) { ++posted; });
    ASSERT_TRUE(m_monitor->startNotifier());
    EXPECT_TRUE(spinUntil([&] { return posted == 1; }));
    m_monitor->stopNotifier();
}

} // namespace

} // namespace quorvane
