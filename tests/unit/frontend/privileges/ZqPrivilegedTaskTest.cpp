#include "frontend/privileges/ZqPrivilegedTask.h"

#include "fakes/TestPlatform.h"
#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

constexpr pid_t firstPid = fakes::FakeAuthorizationService::firstPid;

class ZqPrivilegedTaskTest : public testing::Test {
protected:
    ZqPrivilegedTaskTest() {
        m_services.platform().notifications->addObserver(
            text("ZqPrivilegedTaskDidTerminateNotification"), &m_context,
            [this](const QVariant &object) { m_ended = object.value<QObject *>(); });
    }

    fakes::TestPlatform m_services;
    QObject m_context;
    QObject *m_ended = nullptr;
};

TEST_F(ZqPrivilegedTaskTest, StartsEmpty) {
    const ZqPrivilegedTask task;
    EXPECT_TRUE(task.arguments().isEmpty());
    EXPECT_TRUE(sameText(task.launchPath(), text("")));
    EXPECT_EQ(task.currentDirectoryPath(), QDir::currentPath());
    EXPECT_FALSE(task.isRunning());
    EXPECT_EQ(task.outputFileHandle(), nullptr);
    EXPECT_EQ(task.terminationStatus(), 0);
}

TEST_F(ZqPrivilegedTaskTest, LaunchPassesEverythingAndReadsTheOutput) {
    m_services.authorization().setOutput("hello");
    ZqPrivilegedTask task(text("/bin/tool"), {text("a"), text("b c")});
    task.setCurrentDirectoryPath(text("/tmp"));
    ASSERT_EQ(task.launch(), 0);
    EXPECT_TRUE(task.isRunning());
    EXPECT_EQ(task.processIdentifier(), firstPid);
    EXPECT_EQ(task.outputFileHandle()->readAll(), QByteArray("hello"));
    const auto launch = m_services.authorization().launches().at(0);
    EXPECT_EQ(launch.program, text("/bin/tool"));
    EXPECT_EQ(launch.arguments, (QByteArrayList{"a", "b c"}));
    EXPECT_EQ(launch.folder, text("/tmp"));
}

TEST_F(ZqPrivilegedTaskTest, ArgumentHasAsManyBytesAsCharacters) {
    const QString zero(QChar(u'\0'));
    ZqPrivilegedTask task(text("/bin/tool"), {text("gr\xc3\xbc\xc3\x9f"), text("\xe2\x82\xac"), text(""),
                                              text("a") + zero + text("b"), text("plain")});
    ASSERT_EQ(task.launch(), 0);
    EXPECT_EQ(m_services.authorization().launches().at(0).arguments,
              (QByteArrayList{"gr\xc3\xbc", "\xe2", "", "a", "plain"}));
}

TEST_F(ZqPrivilegedTaskTest, RefusalIsTheStatusOfTheLaunch) {
    m_services.authorization().setStatus(platform::AuthorizationService::cancelled);
    ZqPrivilegedTask task(text("/bin/tool"));
    EXPECT_EQ(task.launch(), platform::AuthorizationService::cancelled);
    EXPECT_FALSE(task.isRunning());
}

TEST_F(ZqPrivilegedTaskTest, MissingServiceHasItsOwnStatus) {
    m_services.authorization().setPresent(false);
    ZqPrivilegedTask task(text("/bin/tool"));
    EXPECT_EQ(task.launch(), -70001);
    EXPECT_FALSE(task.isRunning());
    EXPECT_TRUE(m_services.authorization().launches().empty());
}

TEST_F(ZqPrivilegedTaskTest, FailedLaunchReturnsTheServicesStatus) {
    m_services.authorization().setStatus(77);
    ZqPrivilegedTask task(text("/bin/tool"));
    EXPECT_EQ(task.launch(), 77);
    EXPECT_FALSE(task.isRunning());
    EXPECT_EQ(task.outputFileHandle(), nullptr);
}

TEST_F(ZqPrivilegedTaskTest, EndIsNoticedAndPosted) {
    ZqPrivilegedTask task(text("/bin/tool"));
    ASSERT_EQ(task.launch(), 0);
    m_services.authorization().finish(firstPid, 256);
    ASSERT_TRUE(spinUntil([this] { return m_ended != nullptr; }));
    EXPECT_EQ(m_ended, &task);
    EXPECT_FALSE(task.isRunning());
    EXPECT_EQ(task.terminationStatus(), 256);
}

TEST_F(ZqPrivilegedTaskTest, WaitingBlocksUntilTheEnd) {
    m_services.authorization().finish(firstPid, 0);
    ZqPrivilegedTask task(text("/bin/tool"));
    ASSERT_EQ(task.launch(), 0);
    task.waitUntilExit();
    EXPECT_FALSE(task.isRunning());
}

TEST_F(ZqPrivilegedTaskTest, LaunchedTaskHasEnded) {
    m_services.authorization().finish(firstPid, 512);
    const auto task = ZqPrivilegedTask::launchedPrivilegedTaskWithLaunchPath(text("/bin/tool"), {text("x")});
    EXPECT_FALSE(task->isRunning());
    EXPECT_EQ(task->terminationStatus(), 512);
}

TEST_F(ZqPrivilegedTaskTest, TerminateDoesNothing) {
    ZqPrivilegedTask task(text("/bin/tool"));
    ASSERT_EQ(task.launch(), 0);
    task.terminate();
    EXPECT_TRUE(task.isRunning());
}

TEST_F(ZqPrivilegedTaskTest, DescriptionListsPathAndArguments) {
    const ZqPrivilegedTask task(text("/bin/tool"), {text("a"), text("b")});
    EXPECT_TRUE(task.description().endsWith(text("> /bin/tool a b")));
}

} // namespace

} // namespace quorvane
