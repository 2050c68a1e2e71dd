#include "platform/linux/network/NetlinkReachability.h"
#include "platform/linux/network/RouteTable.h"
#include "platform/linux/process/ChildProcess.h"
#include "tests/unit/platform/linux/Sandbox.h"

#include <QElapsedTimer>
#include <QFile>

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

namespace quorvane::platform {

namespace {

using platform::NetlinkReachability;
namespace Flag = platform::ReachabilityFlag;

constexpr std::uint32_t address(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    return a << 24U | b << 16U | c << 8U | d;
}

constexpr std::uint32_t far = address(198, 51, 100, 7);

/// Runs `ip` with the arguments, separated by blanks.
void ip(const char *arguments) {
    const platform::ChildOutcome outcome = platform::runChild(
        {platform::systemProgram("ip"), QByteArray("ip ").append(arguments).split(' '), {}, "/"});
    ASSERT_EQ(outcome.startFailure, 0);
    ASSERT_EQ(outcome.status, 0) << arguments << ": " << outcome.error.constData();
}

/// Collects the states that a target reports on a queue.
class Watcher {
public:
    explicit Watcher(std::unique_ptr<platform::ReachabilityTarget> watched) : m_target(std::move(watched)) {
        m_target->setCallback([this](std::uint32_t flags) {
            const std::lock_guard lock(m_mutex);
            m_states.push_back(flags);
        });
        EXPECT_TRUE(m_target->setQueue(m_queue.get()));
    }

    ~Watcher() { m_target->setQueue(nullptr); }

    Watcher(const Watcher &) = delete;
    Watcher &operator=(const Watcher &) = delete;

    [[nodiscard]] std::vector<std::uint32_t> seen() const {
        const std::lock_guard lock(m_mutex);
        return m_states;
    }

    /// Waits until exactly these states were reported.
    [[nodiscard]] bool reports(const std::vector<std::uint32_t> &expected) const {
        QElapsedTimer clock;
        clock.start();
        while (seen() != expected && clock.elapsed() < 10000) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return seen() == expected;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::uint32_t> m_states;
    std::unique_ptr<platform::SerialQueue> m_queue = NetlinkReachability().makeQueue(QStringLiteral("test"));
    std::unique_ptr<platform::ReachabilityTarget> m_target;
};

class NetlinkReachabilityTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!sandbox::isInside()) {
            GTEST_SKIP() << "needs its own network namespace";
        }
        ip("link add eth0 type veth peer name far0");
        ip("link set far0 up");
        ip("link set eth0 up");
        ip("address add 192.0.2.2/24 dev eth0");
    }

    void TearDown() override {
        if (sandbox::isInside()) {
            ip("link delete eth0");
        }
    }

    [[nodiscard]] std::optional<std::uint32_t> flagsOf(std::uint32_t target) {
        return m_reachability.targetWithAddress(target)->flags();
    }

    NetlinkReachability m_reachability;
};

TEST_F(NetlinkReachabilityTest, FlagsDescribeTheRouteToAnAddress) {
    EXPECT_EQ(flagsOf(far), 0U);
    EXPECT_EQ(flagsOf(address(192, 0, 2, 9)), Flag::reachable | Flag::isDirect);
    EXPECT_EQ(flagsOf(address(192, 0, 2, 2)), Flag::reachable | Flag::isLocalAddress | Flag::isDirect);
    EXPECT_EQ(flagsOf(address(127, 0, 0, 1)), Flag::reachable | Flag::isLocalAddress | Flag::isDirect);
    ip("route add default via 192.0.2.1");
    EXPECT_EQ(flagsOf(far), Flag::reachable);
    ip("route add unreachable 198.51.100.0/24");
    EXPECT_EQ(flagsOf(far), 0U);
    ip("route delete unreachable 198.51.100.0/24");
    ip("route add blackhole 198.51.100.0/24");
    EXPECT_EQ(flagsOf(far), 0U);
    ip("route delete blackhole 198.51.100.0/24");
}

