#include "frontend/tunnel/Vpn.h"
#include "frontend/session/ProcessInfo.h"

#include "fakes/TestPlatform.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/SessionReset.h"
#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

using fakes::FakeScriptingService;

QByteArray contentsOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

class RecordingDelegate final : public VpnProtocol {
public:
    void connectionError() override { ++errors; }

    int errors = 0;
};

class VpnTest : public testing::Test {
protected:
    VpnTest() {
        QrvCredentials::sharedInstance().saveUserName(text("ada"), text("pw"));
        QDir().mkpath(m_folder);
        m_vpn.setDelegate(&m_delegate);
        m_services.platform().notifications->addObserver(text("showIp"), &m_context,
                                                         [this](const QVariant &object) {
                                                             ++m_shown;
                                                             EXPECT_FALSE(object.isValid());
                                                         });
    }

    void writeConfiguration() {
        QFile file(m_folder + text("/qrvp.ovpn"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("client\n");
        m_services.preferences().setValues({{text("vpnConfigPath"), file.fileName()},
                                            {text("vpnUsername"), text("u1")},
                                            {text("vpnPassword"), text("p1")}});
    }

    void writeLog(const QByteArray &bytes) {
        QFile file(m_log);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    /// Launches and waits for the background task.
    void launch() {
        writeConfiguration();
        ASSERT_TRUE(m_vpn.configVpn());
        m_services.background().finishAll();
    }

    [[nodiscard]] bool logged(const char *line) { return logged(text(line)); }

    [[nodiscard]] bool logged(const QString &line) { return m_services.logSink().lines().contains(line); }

    /// Checks that the attempt ends like any other failed one, and that nothing is launched or watched.
    void expectFailedAttempt() {
        m_services.processes().setNames({"openvpn"});
        EXPECT_FALSE(m_vpn.configVpn());
        m_services.background().finishAll();
        ASSERT_EQ(m_services.scripting().calls().size(), 1U);
        EXPECT_EQ(m_services.scripting().calls()[0].line, text("sudo -S killall -9 openvpn"));
        EXPECT_FALSE(m_vpn.readsLog());
        EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_delegate), std::vector<double>{5.0});
        EXPECT_TRUE(m_services.delayedCalls().delaysFor(&m_vpn).empty());
        m_services.delayedCalls().advance(5.0);
        EXPECT_EQ(m_delegate.errors, 1);
    }

    fakes::TestPlatform m_services;
    QString m_folder = m_services.home() + text("/Documents/Quorvane");
    QString m_log = m_folder + text("/openvpn.log");
    QObject m_context;
    RecordingDelegate m_delegate;
    ProcessInfo m_processes;
    Vpn m_vpn{m_processes};
    int m_shown = 0;
};

TEST_F(VpnTest, LaunchLineByteForByte) {
    launch();
    const auto calls = m_services.scripting().calls();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].kind, FakeScriptingService::Kind::Administrator);
    EXPECT_EQ(calls[0].line, text("'%1/openvpn' --config '%2/qrvp.ovpn'  --auth-user-pass '%2/.vpnCreds.txt' "
                                  "--log-append '%2/openvpn.log' &")
                                 .arg(m_services.platform().bundle->resourcesPath(), m_folder));
    EXPECT_TRUE(logged("> 1"));
}

TEST_F(VpnTest, ApostropheInAPathFailsTheAttempt) {
    writeConfiguration();
    const QString odd = m_folder + text("/x' ; touch y; '.ovpn");
    ASSERT_TRUE(QFile::rename(m_folder + text("/qrvp.ovpn"), odd));
    m_services.preferences().setValue(text("vpnConfigPath"), odd);
    expectFailedAttempt();
    EXPECT_TRUE(logged(text("not started: there is an apostrophe in ") + odd));
}

