#include "frontend/tunnel/Vpn.h"
#include "frontend/session/ProcessInfo.h"

#include "common/FileDescriptor.h"
#include "fakes/TestPlatform.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/SessionReset.h"
#include "frontend/support/EventQueue.h"
#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

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

    /// Runs the operation as a handler and waits for everything that it begins.
    void run(Task<> (Vpn::*operation)()) {
        m_events.post([this, operation] { return (m_vpn.*operation)(); });
        m_services.background().finishAll();
    }

    void stop() { run(&Vpn::stopVpn); }

    /// The result of configVpn(), after everything that it begins.
    [[nodiscard]] bool configure() {
        bool result = false;
        m_events.post([this, &result]() -> Task<> { result = co_await m_vpn.configVpn(); });
        m_services.background().finishAll();
        return result;
    }

    void advance(double seconds) {
        m_services.delayedCalls().advance(seconds);
        m_services.background().finishAll();
    }

    /// Launches and waits for the background task.
    void launch() {
        writeConfiguration();
        ASSERT_TRUE(configure());
    }

    [[nodiscard]] bool logged(const char *line) { return logged(text(line)); }

    [[nodiscard]] bool logged(const QString &line) { return m_services.logSink().lines().contains(line); }

    /// Checks that the attempt ends like any other failed one, and that nothing is launched or watched.
    void expectFailedAttempt() {
        m_services.processes().setNames({"openvpn"});
        EXPECT_FALSE(configure());
        ASSERT_EQ(m_services.scripting().calls().size(), 1U);
        EXPECT_EQ(m_services.scripting().calls()[0].line, text("sudo -S killall -9 openvpn"));
        EXPECT_FALSE(m_vpn.readsLog());
        EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_delegate), std::vector<double>{5.0});
        EXPECT_TRUE(m_services.delayedCalls().delaysFor(&m_vpn).empty());
        advance(5.0);
        EXPECT_EQ(m_delegate.errors, 1);
    }

    fakes::TestPlatform m_services;
    QString m_folder = m_services.home() + text("/Documents/Quorvane");
    QString m_log = m_folder + text("/openvpn.log");
    QObject m_context;
    RecordingDelegate m_delegate;
    ProcessInfo m_processes;
    EventQueue m_events;
    Vpn m_vpn{m_processes, m_events};
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
    ASSERT_TRUE(configure());
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
    EXPECT_FALSE(configure());
    EXPECT_EQ(contentsOf(m_folder + text("/.vpnCreds.txt")), QByteArray("(null)\n(null)"));
}

TEST_F(VpnTest, NoConfigurationLeavesTheLogAndStartsNothing) {
    writeLog("old");
    m_services.preferences().setValue(text("vpnConfigPath"), text("/no/such/file"));
    EXPECT_FALSE(m_vpn.lacksConfiguration());
    EXPECT_FALSE(configure());
    EXPECT_TRUE(m_vpn.lacksConfiguration());
    EXPECT_TRUE(logged("no config file"));
    EXPECT_EQ(contentsOf(m_log), QByteArray("old"));
    EXPECT_TRUE(m_services.scripting().calls().empty());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
    EXPECT_FALSE(m_vpn.readsLog());
}

TEST_F(VpnTest, FolderIsMadeWhenMissing) {
    ASSERT_TRUE(QDir(m_folder).removeRecursively());
    EXPECT_FALSE(configure());
    EXPECT_TRUE(QFile::exists(m_folder + text("/.vpnCreds.txt")));
}

TEST_F(VpnTest, FilesThatCannotBeWrittenDoNotKeepTheLineFromBeingRun) {
    writeConfiguration();
    ASSERT_TRUE(QDir(m_folder).mkpath(text(".vpnCreds.txt/in the way")));
    ASSERT_TRUE(QDir(m_folder).mkpath(text("openvpn.log/in the way")));
    EXPECT_TRUE(configure());
    ASSERT_EQ(m_services.scripting().calls().size(), 1U);
    EXPECT_TRUE(m_services.scripting().calls()[0].line.contains(text("--config")));
    EXPECT_TRUE(m_vpn.readsLog());
    EXPECT_TRUE(logged(text("log file %1 cannot be created").arg(m_log)));
}

