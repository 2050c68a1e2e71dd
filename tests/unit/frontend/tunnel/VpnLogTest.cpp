// How the log of a launch is read, and what ends the reading.
#include "VpnFixture.h"

#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

namespace {

/// For its lifetime this process can read the folder but not write into it, even if root runs it.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(const QString &folder) : m_folder(folder.toUtf8()) {
        EXPECT_EQ(::chmod(m_folder.constData(), 0555), 0);
        for (QDir above(folder); above.cdUp() && above != QDir::temp() && !above.isRoot();) {
            EXPECT_EQ(::chmod(above.path().toUtf8().constData(), 0755), 0);
        }
        if (m_wasRoot) {
            EXPECT_EQ(::seteuid(unprivilegedId), 0);
        }
    }

    ~ReadOnlyFolder() {
        if (m_wasRoot) {
            EXPECT_EQ(::seteuid(0), 0);
        }
        EXPECT_EQ(::chmod(m_folder.constData(), 0755), 0);
    }

    ReadOnlyFolder(const ReadOnlyFolder &) = delete;
    ReadOnlyFolder &operator=(const ReadOnlyFolder &) = delete;

private:
    static constexpr uid_t unprivilegedId = 65534;

    const QByteArray m_folder;
    const bool m_wasRoot = ::geteuid() == 0;
};

using VpnLogTest = VpnTest;

TEST_F(VpnLogTest, WhatTheLogContainedBeforeIsNoVerdict) {
    writeConfiguration();
    writeLog("a\nAUTH_FAILED\n");
    QFile::setPermissions(m_log, QFile::permissions(m_log) | QFile::ReadOther);
    {
        const ReadOnlyFolder kept(m_folder); // the old log stays where it is
        EXPECT_TRUE(configure());
    }
    EXPECT_TRUE(logged(text("log file %1 cannot be created").arg(m_log)));
    advance(2.0);
    EXPECT_TRUE(m_vpn.readsLog());
    QFile log(m_log);
    ASSERT_TRUE(log.open(QIODevice::Append));
    log.write("Initialization Sequence Completed\n");
    log.close();
    advance(2.0);
    EXPECT_EQ(m_shown, 1);
}

TEST_F(VpnLogTest, AttemptWhoseProcessesHaveEndedFailsAtTheSecondLook) {
    m_services.processes().setNames({"init"});
    launch();
    advance(2.0);
    EXPECT_TRUE(m_vpn.readsLog());
    advance(2.0);
    EXPECT_FALSE(m_vpn.readsLog());
    EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_delegate), std::vector<double>{5.0});
    EXPECT_TRUE(logged("stopVpn by end of openvpn"));
    advance(5.0);
    EXPECT_EQ(m_delegate.errors, 1);
}

TEST_F(VpnLogTest, SilentOpenVpnThatRunsIsPolledForEver) {
    m_services.processes().setNames({"init"});
    launch();
    m_services.processes().setNames({"init", "openvpn"});
    for (int i = 0; i < 50; ++i) {
        advance(2.0);
        EXPECT_TRUE(m_vpn.readsLog());
    }
}

TEST_F(VpnLogTest, OpenVpnOfAnotherProgramIsNotTheLaunchedOne) {
    m_services.processes().setNames({"init", "openvpn"});
    m_services.scripting().queueAnswer(FakeScriptingService::failure(1, text("no"))); // the kill
    writeConfiguration();
    run(&Vpn::startVpn);
    advance(4.0);
    EXPECT_FALSE(m_vpn.readsLog());
}

TEST_F(VpnLogTest, VerdictAtTheSecondLookCounts) {
    m_services.processes().setNames({"init"});
    launch();
    advance(2.0);
    writeLog("x\nInitialization Sequence Completed\n");
    advance(2.0);
    EXPECT_EQ(m_shown, 1);
    EXPECT_FALSE(logged("stopVpn by end of openvpn"));
}

TEST_F(VpnLogTest, EndOfProcessesIsNotJudgedWhereTheyCannotBeSeen) {
    m_services.processes().setNames({});
    launch();
    advance(20.0);
    EXPECT_TRUE(m_vpn.readsLog());
}

TEST_F(VpnLogTest, ReadingThatWaitedUntilAStopIsDropped) {
    launch();
    writeLog("x\nInitialization Sequence Completed\n");
    m_services.background().hold();
    m_events.post([this]() -> Task<> { co_await m_events.background([] {}); });
    m_events.post([this] { return m_vpn.stopVpn(); });
    m_services.delayedCalls().advance(2.0); // the reading is due, and waits behind the stop
    m_services.background().finishAll();
    EXPECT_EQ(m_shown, 0);
    EXPECT_FALSE(m_vpn.readsLog());
}