TEST_F(VpnTest, OtherCharactersInAPathAreAccepted) {
    writeConfiguration();
    const QString odd = m_folder + text("/a \"b\" $HOME `id` \\ * \xC3\xBC.ovpn");
    ASSERT_TRUE(QFile::rename(m_folder + text("/qrvp.ovpn"), odd));
    m_services.preferences().setValue(text("vpnConfigPath"), odd);
    ASSERT_TRUE(m_vpn.configVpn());
    m_services.background().finishAll();
    EXPECT_TRUE(m_services.scripting().calls()[0].line.contains(text(" --config '") + odd + text("' ")));
}

TEST_F(VpnTest, LaunchResultIsLoggedEvenWithDiagnosticsOff) {
    m_services.preferences().setValue(text("showLogs"), 1);
    m_services.scripting().queueAnswer(FakeScriptingService::failure(1, text("no")));
    launch();
    EXPECT_EQ(m_services.logSink().lines(), QStringList{text("> 0")});
}

TEST_F(VpnTest, CredentialsFileIsPrivateAndStaysAfterTheLaunch) {
    launch();
    EXPECT_EQ(contentsOf(m_folder + text("/.vpnCreds.txt")), QByteArray("u1\np1"));
    EXPECT_EQ(QFile::permissions(m_folder + text("/.vpnCreds.txt")) &
                  (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther),
              QFileDevice::Permissions());
}

TEST_F(VpnTest, AbsentCredentialsAreWrittenAsNull) {
    EXPECT_FALSE(m_vpn.configVpn());
    EXPECT_EQ(contentsOf(m_folder + text("/.vpnCreds.txt")), QByteArray("(null)\n(null)"));
}

TEST_F(VpnTest, NoConfigurationLeavesTheLogAndStartsNothing) {
    writeLog("old");
    m_services.preferences().setValue(text("vpnConfigPath"), text("/no/such/file"));
    EXPECT_FALSE(m_vpn.lacksConfiguration());
    EXPECT_FALSE(m_vpn.configVpn());
    EXPECT_TRUE(m_vpn.lacksConfiguration());
    EXPECT_TRUE(logged("no config file"));
    EXPECT_EQ(contentsOf(m_log), QByteArray("old"));
    EXPECT_TRUE(m_services.scripting().calls().empty());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
    EXPECT_FALSE(m_vpn.readsLog());
}

TEST_F(VpnTest, FolderIsMadeWhenMissing) {
    ASSERT_TRUE(QDir(m_folder).removeRecursively());
    EXPECT_FALSE(m_vpn.configVpn());
    EXPECT_TRUE(QFile::exists(m_folder + text("/.vpnCreds.txt")));
}

TEST_F(VpnTest, CredentialsThatCannotBeWrittenFailTheAttempt) {
    writeConfiguration();
    writeLog("old");
    ASSERT_TRUE(QDir(m_folder).mkpath(text(".vpnCreds.txt/in the way")));
    expectFailedAttempt();
    EXPECT_TRUE(logged(text("no room for the files of a session in %1").arg(m_folder)));
    EXPECT_EQ(contentsOf(m_log), QByteArray("old"));
}

TEST_F(VpnTest, FolderThatCannotBeMadeFailsTheAttemptEvenWithoutAConfiguration) {
    ASSERT_TRUE(QDir(m_folder).removeRecursively());
    QFile obstacle(m_folder);
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    expectFailedAttempt();
    EXPECT_FALSE(logged("no config file"));
}

TEST_F(VpnTest, LogThatCannotBeEmptiedFailsTheAttempt) {
    writeConfiguration();
    ASSERT_TRUE(QDir(m_folder).mkpath(text("openvpn.log/in the way")));
    expectFailedAttempt();
    EXPECT_TRUE(logged(text("log file %1 cannot be created").arg(m_log)));
}

TEST_F(VpnTest, LogIsEmptiedAndPolled) {
    writeLog("old AUTH_FAILED\n");
    launch();
    EXPECT_EQ(contentsOf(m_log), QByteArray());
    EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_vpn), std::vector<double>{2.0});
    EXPECT_FALSE(logged("stopVpn by AUTH_FAILED"));
    EXPECT_TRUE(logged("configVpn begins"));
}

