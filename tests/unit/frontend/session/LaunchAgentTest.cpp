#include "frontend/session/LaunchAgent.h"

#include "fakes/TestPlatform.h"
#include "platform/PropertyList.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

class LaunchAgentTest : public testing::Test {
protected:
    LaunchAgentTest() {
        m_services.addResource(text("com.qrvp.LaunchAtLogin.plist"),
                               platform::PropertyList::write({{text("Label"), text("com.qrvp.LaunchAtLogin")},
                                                              {text("RunAtLoad"), false}}));
    }

    [[nodiscard]] QVariantMap agent() const {
        return platform::PropertyList::readFile(m_path).value_or(QVariantMap());
    }

    fakes::TestPlatform m_services;
    QString m_path = m_services.home() + text("/Library/LaunchAgents/com.qrvp.LaunchAtLogin.plist");
};

TEST_F(LaunchAgentTest, TurningOnWritesTheAgentFromTheTemplate) {
    LaunchAgent::launchOnStartup(true);
    EXPECT_EQ(agent().value(text("RunAtLoad")), QVariant(true));
    EXPECT_EQ(agent().value(text("Label")).toString(), text("com.qrvp.LaunchAtLogin"));
}

TEST_F(LaunchAgentTest, TurningOffWithoutAnAgentStillWritesOne) {
    LaunchAgent::launchOnStartup(false);
    EXPECT_EQ(agent().value(text("RunAtLoad")), QVariant(false));
}

TEST_F(LaunchAgentTest, ReturnsWhatTheAgentContains) {
    EXPECT_FALSE(LaunchAgent::launchesOnStartup()); // the template alone starts nothing
    LaunchAgent::launchOnStartup(true);
    EXPECT_TRUE(LaunchAgent::launchesOnStartup());
    LaunchAgent::launchOnStartup(false);
    EXPECT_FALSE(LaunchAgent::launchesOnStartup());
}

TEST_F(LaunchAgentTest, ExistingAgentKeepsItsOtherKeys) {
    LaunchAgent::launchOnStartup(true);
    QVariantMap edited = agent();
    edited.insert(text("Mine"), text("kept"));
    ASSERT_TRUE(platform::PropertyList::writeFile(m_path, edited));
    LaunchAgent::launchOnStartup(false);
    EXPECT_EQ(agent().value(text("Mine")).toString(), text("kept"));
    EXPECT_EQ(agent().value(text("RunAtLoad")), QVariant(false));
}

TEST_F(LaunchAgentTest, DesktopsOwnEntryIsSwitchedToo) {
    LaunchAgent::launchOnStartup(true);
    LaunchAgent::launchOnStartup(false);
    ASSERT_EQ(m_services.workspace().autostarts.size(), 2U);
    EXPECT_TRUE(m_services.workspace().autostarts[0].enabled);
    EXPECT_FALSE(m_services.workspace().autostarts[1].enabled);
    EXPECT_EQ(m_services.workspace().autostarts[0].program,
              m_services.platform().bundle->contentsPath() + text("/bin/quorvane"));
}

TEST_F(LaunchAgentTest, FailedDesktopEntryLeavesTheAgentAsItWas) {
    m_services.workspace().autostartSucceeds = false;
    LaunchAgent::launchOnStartup(true);
    EXPECT_EQ(agent().value(text("RunAtLoad")), QVariant(false));
    EXPECT_EQ(agent().value(text("Label")).toString(), text("com.qrvp.LaunchAtLogin"));
    m_services.workspace().autostartSucceeds = true;
    LaunchAgent::launchOnStartup(true);
    m_services.workspace().autostartSucceeds = false;
    LaunchAgent::launchOnStartup(false);
    EXPECT_TRUE(LaunchAgent::launchesOnStartup());
}

TEST_F(LaunchAgentTest, FailedAgentLeavesTheDesktopEntryAsItWas) {
    ASSERT_TRUE(QDir().mkpath(m_path)); // a folder cannot be replaced by a file
    LaunchAgent::launchOnStartup(true);
    EXPECT_FALSE(LaunchAgent::launchesOnStartup());
    EXPECT_TRUE(m_services.workspace().autostarts.empty());
    ASSERT_TRUE(QDir().rmdir(m_path));
    ASSERT_TRUE(
        QFile::remove(m_services.platform().bundle->resourcesPath() + text("/com.qrvp.LaunchAtLogin.plist")));
    LaunchAgent::launchOnStartup(true);
    EXPECT_FALSE(LaunchAgent::launchesOnStartup());
    EXPECT_TRUE(m_services.workspace().autostarts.empty());
}

TEST_F(LaunchAgentTest, FolderThatCannotBeMadeIsLogged) {
    QFile obstacle(m_services.home() + text("/Library"));
    QDir(m_services.home() + text("/Library")).removeRecursively();
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    obstacle.close();
    LaunchAgent::launchOnStartup(true);
    ASSERT_FALSE(m_services.logSink().lines().isEmpty());
    EXPECT_TRUE(m_services.logSink().lines().first().startsWith(text("create LaunchAgents failed ")));
}

} // namespace

} // namespace quorvane
