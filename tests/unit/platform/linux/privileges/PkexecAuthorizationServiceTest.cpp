#include "platform/linux/privileges/PkexecAuthorizationService.h"

#include "common/FileDescriptor.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

using platform::PkexecAuthorizationService;

class PkexecAuthorizationServiceTest : public ::testing::Test {
protected:
    /// A script in the test's folder.
    QByteArray script(const char *name, const QByteArray &lines) const {
        QFile file(m_folder.filePath(QString::fromLatin1(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + lines);
        file.close();
        EXPECT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        return QFile::encodeName(file.fileName());
    }

    /// A tool that replaces pkexec: it runs the lines, then replaces itself by the program and closes all but
    /// the standard descriptors, as pkexec does.
    QByteArray tool(const QByteArray &lines) const {
        return script("pkexec", lines + "shift 2\nexec 3>&- \"$@\"\n");
    }

    [[nodiscard]] PrivilegedProcess launch(const QByteArray &decision, const QByteArray &program) const {
        PkexecAuthorizationService service(tool(decision));
        return service.launch(QFile::decodeName(script("program", program)), {}, m_folder.path());
    }

    static int exitStatus(const PrivilegedProcess &process) {
        const auto status = PkexecAuthorizationService().wait(process.pid, true);
        return status && WIFEXITED(*status) ? WEXITSTATUS(*status) : -1;
    }

    static QByteArray readAll(int descriptor) {
        QFile file;
        EXPECT_TRUE(file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle));
        return file.readAll();
    }

    QTemporaryDir m_folder;
};

TEST_F(PkexecAuthorizationServiceTest, PassesArgumentsUnchangedAndRunsInTheFolder) {
    PkexecAuthorizationService service(tool("printf '[%s]' \"$1\" \"$2\"\n"));
    EXPECT_TRUE(service.lookUp());
    const QByteArray program = script("program", "printf '[%s]' \"$0\" \"$@\"; pwd; exit 3\n");
    const auto process =
        service.launch(QFile::decodeName(program), {"a b", "$(id)", "'\xc3"}, m_folder.path());
    ASSERT_EQ(process.status, 0);
    const QByteArray expected = "[--keep-cwd][--disable-internal-agent][" + program + "][a b][$(id)]['\xc3]" +
                                QDir(m_folder.path()).canonicalPath().toUtf8() + '\n';
    EXPECT_EQ(readAll(process.outputDescriptor), expected);
    const auto status = service.wait(process.pid, true);
    ASSERT_TRUE(status);
    EXPECT_EQ(WEXITSTATUS(*status), 3);
    EXPECT_FALSE(service.wait(process.pid, false)) << "the status is returned once";
}

TEST_F(PkexecAuthorizationServiceTest, ChecksWithoutWaiting) {
    PkexecAuthorizationService service(tool(""));
    const auto process = service.launch(QStringLiteral("/bin/sleep"), {"60"}, QStringLiteral("/"));
    ASSERT_EQ(process.status, 0);
    EXPECT_FALSE(service.wait(process.pid, false));
    ASSERT_EQ(kill(process.pid, SIGKILL), 0);
    const auto status = service.wait(process.pid, true);
    ASSERT_TRUE(status);
    EXPECT_EQ(WTERMSIG(*status), SIGKILL);
    close(process.outputDescriptor);
}

TEST_F(PkexecAuthorizationServiceTest, RefusalIsTheStatusOfTheLaunch) {
    const QByteArray program = "touch ran\n";
    EXPECT_EQ(launch("exit 126\n", program).status, AuthorizationService::cancelled);
    EXPECT_EQ(launch("echo refused; exit 127\n", program).status, AuthorizationService::denied);
    EXPECT_EQ(launch("kill -9 $$\n", program).status, AuthorizationService::denied);
    EXPECT_FALSE(QFile::exists(m_folder.filePath(QStringLiteral("ran"))));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a process was left";
}

TEST_F(PkexecAuthorizationServiceTest, LaunchWaitsForTheDecision) {
    const QByteArray decision = QFile::encodeName(m_folder.filePath(QStringLiteral("decision")));
    ASSERT_EQ(mkfifo(decision.constData(), 0600), 0);
    auto process =
        std::async(std::launch::async, [this] { return launch("read -r _ <decision\n", "exit 5\n"); });
    const FileDescriptor user(open(decision.constData(), O_WRONLY)); // waits for the tool to read
    EXPECT_EQ(process.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    ASSERT_EQ(write(user.get(), "yes\n", 4), 4);
    const PrivilegedProcess granted = process.get();
    ASSERT_EQ(granted.status, 0);
    EXPECT_EQ(exitStatus(granted), 5);
    close(granted.outputDescriptor);
}

TEST_F(PkexecAuthorizationServiceTest, ProgramThatEndsLikeARefusalWasGrantedTheRights) {
    for (const QByteArray exit : {"126", "127", "0"}) {
        const auto process = launch("", "exit " + exit + '\n');
        ASSERT_EQ(process.status, 0) << exit.constData();
        EXPECT_EQ(exitStatus(process), exit.toInt());
        close(process.outputDescriptor);
    }
}

TEST_F(PkexecAuthorizationServiceTest, ProgramThatClosesItsOutputRunsOn) {
    const auto process = launch("", "exec 1>&-; exec sleep 60\n");
    ASSERT_EQ(process.status, 0);
    EXPECT_TRUE(readAll(process.outputDescriptor).isEmpty());
    EXPECT_FALSE(PkexecAuthorizationService().wait(process.pid, false));
    ASSERT_EQ(kill(process.pid, SIGKILL), 0);
    EXPECT_EQ(exitStatus(process), -1);
}

TEST_F(PkexecAuthorizationServiceTest, MissingToolAndFailedStartsAreReported) {
    PkexecAuthorizationService missing("/no/such/pkexec");
    EXPECT_FALSE(missing.lookUp());
    EXPECT_EQ(missing.launch(QStringLiteral("/bin/x"), {}, QStringLiteral("/")).status,
              platform::AuthorizationService::toolMissing);
    PkexecAuthorizationService service(tool("exit 0\n"));
    EXPECT_EQ(service.launch(QStringLiteral("/bin/x"), {}, QStringLiteral("/no/such/folder")).status, ENOENT);
    EXPECT_EQ(service.launch(QStringLiteral("--version"), {}, QStringLiteral("/")).status, EINVAL);
}

} // namespace

} // namespace quorvane::platform