TEST_F(NetlinkReachabilityTest, ZeroAddressMeansTheDefaultRoute) {
    EXPECT_EQ(flagsOf(0), 0U);
    ip("route add 198.51.100.0/24 via 192.0.2.1");
    EXPECT_EQ(flagsOf(0), 0U);
    ip("route add unreachable default metric 5000");
    EXPECT_EQ(flagsOf(0), 0U);
    ip("route add default via 192.0.2.1");
    EXPECT_EQ(flagsOf(0), Flag::reachable);
    ip("route delete unreachable default metric 5000");
}

TEST_F(NetlinkReachabilityTest, LinkLocalNetworkMustBeOnALink) {
    const std::uint32_t linkLocal = address(169, 254, 0, 0);
    ip("route add default via 192.0.2.1");
    EXPECT_EQ(flagsOf(linkLocal), 0U) << "a default route does not reach it";
    ip("route add 169.254.0.0/16 dev eth0");
    EXPECT_EQ(flagsOf(linkLocal), Flag::reachable | Flag::isDirect);
    ip("route delete 169.254.0.0/16 dev eth0");
    ip("address add 169.254.3.4/16 dev eth0");
    EXPECT_EQ(flagsOf(linkLocal), Flag::reachable | Flag::isDirect);
}

TEST_F(NetlinkReachabilityTest, ReportsTheFirstStateAndThenChangesOnly) {
    const Watcher watcher(m_reachability.targetWithAddress(far));
    ASSERT_TRUE(watcher.reports({0}));
    ip("address add 192.0.2.3/24 dev eth0");
    ip("route add default via 192.0.2.1");
    ASSERT_TRUE(watcher.reports({0, 2}));
    ip("route add 10.0.0.0/8 via 192.0.2.1");
    ip("route delete default");
    ASSERT_TRUE(watcher.reports({0, 2, 0}));
    ip("route add default via 192.0.2.1");
    ASSERT_TRUE(watcher.reports({0, 2, 0, 2}));
    ip("link set eth0 down");
    EXPECT_TRUE(watcher.reports({0, 2, 0, 2, 0}));
}

TEST_F(NetlinkReachabilityTest, DefaultRouteIsWatchedToo) {
    const Watcher watcher(m_reachability.targetWithAddress(0));
    ASSERT_TRUE(watcher.reports({0}));
    ip("route add default via 192.0.2.1");
    EXPECT_TRUE(watcher.reports({0, 2}));
}

TEST_F(NetlinkReachabilityTest, ChangeIsReportedAtOnce) {
    const Watcher watcher(m_reachability.targetWithAddress(far));
    ASSERT_TRUE(watcher.reports({0}));
    QElapsedTimer clock;
    clock.start();
    ip("route add default via 192.0.2.1");
    ASSERT_TRUE(watcher.reports({0, 2}));
    EXPECT_LT(clock.elapsed(), 1000);
}

TEST_F(NetlinkReachabilityTest, StoppedTargetsReportNothingAndCanStartAgain) {
    std::promise<void> queueIsEmpty; // outlives the queue
    auto target = m_reachability.targetWithAddress(far);
    const auto queue = m_reachability.makeQueue(QStringLiteral("q"));
    std::atomic<int> calls = 0;
    target->setCallback([&](std::uint32_t) { ++calls; });
    EXPECT_TRUE(target->setQueue(nullptr));
    for (int round = 0; round < 20; ++round) {
        ASSERT_TRUE(target->setQueue(queue.get()));
        EXPECT_TRUE(target->setQueue(nullptr));
    }
    const int before = calls;
    const Watcher other(m_reachability.targetWithAddress(far));
    ASSERT_TRUE(other.reports({0}));
    ip("route add default via 192.0.2.1");
    ASSERT_TRUE(other.reports({0, 2}));
    queue->async([&queueIsEmpty] { queueIsEmpty.set_value(); });
    queueIsEmpty.get_future().wait();
    EXPECT_EQ(calls, before);
}

