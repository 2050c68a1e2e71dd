// Stops: of a launch that is under way, and by the kill.
#include "VpnFixture.h"

#include "common/FileDescriptor.h"

#include <fcntl.h>

namespace quorvane {

namespace {

using VpnStopTest = VpnTest;

TEST_F(VpnStopTest, StopBeforeTheLaunchHasBegunCancelsIt) {
    writeConfiguration();
    m_services.background().hold();
    m_events.post([this] { return m_vpn.startVpn(); });
    ASSERT_EQ(m_services.background().pending(), 1U);
    m_events.post([this] { return m_vpn.stopVpn(); });
    m_services.background().finishAll();
    EXPECT_TRUE(m_services.scripting().calls().empty());
    EXPECT_FALSE(m_vpn.readsLog());
}

TEST_F(VpnStopTest, StopAfterTheLineAwaitsTheNameOfWhatItStarted) {
    // The process has its name only after a few looks, while it holds the line's output.
    const auto output = std::make_shared<char>();
    leaveOpen(output);
    launch();
    m_services.scripting().clear();
    int looks = 0;
    m_services.processes().setQueryHook([&] {
        if (++looks == 5) {
            m_services.processes().setNames({"init", "openvpn"});
        }
    });
    stop();
    EXPECT_GE(looks, 5);
    ASSERT_EQ(m_services.scripting().calls().size(), 1U);
    EXPECT_EQ(m_services.scripting().calls()[0].line, text("sudo -S killall -9 openvpn"));
}

TEST_F(VpnStopTest, StopAwaitsWhatItStartedBesideTheOpenVpnOfAnotherProgram) {
    m_services.processes().setNames({"init", "openvpn"});
    const auto output = std::make_shared<char>();
    leaveOpen(output);
    launch();
    int looks = 0;
    m_services.processes().setQueryHook([&] {
        if (++looks == 5) {
            m_services.processes().setNames({"init", "openvpn", "openvpn"});
        }
    });
    stop();
    EXPECT_GE(looks, 5);
}

TEST_F(VpnStopTest, StopDoesNotAwaitWhatHasEnded) {
    {
        const auto output = std::make_shared<char>();
        leaveOpen(output);
        launch();
    }
    m_services.scripting().clear();
    m_services.background().hold();
    m_events.post([this] { return m_vpn.stopVpn(); });
    EXPECT_EQ(m_services.background().pending(), 0U);
    EXPECT_FALSE(m_events.isHeld());
}

TEST_F(VpnStopTest, KillOfAHiddenProcessAwaitsTheEndOfItsSign) {
    // Where the system hides root's processes, a lock on the log shows that the tunnel runs.
    m_services.processes().setShowsOtherUsers(false);
    m_services.processes().setNames({"bash"});
    FileDescriptor log(::open(m_log.toUtf8().constData(), O_RDONLY | O_CREAT | O_CLOEXEC, 0600));

    struct flock whole {};

    whole.l_type = F_RDLCK;
    ASSERT_EQ(::fcntl(log.get(), F_OFD_SETLK, &whole), 0);
    int looks = 0;
    m_services.scripting().setHandler([&](const FakeScriptingService::Call &) {
        m_services.processes().setQueryHook([&] {
            if (++looks == 5) {
                log.reset();
            }
        });
        return FakeScriptingService::success(text(""));
    });
    stop();
    EXPECT_EQ(m_services.scripting().calls().size(), 1U);
    EXPECT_EQ(looks, 6); // two queries a look
    stop();
    EXPECT_EQ(m_services.scripting().calls().size(), 1U);
}

TEST_F(VpnStopTest, OnlyTheFirstOfUnchangedRefusalsIsLogged) {
    m_services.processes().setNames({"init", "openvpn"});
    m_services.scripting().setHandler(
        [](const FakeScriptingService::Call &) { return FakeScriptingService::failure(1, text("no")); });
    stop();
    const QStringList first = m_services.logSink().lines();
    EXPECT_EQ(first,
              (QStringList{text("execute script"), text("Apple script error: no"), text("Stopped? > 0")}));
    stop();
    stop();
    EXPECT_EQ(m_services.logSink().lines(), first);
    EXPECT_EQ(m_vpn.sameRefusals(), 3);
    EXPECT_EQ(m_vpn.refusedKills(), 3U);
    m_services.processes().setNames({"init", "openvpn", "openvpn"}); // the processes change
    stop();
    EXPECT_EQ(m_vpn.sameRefusals(), 1);
    EXPECT_EQ(m_services.logSink().lines().size(), 6);
    QrvCredentials::sharedInstance().saveUserName(text("ada"), text("other")); // the pair changes
    stop();
    EXPECT_EQ(m_vpn.sameRefusals(), 1);
    m_vpn.forgetRefusal(); // a press
    stop();
    EXPECT_EQ(m_vpn.sameRefusals(), 1);
    EXPECT_EQ(m_services.logSink().lines().size(), 12);
    m_services.scripting().setHandler(
        [](const FakeScriptingService::Call &) { return FakeScriptingService::failure(1, text("else")); });
    stop();
    EXPECT_EQ(m_vpn.sameRefusals(), 1);
    EXPECT_EQ(m_services.logSink().lines().last(), text("Stopped? > 0"));
    EXPECT_EQ(m_services.logSink().lines().size(), 15);
}

TEST_F(VpnStopTest, KillRunsOnlyWhileSuchAProcessExists) {
    m_services.processes().setNames({"init", "openvpnx", "OpenVPN", "openvp"});
    stop();
    EXPECT_TRUE(m_services.scripting().calls().empty());
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
    m_services.processes().setNames({"init", "openvpn"});
    stop();
    ASSERT_EQ(m_services.scripting().calls().size(), 1U);
    EXPECT_EQ(m_services.scripting().calls()[0].line, text("sudo -S killall -9 openvpn"));
    EXPECT_TRUE(logged("Stopped? > 1"));
}

TEST_F(VpnStopTest, FailedKillIsLoggedEvenWithDiagnosticsOff) {
    m_services.preferences().setValue(text("showLogs"), 1);
    m_services.processes().setNames({"openvpn"});
    m_services.scripting().queueAnswer(FakeScriptingService::failure(1, text("no")));
    stop();
    EXPECT_EQ(m_services.logSink().lines(), QStringList{text("Stopped? > 0")});
}

TEST_F(VpnStopTest, FailedProcessSnapshotKillsNothing) {
    m_services.processes().setNames({"openvpn"});
    m_services.processes().failWith(5);
    stop();
    EXPECT_TRUE(m_services.scripting().calls().empty());
}

TEST_F(VpnStopTest, StartKillsBeforeItLaunches) {
    writeConfiguration();
    m_services.processes().setNames({"openvpn"});
    run(&Vpn::startVpn);
    ASSERT_EQ(m_services.scripting().calls().size(), 2U);
    EXPECT_EQ(m_services.scripting().calls()[0].line, text("sudo -S killall -9 openvpn"));
    EXPECT_TRUE(m_services.scripting().calls()[1].line.contains(text("--config")));
}

} // namespace

} // namespace quorvane