TEST_F(VpnTest, MissingOldLogIsMentioned) {
    launch();
    EXPECT_TRUE(m_services.logSink().lines().contains(text("log file %1 wasn't removed").arg(m_log)));
}

TEST_F(VpnTest, KillRunsOnlyWhileSuchAProcessExists) {
    m_services.processes().setNames({"init", "openvpnx", "OpenVPN", "openvp"});
    m_vpn.stopVpn();
    EXPECT_TRUE(m_services.scripting().calls().empty());
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
    m_services.processes().setNames({"init", "openvpn"});
    m_vpn.stopVpn();
    ASSERT_EQ(m_services.scripting().calls().size(), 1U);
    EXPECT_EQ(m_services.scripting().calls()[0].line, text("sudo -S killall -9 openvpn"));
    EXPECT_TRUE(logged("Stopped? > 1"));
}

TEST_F(VpnTest, FailedKillIsLoggedEvenWithDiagnosticsOff) {
    m_services.preferences().setValue(text("showLogs"), 1);
    m_services.processes().setNames({"openvpn"});
    m_services.scripting().queueAnswer(FakeScriptingService::failure(1, text("no")));
    m_vpn.stopVpn();
    EXPECT_EQ(m_services.logSink().lines(), QStringList{text("Stopped? > 0")});
}

TEST_F(VpnTest, FailedProcessSnapshotKillsNothing) {
    m_services.processes().setNames({"openvpn"});
    m_services.processes().failWith(5);
    m_vpn.stopVpn();
    EXPECT_TRUE(m_services.scripting().calls().empty());
}

TEST_F(VpnTest, StartKillsBeforeItLaunches) {
    writeConfiguration();
    m_services.processes().setNames({"openvpn"});
    m_vpn.startVpn();
    m_services.background().finishAll();
    ASSERT_EQ(m_services.scripting().calls().size(), 2U);
    EXPECT_EQ(m_services.scripting().calls()[0].line, text("sudo -S killall -9 openvpn"));
    EXPECT_TRUE(m_services.scripting().calls()[1].line.contains(text("--config")));
}

TEST_F(VpnTest, StopEndsThePolling) {
    launch();
    m_vpn.stopVpn();
    EXPECT_FALSE(m_vpn.readsLog());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
}

TEST_F(VpnTest, SuccessIsPostedOnceAndEndsThePolling) {
    launch();
    writeLog("x\nInitialization Sequence Completed\n");
    m_services.delayedCalls().advance(2.0);
    EXPECT_EQ(m_shown, 1);
    EXPECT_FALSE(m_vpn.readsLog());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
    EXPECT_EQ(m_delegate.errors, 0);
}

TEST_F(VpnTest, PollingContinuesEveryTwoSecondsUntilThereIsAVerdict) {
    launch();
    for (int i = 0; i < 50; ++i) {
        m_services.delayedCalls().advance(2.0);
        EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_vpn), std::vector<double>{2.0});
    }
    EXPECT_EQ(m_shown, 0);
}

TEST_F(VpnTest, CompletionWithErrorsFailsAfterFiveSeconds) {
    launch();
    m_services.logSink().clear();
    writeLog("Initialization Sequence Completed with errors\n");
    m_services.delayedCalls().advance(2.0);
    EXPECT_EQ(m_shown, 0);
    EXPECT_FALSE(m_vpn.readsLog());
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
    EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_delegate), std::vector<double>{5.0});
    m_services.delayedCalls().advance(5.0);
    EXPECT_EQ(m_delegate.errors, 1);
}

