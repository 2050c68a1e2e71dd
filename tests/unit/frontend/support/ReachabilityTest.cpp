#include "frontend/support/Reachability.h"

#include "fakes/TestPlatform.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QThread>
#include <atomic>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

QString text(const char *utf8) {
    return QString::fromUtf8(utf8);
}

const QString host = QStringLiteral("net.quorvane.test");

class ReachabilityTest : public testing::Test {
protected:
    void setFlags(std::uint32_t flags) { services.reachability().setFlags(host, flags); }

    fakes::TestPlatform services;
    Reachability::Pointer monitor = Reachability::reachabilityWithHostname(host);
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

TEST_F(ReachabilityTest, TargetsThatCannotBeMadeGiveNothing) {
    EXPECT_EQ(Reachability::reachabilityWithHostname(text("")), nullptr);
    services.reachability().setTargetsFail(true);
    EXPECT_EQ(Reachability::reachabilityWithHostName(host), nullptr);
    EXPECT_EQ(Reachability::reachabilityWithAddress(1), nullptr);
    EXPECT_EQ(Reachability::reachabilityForInternetConnection(), nullptr);
    EXPECT_EQ(Reachability::reachabilityForLocalWiFi(), nullptr);
}

TEST_F(ReachabilityTest, AddressTargets) {
    services.reachability().setFlags(text("0.0.0.0"), 0);
    services.reachability().setFlags(text("169.254.0.0"), 131074);
    EXPECT_EQ(Reachability::reachabilityForInternetConnection()->reachabilityFlags(), 0U);
    EXPECT_EQ(Reachability::reachabilityForLocalWiFi()->reachabilityFlags(), 131074U);
}

TEST_F(ReachabilityTest, QueriesFollowTheFlags) {
    setFlags(2);
    EXPECT_TRUE(monitor->isReachable());
    EXPECT_TRUE(monitor->isReachableViaWiFi());
    EXPECT_FALSE(monitor->isReachableViaWWAN());
    EXPECT_EQ(monitor->currentReachabilityStatus(), 2);
    EXPECT_FALSE(monitor->connectionRequired());

    setFlags(7); // reachable by its bit, but the connection is not there yet
    EXPECT_FALSE(monitor->isReachable());
    EXPECT_TRUE(monitor->isReachableViaWiFi());
    EXPECT_EQ(monitor->currentReachabilityStatus(), 0);
    EXPECT_TRUE(monitor->connectionRequired());
    EXPECT_TRUE(monitor->isConnectionRequired());

    setFlags(0);
    EXPECT_FALSE(monitor->isReachable());
    EXPECT_EQ(monitor->currentReachabilityStatus(), 0);
}

TEST_F(ReachabilityTest, OnDemandNeedsItsBitsTogether) {
    for (std::uint32_t flags = 0; flags < 64; ++flags) {
        setFlags(flags);
        EXPECT_EQ(monitor->isConnectionOnDemand(), (flags & 4) != 0 && (flags & (8 | 32)) != 0) << flags;
        EXPECT_EQ(monitor->isInterventionRequired(), (flags & 4) != 0 && (flags & 16) != 0) << flags;
    }
}

TEST_F(ReachabilityTest, UnreadableFlagsAnswerNothing) {
    services.reachability().setUnreadable(host);
    EXPECT_FALSE(monitor->isReachable());
    EXPECT_FALSE(monitor->isReachableViaWiFi());
    EXPECT_EQ(monitor->reachabilityFlags(), 0U);
    EXPECT_EQ(monitor->currentReachabilityStatus(), 0);
    EXPECT_EQ(monitor->currentReachabilityFlags(), text("X- -------"));
}

TEST_F(ReachabilityTest, Strings) {
    setFlags(2);
    EXPECT_EQ(monitor->currentReachabilityString(), text("WiFi"));
    setFlags(0);
    EXPECT_EQ(monitor->currentReachabilityString(), text("No Connection"));
    monitor->reachableOnWWAN = false;
    EXPECT_EQ(monitor->currentReachabilityString(), text("Cellular"));
    setFlags(2);
    EXPECT_EQ(monitor->currentReachabilityString(), text("WiFi"));
}

TEST_F(ReachabilityTest, FlagLetters) {
    const QList<QPair<std::uint32_t, const char *>> rows{
        {0, "X- -------"},      {2, "XR -------"},
        {4, "X- c------"},      {1, "X- -t-----"},
        {16, "X- --i----"},     {8, "X- ---C---"},
        {32, "X- ----D--"},     {65536, "X- -----l-"},
        {131072, "X- ------d"}, {65536 | 131072 | 63, "XR ctiCDld"}};
    for (const auto &[flags, letters] : rows) {
        setFlags(flags);
        EXPECT_EQ(monitor->currentReachabilityFlags(), text(letters)) << flags;
    }
}

TEST_F(ReachabilityTest, DescriptionNamesClassAndAddress) {
    EXPECT_EQ(monitor->description(),
              text("<Reachability: 0x%1>").arg(reinterpret_cast<quintptr>(monitor.get()), 0, 16));
}

TEST_F(ReachabilityTest, CallbackOnItsQueueThenNotificationOnTheMainThread) {
    std::atomic<QThread *> blockThread = nullptr;
    std::atomic<int> reached = 0;
    std::atomic<int> lost = 0;
    monitor->reachableBlock = [&](Reachability &) {
        blockThread = QThread::currentThread();
        ++reached;
    };
    monitor->unreachableBlock = [&](Reachability &) {
        ++lost;
    };
    QObject context;
    int posted = 0;
    QThread *postThread = nullptr;
    services.platform().notifications->addObserver(
        text("kReachabilityChangedNotification"), &context, [&](const QVariant &object) {
            EXPECT_EQ(object.value<Reachability::Pointer>(), monitor);
            postThread = QThread::currentThread();
            ++posted;
        });
    ASSERT_TRUE(monitor->startNotifier());
    ASSERT_TRUE(spinUntil([&] { return posted == 1; })); // the first state is told too
    EXPECT_EQ(reached, 1);
    EXPECT_NE(blockThread.load(), QThread::currentThread());
    EXPECT_EQ(postThread, QThread::currentThread());
    setFlags(0);
    ASSERT_TRUE(spinUntil([&] { return posted == 2; }));
    EXPECT_EQ(lost, 1);
    EXPECT_EQ(reached, 1);
    monitor->stopNotifier();
    setFlags(2);
    deliverQueued();
    EXPECT_EQ(posted, 2);
    EXPECT_EQ(reached, 1);
}

TEST_F(ReachabilityTest, RunningMonitorKeepsItselfAlive) {
    const std::weak_ptr<Reachability> watched = monitor;
    ASSERT_TRUE(monitor->startNotifier());
    monitor.reset();
    ASSERT_FALSE(watched.expired());
    watched.lock()->stopNotifier();
    EXPECT_TRUE(watched.expired());
}

TEST_F(ReachabilityTest, StopWithoutStartIsHarmless) {
    monitor->stopNotifier();
    monitor->stopNotifier();
    EXPECT_TRUE(monitor->isReachable());
}

TEST_F(ReachabilityTest, StartFailsWithoutAQueueOrACallback) {
    const std::weak_ptr<Reachability> watched = monitor;
    services.reachability().setQueuesFail(true);
    EXPECT_FALSE(monitor->startNotifier());
    services.reachability().setQueuesFail(false);
    services.reachability().setCallbacksFail(true);
    EXPECT_FALSE(monitor->startNotifier());
    services.reachability().setCallbacksFail(false);
    monitor.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(ReachabilityTest, WithoutBlocksOnlyTheNotificationIsPosted) {
    QObject context;
    int posted = 0;
    services.platform().notifications->addObserver(text("kReachabilityChangedNotification"), &context,
                                                   [&](const QVariant &) { ++posted; });
    ASSERT_TRUE(monitor->startNotifier());
    EXPECT_TRUE(spinUntil([&] { return posted == 1; }));
    monitor->stopNotifier();
}

} // namespace

} // namespace quorvane