TEST_F(VpnLogTest, LogIsEmptiedAndPolled) {
    writeLog("old AUTH_FAILED\n");
    launch();
    EXPECT_EQ(contentsOf(m_log), QByteArray());
    EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_vpn), std::vector<double>{2.0});
    EXPECT_FALSE(logged("stopVpn by AUTH_FAILED"));
    EXPECT_TRUE(logged("configVpn begins"));
}

TEST_F(VpnLogTest, MissingOldLogIsMentioned) {
    launch();
    EXPECT_TRUE(m_services.logSink().lines().contains(text("log file %1 wasn't removed").arg(m_log)));
}

TEST_F(VpnLogTest, StopEndsThePolling) {
    launch();
    stop();
    EXPECT_FALSE(m_vpn.readsLog());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
}

TEST_F(VpnLogTest, SuccessIsPostedOnceAndEndsThePolling) {
    launch();
    writeLog("x\nInitialization Sequence Completed\n");
    advance(2.0);
    EXPECT_EQ(m_shown, 1);
    EXPECT_FALSE(m_vpn.readsLog());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
    EXPECT_EQ(m_delegate.errors, 0);
}

TEST_F(VpnLogTest, PollingContinuesEveryTwoSecondsUntilThereIsAVerdict) {
    launch();
    for (int i = 0; i < 50; ++i) {
        advance(2.0);
        EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_vpn), std::vector<double>{2.0});
    }
    EXPECT_EQ(m_shown, 0);
}

TEST_F(VpnLogTest, CompletionWithErrorsFailsAfterFiveSeconds) {
    launch();
    m_services.logSink().clear();
    writeLog("Initialization Sequence Completed with errors\n");
    advance(2.0);
    EXPECT_EQ(m_shown, 0);
    EXPECT_FALSE(m_vpn.readsLog());
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
    EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_delegate), std::vector<double>{5.0});
    advance(5.0);
    EXPECT_EQ(m_delegate.errors, 1);
}

TEST_F(VpnLogTest, TwoMarkersStopTwiceAndReportTwice) {
    launch();
    m_services.processes().setNames({"openvpn"});
    m_services.scripting().clear();
    writeLog("a\nAUTH_FAILED\nExiting due to fatal error\n");
    advance(2.0);
    EXPECT_EQ(m_services.scripting().calls().size(), 2U);
    EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_delegate), (std::vector<double>{5.0, 5.0}));
    EXPECT_TRUE(logged("stopVpn by AUTH_FAILED"));
    EXPECT_TRUE(logged("*** auth-user-pass fails. Not found .vpnCreds.txt"));
    advance(5.0);
    EXPECT_EQ(m_delegate.errors, 2);
}

TEST_F(VpnLogTest, StopDoesNotCancelAReportedFailure) {
    launch();
    writeLog("a\nAUTH_FAILED\n");
    advance(2.0);
    stop();
    advance(5.0);
    EXPECT_EQ(m_delegate.errors, 1);
}

TEST_F(VpnLogTest, LinkRemoteAsTheLastLineFails) {
    launch();
    writeLog("a\nUDPv4 link remote: 1.2.3.4\n");
    advance(2.0);
    EXPECT_TRUE(logged("lastLine: UDPv4 link remote: 1.2.3.4"));
    EXPECT_TRUE(logged("stopVpn by link remote"));
    advance(5.0);
    EXPECT_EQ(m_delegate.errors, 1);
}

TEST_F(VpnLogTest, LastLineIsMasked) {
    launch();
    writeLog("a\nhello ada pw\n");
    advance(2.0);
    EXPECT_TRUE(logged("lastLine: hello ***** *****"));
}

TEST_F(VpnLogTest, LogOfOneLineIsNotLogged) {
    launch();
    m_services.logSink().clear();
    writeLog("only one line");
    advance(2.0);
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
    EXPECT_TRUE(m_vpn.readsLog());
}

TEST_F(VpnLogTest, MissingOrBinaryLogKeepsPolling) {
    launch();
    ASSERT_TRUE(QFile::remove(m_log));
    advance(2.0);
    EXPECT_TRUE(m_vpn.readsLog());
    writeLog("\xff\nInitialization Sequence Completed\n");
    advance(2.0);
    EXPECT_EQ(m_shown, 0);
    EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_vpn), std::vector<double>{2.0});
}

TEST_F(VpnLogTest, WithoutADelegateAFailureOnlyStops) {
    m_vpn.setDelegate(nullptr);
    launch();
    writeLog("a\nAUTH_FAILED\n");
    advance(2.0);
    EXPECT_FALSE(m_vpn.readsLog());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
}

} // namespace

} // namespace quorvane
