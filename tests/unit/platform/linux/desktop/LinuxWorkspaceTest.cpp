#include "platform/linux/desktop/LinuxWorkspace.h"
#include "tests/unit/platform/linux/DesktopBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

using platform::LinuxWorkspace;
using platform::WorkspaceFolders;

const QString identifier = QStringLiteral("com.tallowind.Quorvane");

class LinuxWorkspaceTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir().mkpath(m_folders.runtime));
        ASSERT_EQ(chmod(m_folders.runtime.toUtf8().constData(), 0700), 0);
    }

    [[nodiscard]] unsigned modeOf(const QString &path) const {
        struct stat status {};

        return lstat(path.toUtf8().constData(), &status) == 0 ? status.st_mode & 07777U : 0;
    }

    /// Whether a second copy of the program could start.
    [[nodiscard]] bool anotherCopyMayRun() const {
        const pid_t child = fork();
        if (child == 0) {
            LinuxWorkspace other(m_folders);
            _exit(other.acquireSingleInstance(identifier) ? 1 : 0);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return WEXITSTATUS(status) == 1;
    }

    [[nodiscard]] QByteArray entry() const {
        QFile file(m_folders.configuration + QStringLiteral("/autostart/com.tallowind.Quorvane.desktop"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
    const WorkspaceFolders m_folders{m_folder.filePath(QStringLiteral("run")),
                                     m_folder.filePath(QStringLiteral("config")),
                                     m_folder.filePath(QStringLiteral("cache"))};
};

TEST_F(LinuxWorkspaceTest, OneCopyAtATime) {
    {
        LinuxWorkspace workspace(m_folders);
        EXPECT_TRUE(workspace.acquireSingleInstance(identifier));
        EXPECT_TRUE(workspace.acquireSingleInstance(identifier)) << "this copy already holds the lock";
        EXPECT_FALSE(anotherCopyMayRun());
        EXPECT_EQ(modeOf(m_folders.runtime + QStringLiteral("/com.tallowind.Quorvane.lock")), 0600U);
    }
    EXPECT_TRUE(anotherCopyMayRun()) << "the file without its lock blocks nothing";
}

TEST_F(LinuxWorkspaceTest, LockEndsWithTheProcess) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        LinuxWorkspace workspace(m_folders);
        const char held = workspace.acquireSingleInstance(identifier) ? 'y' : 'n';
        if (write(ends[1], &held, 1) == 1) {
            pause();
        }
        _exit(0);
    }
    char held = 0;
    ASSERT_EQ(read(ends[0], &held, 1), 1);
    EXPECT_EQ(held, 'y');
    EXPECT_FALSE(anotherCopyMayRun());
    ASSERT_EQ(kill(child, SIGKILL), 0);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    EXPECT_TRUE(anotherCopyMayRun());
    close(ends[0]);
    close(ends[1]);
}

TEST_F(LinuxWorkspaceTest, ChildProcessesDoNotKeepTheLock) {
    QProcess child;
    {
        LinuxWorkspace workspace(m_folders);
        ASSERT_TRUE(workspace.acquireSingleInstance(identifier));
        child.start(QStringLiteral("sleep"), {QStringLiteral("60")});
        ASSERT_TRUE(child.waitForStarted());
    }
    EXPECT_TRUE(anotherCopyMayRun());
    child.kill();
    child.waitForFinished();
}

TEST_F(LinuxWorkspaceTest, UnsafeRuntimeFolderIsReplacedByAPrivateOne) {
    ASSERT_EQ(chmod(m_folders.runtime.toUtf8().constData(), 0777), 0);
    LinuxWorkspace workspace(m_folders);
    EXPECT_TRUE(workspace.acquireSingleInstance(identifier));
    EXPECT_TRUE(QDir(m_folders.runtime).isEmpty());
    EXPECT_EQ(modeOf(m_folders.cache), 0700U);
    EXPECT_FALSE(anotherCopyMayRun());
}

TEST_F(LinuxWorkspaceTest, PlantedLinkIsNotFollowed) {
    const QString linkTarget = m_folder.filePath(QStringLiteral("linkTarget"));
    ASSERT_TRUE(QFile::link(linkTarget, m_folders.runtime + QStringLiteral("/com.tallowind.Quorvane.lock")));
    LinuxWorkspace workspace(m_folders);
    EXPECT_TRUE(workspace.acquireSingleInstance(identifier));
    EXPECT_FALSE(QFile::exists(linkTarget));
    EXPECT_FALSE(anotherCopyMayRun());
}

TEST_F(LinuxWorkspaceTest, AutostartEntryIsSwitchedAndNotRemoved) {
    LinuxWorkspace workspace(m_folders);
    ASSERT_TRUE(workspace.setAutostart(QStringLiteral("/opt/q/bin/quorvane"), true));
    EXPECT_EQ(entry(),
              "[Desktop Entry]\nType=Application\nName=Quorvane\nExec=\"/opt/q/bin/quorvane\" -hide\n"
              "Terminal=false\nX-GNOME-Autostart-enabled=true\nHidden=false\n");
    ASSERT_TRUE(workspace.setAutostart(QStringLiteral("/opt/q/bin/quorvane"), false));
    EXPECT_TRUE(entry().contains("\nX-GNOME-Autostart-enabled=false\nHidden=true\n"));
    EXPECT_EQ(QDir(m_folders.configuration + QStringLiteral("/autostart"))
                  .entryList(QDir::Files | QDir::Hidden)
                  .size(),
              1);
}

TEST_F(LinuxWorkspaceTest, AutostartProgramIsQuoted) {
    LinuxWorkspace workspace(m_folders);
    ASSERT_TRUE(workspace.setAutostart(QStringLiteral("/a b/%x/$y/`z`/\"q\"/back\\s"), true));
    EXPECT_TRUE(
        entry().contains("\nExec=\"/a b/%%x/\\\\$y/\\\\`z\\\\`/\\\\\"q\\\\\"/back\\\\\\\\s\" -hide\n"))
        << entry().constData();
    EXPECT_FALSE(workspace.setAutostart(QStringLiteral("/a\nHidden=true"), true));
    EXPECT_FALSE(workspace.setAutostart(QString(), true));
}

TEST_F(LinuxWorkspaceTest, AutostartFailureIsReported) {
    QFile blockingFile(m_folders.configuration);
    ASSERT_TRUE(blockingFile.open(QIODevice::WriteOnly));
    EXPECT_FALSE(LinuxWorkspace(m_folders).setAutostart(QStringLiteral("/x"), true));
}

TEST_F(LinuxWorkspaceTest, OnlyWebAddressesAreOpened) {
    LinuxWorkspace workspace(m_folders);
    for (const char *url : {"", "file:///etc/passwd", "javascript:alert(1)", "not a url", "https://a b/"}) {
        EXPECT_FALSE(workspace.openUrl(QString::fromLatin1(url))) << url;
    }
}

TEST(WorkspaceFoldersTest, ComeFromTheEnvironmentWhenAbsolute) {
    qputenv("XDG_CONFIG_HOME", "/c");
    qputenv("XDG_CACHE_HOME", "relative");
    const WorkspaceFolders found = WorkspaceFolders::ofUser(QStringLiteral("/home/x"));
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("XDG_CACHE_HOME");
    EXPECT_EQ(found.configuration, QStringLiteral("/c"));
    EXPECT_EQ(found.cache, QStringLiteral("/home/x/.cache"));
}

/// A notification service that records its calls.
class Notifications final : public QDBusVirtualObject {
public:
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override {
        if (message.member() != QStringLiteral("Notify")) {
            return false;
        }
        calls.append(message);
        connection.send(message.createReply(1U));
        return true;
    }

    QList<QDBusMessage> calls;
};

TEST_F(LinuxWorkspaceTest, NotificationsAreSentToTheDesktop) {
    const DesktopBus bus;
    ASSERT_TRUE(DesktopBus::isUp());
    QDBusConnection service = QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"),
                                                            QStringLiteral("service"));
    Notifications notifications;
    ASSERT_TRUE(
        service.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), &notifications));
    ASSERT_TRUE(service.registerService(QStringLiteral("org.freedesktop.Notifications")));
    LinuxWorkspace(m_folders).notify(QStringLiteral("Title"), QStringLiteral("a <b> & c"));
    QElapsedTimer clock;
    clock.start();
    while (notifications.calls.isEmpty() && clock.elapsed() < 10000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    ASSERT_EQ(notifications.calls.size(), 1);
    const QVariantList arguments = notifications.calls[0].arguments();
    EXPECT_EQ(notifications.calls[0].signature(), QStringLiteral("susssasa{sv}i"));
    EXPECT_EQ(arguments.value(0), QVariant(QStringLiteral("Quorvane")));
    EXPECT_EQ(arguments.value(3), QVariant(QStringLiteral("Title")));
    EXPECT_EQ(arguments.value(4), QVariant(QStringLiteral("a &lt;b&gt; &amp; c")));
    service.unregisterService(QStringLiteral("org.freedesktop.Notifications"));
    QDBusConnection::disconnectFromBus(QStringLiteral("service"));
}

TEST_F(LinuxWorkspaceTest, WithoutABusNothingHappens) {
    const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", m_folders.runtime.toUtf8());
    QElapsedTimer clock;
    clock.start();
    LinuxWorkspace(m_folders).notify(QStringLiteral("Title"), QStringLiteral("text"));
    EXPECT_LT(clock.elapsed(), 1000);
    if (!before.isNull()) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", before);
    }
}

} // namespace

} // namespace quorvane::platform