TEST_F(NetlinkReachabilityTest, CallbackMayDestroyItsTarget) {
    auto target = m_reachability.targetWithAddress(far);
    const auto queue = m_reachability.makeQueue(QStringLiteral("q"));
    std::atomic<bool> ended = false;
    target->setCallback([&](std::uint32_t) {
        target->setQueue(nullptr);
        target.reset();
        ended = true;
    });
    ASSERT_TRUE(target->setQueue(queue.get()));
    QElapsedTimer clock;
    clock.start();
    while (!ended && clock.elapsed() < 10000) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_TRUE(ended);
}

TEST_F(NetlinkReachabilityTest, NameCountsAsItsAddress) {
    QFile hosts(QStringLiteral("/etc/hosts"));
    if (!sandbox::hasAccounts() || !hosts.open(QIODevice::Append)) {
        GTEST_SKIP() << "needs its own hosts file";
    }
    hosts.write("198.51.100.7 far.quorvane.test\n");
    hosts.close();
    ip("route add default via 192.0.2.1");
    ip("route add unreachable 198.51.100.0/24");
    // Until the name is resolved, the default route counts, so a first 2 may be reported before the 0.
    const Watcher watcher(m_reachability.targetWithName(QStringLiteral("far.quorvane.test")));
    QElapsedTimer clock;
    clock.start();
    while ((watcher.seen().empty() || watcher.seen().back() != 0) && clock.elapsed() < 10000) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ASSERT_FALSE(watcher.seen().empty());
    EXPECT_EQ(watcher.seen().back(), 0U);
    auto expected = watcher.seen();
    expected.push_back(2);
    ip("route delete unreachable 198.51.100.0/24");
    EXPECT_TRUE(watcher.reports(expected));
}

TEST_F(NetlinkReachabilityTest, UnresolvableNameFollowsTheDefaultRouteWithoutBlocking) {
    if (!sandbox::hasAccounts()) {
        GTEST_SKIP() << "needs its own resolver file";
    }
    // A name server that never answers: each look-up takes seconds.
    QFile resolver(QStringLiteral("/etc/resolv.conf"));
    ASSERT_TRUE(resolver.open(QIODevice::WriteOnly | QIODevice::Truncate));
    resolver.write("nameserver 192.0.2.77\noptions timeout:2 attempts:1\n");
    resolver.close();
    ip("route add default via 192.0.2.1");
    QElapsedTimer clock;
    clock.start();
    {
        const auto target = m_reachability.targetWithName(QStringLiteral("nowhere.quorvane.test"));
        EXPECT_EQ(target->flags(), Flag::reachable);
        const Watcher watcher(m_reachability.targetWithName(QStringLiteral("nowhere.quorvane.test")));
        EXPECT_TRUE(watcher.reports({2}));
        ip("route delete default");
        EXPECT_TRUE(watcher.reports({2, 0}));
    }
    EXPECT_LT(clock.elapsed(), 1500) << "a call waited for the name server";
}

TEST(NetlinkReachabilityNames, EmptyNameHasNoTarget) {
    NetlinkReachability reachability;
    EXPECT_EQ(reachability.targetWithName(QString()), nullptr);
    EXPECT_EQ(reachability.targetWithName(QStringLiteral("  ")), nullptr);
    EXPECT_NE(reachability.targetWithName(QStringLiteral("127.0.0.1")), nullptr);
}

TEST(NetlinkReachabilityNames, NumericNamesNeedNoLookUp) {
    NetlinkReachability reachability;
    EXPECT_EQ(reachability.targetWithName(QStringLiteral("127.0.0.1"))->flags(),
              Flag::reachable | Flag::isLocalAddress | Flag::isDirect);
}

} // namespace

} // namespace quorvane::platform
