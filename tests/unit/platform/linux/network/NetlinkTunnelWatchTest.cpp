#include "platform/linux/network/NetlinkTunnelWatch.h"

#include "tests/unit/EventLoop.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

/// A child process that waits until it is killed.
class Child {
public:
    Child() : m_process(::fork()) {
        if (m_process == 0) {
            for (;;) {
                ::pause();
            }
        }
    }

    ~Child() { kill(); }

    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    [[nodiscard]] qint64 id() const { return m_process; }

    void kill() {
        if (m_process > 0) {
            ::kill(m_process, SIGKILL);
            ::waitpid(m_process, nullptr, 0);
            m_process = -1;
        }
    }

private:
    pid_t m_process;
};

class NetlinkTunnelWatchTest : public testing::Test {
protected:
    void watch(const QSet<qint64> &processes) {
        m_watch.watch(processes, [this](TunnelLoss loss) { m_losses.push_back(loss); });
    }

    NetlinkTunnelWatch m_watch;
    std::vector<TunnelLoss> m_losses;
};

TEST_F(NetlinkTunnelWatchTest, EndOfAProcessIsReportedOnce) {
    Child guard;
    Child openVpn;
    watch({guard.id(), openVpn.id()});
    deliverQueued();
    EXPECT_TRUE(m_losses.empty());
    openVpn.kill();
    guard.kill();
    EXPECT_TRUE(spinUntil([this] { return !m_losses.empty(); }));
    deliverQueued();
    EXPECT_EQ(m_losses, std::vector{TunnelLoss::ProcessEnded});
}

TEST_F(NetlinkTunnelWatchTest, ProcessThatHasEndedAlreadyIsReportedLater) {
    Child openVpn;
    const qint64 id = openVpn.id();
    openVpn.kill();
    watch({id});
    EXPECT_TRUE(m_losses.empty());
    deliverQueued();
    EXPECT_EQ(m_losses, std::vector{TunnelLoss::ProcessEnded});
}

TEST_F(NetlinkTunnelWatchTest, NothingIsReportedAfterAStop) {
    Child openVpn;
    watch({openVpn.id()});
    openVpn.kill();
    m_watch.stop();
    deliverQueued();
    EXPECT_TRUE(m_losses.empty());
}

TEST_F(NetlinkTunnelWatchTest, ReportThatIsOnItsWayIsDroppedByAnotherWatch) {
    Child first;
    const qint64 id = first.id();
    first.kill();
    Child second;
    watch({id});
    watch({second.id()});
    deliverQueued();
    EXPECT_TRUE(m_losses.empty());
}

} // namespace

} // namespace quorvane::platform