TEST_F(VpnTest, FolderThatCannotBeMadeIsLikeAMissingConfiguration) {
    ASSERT_TRUE(QDir(m_folder).removeRecursively());
    QFile obstacle(m_folder);
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    EXPECT_FALSE(configure());
    EXPECT_TRUE(logged("no config file"));
}

TEST_F(VpnTest, WhatTheLogContainedBeforeIsNoVerdict) {
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

TEST_F(VpnTest, AttemptWhoseProcessesHaveEndedFailsAtTheSecondLook) {
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

TEST_F(VpnTest, SilentOpenVpnThatRunsIsPolledForEver) {
    m_services.processes().setNames({"init"});
    launch();
    m_services.processes().setNames({"init", "openvpn"});
    for (int i = 0; i < 50; ++i) {
        advance(2.0);
        EXPECT_TRUE(m_vpn.readsLog());
    }
}

TEST_F(VpnTest, OpenVpnOfAnotherProgramIsNotTheLaunchedOne) {
    m_services.processes().setNames({"init", "openvpn"});
    m_services.scripting().queueAnswer(FakeScriptingService::failure(1, text("no"))); // the kill
    writeConfiguration();
    run(&Vpn::startVpn);
    advance(4.0);
    EXPECT_FALSE(m_vpn.readsLog());
}

TEST_F(VpnTest, VerdictAtTheSecondLookCounts) {
    m_services.processes().setNames({"init"});
    launch();
    advance(2.0);
    writeLog("x\nInitialization Sequence Completed\n");
    advance(2.0);
    EXPECT_EQ(m_shown, 1);
    EXPECT_FALSE(logged("stopVpn by end of openvpn"));
}

TEST_F(VpnTest, EndOfProcessesIsNotJudgedWhereTheyCannotBeSeen) {
    m_services.processes().setNames({});
    launch();
    advance(20.0);
    EXPECT_TRUE(m_vpn.readsLog());
}

TEST_F(VpnTest, StopBeforeTheLaunchHasBegunCancelsIt) {
    writeConfiguration();
    m_services.background().hold();
    m_events.post([this] { return m_vpn.startVpn(); });
    ASSERT_EQ(m_services.background().pending(), 1U);
    m_events.post([this] { return m_vpn.stopVpn(); });
    m_services.background().finishAll();
    EXPECT_TRUE(m_services.scripting().calls().empty());
    EXPECT_FALSE(m_vpn.readsLog());
}

TEST_F(VpnTest, StopAfterTheLineAwaitsTheNameOfWhatItStarted) {
    // The process has its name only after a few looks, while it holds the line's output.
    auto output = std::make_shared<char>();
    m_services.scripting().setHandler([&](const FakeScriptingService::Call &) {
        auto result = FakeScriptingService::success(text(""));
        result.openOutput = output;
        return result;
    });
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

TEST_F(VpnTest, StopDoesNotAwaitWhatHasEnded) {
    {
        const auto output = std::make_shared<char>();
        m_services.scripting().setHandler([&](const FakeScriptingService::Call &) {
            auto result = FakeScriptingService::success(text(""));
            result.openOutput = output;
            return result;
        });
        launch();
    }
    m_services.scripting().clear();
    m_services.background().hold();
    m_events.post([this] { return m_vpn.stopVpn(); });
    EXPECT_EQ(m_services.background().pending(), 0U);
    EXPECT_FALSE(m_events.isHeld());
}

TEST_F(VpnTest, ExceptionInTheLaunchIsLoggedAndEndsTheAttempt) {
    m_services.processes().setNames({"init"});
    m_services.scripting().setHandler([](const FakeScriptingService::Call &call) -> platform::ScriptResult {
        if (call.line.contains(text("--config"))) {
            throw std::runtime_error("planted");
        }
        return FakeScriptingService::success(text(""));
    });
    launch();
    EXPECT_TRUE(logged("> 0")); // the runner catches it
    advance(4.0);
    EXPECT_FALSE(m_vpn.readsLog());
}

TEST_F(VpnTest, KillOfAHiddenProcessAwaitsTheEndOfItsSign) {
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

TEST_F(VpnTest, OnlyTheFirstOfUnchangedRefusalsIsLogged) {
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

TEST_F(VpnTest, ReadingThatWaitedUntilAStopIsDropped) {
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
    stop();
    EXPECT_TRUE(m_services.scripting().calls().empty());
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
    m_services.processes().setNames({"init", "openvpn"});
    stop();
    ASSERT_EQ(m_services.scripting().calls().size(), 1U);
    EXPECT_EQ(m_services.scripting().calls()[0].line, text("sudo -S killall -9 openvpn"));
    EXPECT_TRUE(logged("Stopped? > 1"));
}

TEST_F(VpnTest, FailedKillIsLoggedEvenWithDiagnosticsOff) {
    m_services.preferences().setValue(text("showLogs"), 1);
    m_services.processes().setNames({"openvpn"});
    m_services.scripting().queueAnswer(FakeScriptingService::failure(1, text("no")));
    stop();
    EXPECT_EQ(m_services.logSink().lines(), QStringList{text("Stopped? > 0")});
}

TEST_F(VpnTest, FailedProcessSnapshotKillsNothing) {
    m_services.processes().setNames({"openvpn"});
    m_services.processes().failWith(5);
    stop();
    EXPECT_TRUE(m_services.scripting().calls().empty());
}

TEST_F(VpnTest, StartKillsBeforeItLaunches) {
    writeConfiguration();
    m_services.processes().setNames({"openvpn"});
    run(&Vpn::startVpn);
    ASSERT_EQ(m_services.scripting().calls().size(), 2U);
    EXPECT_EQ(m_services.scripting().calls()[0].line, text("sudo -S killall -9 openvpn"));
    EXPECT_TRUE(m_services.scripting().calls()[1].line.contains(text("--config")));
}

TEST_F(VpnTest, StopEndsThePolling) {
    launch();
    stop();
    EXPECT_FALSE(m_vpn.readsLog());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
}

TEST_F(VpnTest, SuccessIsPostedOnceAndEndsThePolling) {
    launch();
    writeLog("x\nInitialization Sequence Completed\n");
    advance(2.0);
    EXPECT_EQ(m_shown, 1);
    EXPECT_FALSE(m_vpn.readsLog());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
    EXPECT_EQ(m_delegate.errors, 0);
}

TEST_F(VpnTest, PollingContinuesEveryTwoSecondsUntilThereIsAVerdict) {
    launch();
    for (int i = 0; i < 50; ++i) {
        advance(2.0);
        EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_vpn), std::vector<double>{2.0});
    }
    EXPECT_EQ(m_shown, 0);
}

TEST_F(VpnTest, CompletionWithErrorsFailsAfterFiveSeconds) {
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

TEST_F(VpnTest, TwoMarkersStopTwiceAndReportTwice) {
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

TEST_F(VpnTest, StopDoesNotCancelAReportedFailure) {
    launch();
    writeLog("a\nAUTH_FAILED\n");
    advance(2.0);
    stop();
    advance(5.0);
    EXPECT_EQ(m_delegate.errors, 1);
}

TEST_F(VpnTest, LinkRemoteAsTheLastLineFails) {
    launch();
    writeLog("a\nUDPv4 link remote: 1.2.3.4\n");
    advance(2.0);
    EXPECT_TRUE(logged("lastLine: UDPv4 link remote: 1.2.3.4"));
    EXPECT_TRUE(logged("stopVpn by link remote"));
    advance(5.0);
    EXPECT_EQ(m_delegate.errors, 1);
}

TEST_F(VpnTest, LastLineIsMasked) {
    launch();
    writeLog("a\nhello ada pw\n");
    advance(2.0);
    EXPECT_TRUE(logged("lastLine: hello ***** *****"));
}

TEST_F(VpnTest, LogOfOneLineIsNotLogged) {
    launch();
    m_services.logSink().clear();
    writeLog("only one line");
    advance(2.0);
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
    EXPECT_TRUE(m_vpn.readsLog());
}

TEST_F(VpnTest, MissingOrBinaryLogKeepsPolling) {
    launch();
    ASSERT_TRUE(QFile::remove(m_log));
    advance(2.0);
    EXPECT_TRUE(m_vpn.readsLog());
    writeLog("\xff\nInitialization Sequence Completed\n");
    advance(2.0);
    EXPECT_EQ(m_shown, 0);
    EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_vpn), std::vector<double>{2.0});
}

TEST_F(VpnTest, WithoutADelegateAFailureOnlyStops) {
    m_vpn.setDelegate(nullptr);
    launch();
    writeLog("a\nAUTH_FAILED\n");
    advance(2.0);
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
