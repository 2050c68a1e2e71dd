#include "platform/AuthorizationService.h"
#include "platform/DelayedCalls.h"
#include "platform/HardwareRegistry.h"
#include "platform/HotKeyService.h"
#include "platform/KeyStore.h"
#include "platform/NetworkReachability.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/PreferencesStore.h"
#include "platform/ProcessTable.h"
#include "platform/ScriptingService.h"
#include "platform/SystemLog.h"
#include "platform/TrayHosts.h"
#include "platform/UrlLoader.h"
#include "platform/UserDefaultsController.h"
#include "platform/Workspace.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

class LinuxPlatformTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_before = qgetenv("HOME");
        qputenv("HOME", m_home.path().toUtf8());
    }

    void TearDown() override { qputenv("HOME", m_before); }

    QTemporaryDir m_home;
    QByteArray m_before;
};

TEST_F(LinuxPlatformTest, HasEveryService) {
    const auto made = platform::makeLinuxPlatform();
    EXPECT_TRUE(made->bundle && made->preferences && made->userDefaults && made->background &&
                made->notifications && made->delayedCalls && made->logSink && made->log && made->scripting &&
                made->authorization && made->keyStore && made->reachability && made->hardware &&
                made->hotKeys && made->processes && made->trayHosts && made->urls && made->workspace);
    EXPECT_EQ(made->temporaryFolder, QStringLiteral("/tmp"));
    EXPECT_EQ(made->account.home, m_home.path());
    EXPECT_EQ(made->preferences->filePath(),
              m_home.path() + QStringLiteral("/Library/Preferences/com.tallowind.Quorvane.plist"));
}

TEST_F(LinuxPlatformTest, ProblemWithPreferencesIsLogged) {
    const QString folder = m_home.path() + QStringLiteral("/Library/Preferences");
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile file(folder + QStringLiteral("/com.tallowind.Quorvane.plist"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("broken");
    file.close();
    ::testing::internal::CaptureStderr();
    const auto made = platform::makeLinuxPlatform();
    EXPECT_NE(::testing::internal::GetCapturedStderr().find(".corrupt-"), std::string::npos);
}

} // namespace

} // namespace quorvane::platform
