#include "VpnFixture.h"

#include "frontend/privileges/SessionReset.h"
#include "tests/unit/EventLoop.h"

#include <stdexcept>

namespace quorvane {

namespace {

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