TEST_F(VpnTest, TwoMarkersStopTwiceAndReportTwice) {
    launch();
    m_services.processes().setNames({"openvpn"});
    m_services.scripting().clear();
    writeLog("a\nAUTH_FAILED\nExiting due to fatal error\n");
    m_services.delayedCalls().advance(2.0);
    EXPECT_EQ(m_services.scripting().calls().size(), 2U);
    EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_delegate), (std::vector<double>{5.0, 5.0}));
    EXPECT_TRUE(logged("stopVpn by AUTH_FAILED"));
    EXPECT_TRUE(logged("*** auth-user-pass fails. Not found .vpnCreds.txt"));
    m_services.delayedCalls().advance(5.0);
    EXPECT_EQ(m_delegate.errors, 2);
}

TEST_F(VpnTest, StopDoesNotCancelAReportedFailure) {
    launch();
    writeLog("a\nAUTH_FAILED\n");
    m_services.delayedCalls().advance(2.0);
    m_vpn.stopVpn();
    m_services.delayedCalls().advance(5.0);
    EXPECT_EQ(m_delegate.errors, 1);
}

TEST_F(VpnTest, LinkRemoteAsTheLastLineFails) {
    launch();
    writeLog("a\nUDPv4 link remote: 1.2.3.4\n");
    m_services.delayedCalls().advance(2.0);
    EXPECT_TRUE(logged("lastLine: UDPv4 link remote: 1.2.3.4"));
    EXPECT_TRUE(logged("stopVpn by link remote"));
    m_services.delayedCalls().advance(5.0);
    EXPECT_EQ(m_delegate.errors, 1);
}

TEST_F(VpnTest, LastLineIsMasked) {
    launch();
    writeLog("a\nhello ada pw\n");
    m_services.delayedCalls().advance(2.0);
    EXPECT_TRUE(logged("lastLine: hello ***** *****"));
}

TEST_F(VpnTest, LogOfOneLineIsNotLogged) {
    launch();
    m_services.logSink().clear();
    writeLog("only one line");
    m_services.delayedCalls().advance(2.0);
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
    EXPECT_TRUE(m_vpn.readsLog());
}

TEST_F(VpnTest, MissingOrBinaryLogKeepsPolling) {
    launch();
    ASSERT_TRUE(QFile::remove(m_log));
    m_services.delayedCalls().advance(2.0);
    EXPECT_TRUE(m_vpn.readsLog());
    writeLog("\xff\nInitialization Sequence Completed\n");
    m_services.delayedCalls().advance(2.0);
    EXPECT_EQ(m_shown, 0);
    EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_vpn), std::vector<double>{2.0});
}

TEST_F(VpnTest, WithoutADelegateAFailureOnlyStops) {
    m_vpn.setDelegate(nullptr);
    launch();
    writeLog("a\nAUTH_FAILED\n");
    m_services.delayedCalls().advance(2.0);
    EXPECT_FALSE(m_vpn.readsLog());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
}

TEST_F(VpnTest, PipedRunnerPipesThePasswordAndAlwaysResets) {
    QObject session;
    int resets = 0;
    SessionReset::setTarget(&session, [&resets] { ++resets; });
    const QString out = m_services.home() + text("/out");
    QString output = text("untouched");
    QString error = text("untouched");
    EXPECT_TRUE(
        m_vpn.runProcessAsAdministrator(text("cat"), {text(">"), text("'%1'").arg(out)}, output, error));
    EXPECT_EQ(contentsOf(out), QByteArray("pw\n"));
    EXPECT_TRUE(m_vpn.runProcessAsAdministrator(text("false"), {}, output, error));
    EXPECT_EQ(output, text("untouched"));
    deliverQueued();
    EXPECT_EQ(resets, 2);
    SessionReset::setTarget(nullptr, {});
}

TEST_F(VpnTest, CredentialRemovalIgnoresFailures) {
    const QString path = m_folder + text("/x");
    m_vpn.removeFileCred(path);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    m_vpn.removeFileCred(path);
    EXPECT_FALSE(QFile::exists(path));
}

} // namespace

} // namespace quorvane
