#include "platform/linux/privileges/PkexecAuthorizationService.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

using platform::PkexecAuthorizationService;

class PkexecAuthorizationServiceTest : public ::testing::Test {
protected:
    /// A tool that replaces pkexec.
    QByteArray tool(const QByteArray &script) const {
        QFile file(m_folder.filePath(QStringLiteral("pkexec")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + script);
        file.close();
        EXPECT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        return QFile::encodeName(file.fileName());
    }

    static QByteArray readAll(int descriptor) {
        QFile file;
        EXPECT_TRUE(file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle));
        return file.readAll();
    }

    QTemporaryDir m_folder;
};

TEST_F(PkexecAuthorizationServiceTest, PassesArgumentsUnchangedAndRunsInTheFolder) {
    PkexecAuthorizationService service(tool("printf '[%s]' \"$@\"; pwd; exit 3\n"));
    EXPECT_TRUE(service.lookUp());
    const auto process = service.launch(
        QStringLiteral("/bin/x"), {QStringLiteral("a b"), QStringLiteral("$(id)"), QStringLiteral("'ä")},
        m_folder.path());
    ASSERT_EQ(process.status, 0);
    const QByteArray expected = "[--keep-cwd][--disable-internal-agent][/bin/x][a b][$(id)]['ä]" +
                                QDir(m_folder.path()).canonicalPath().toUtf8() + '\n';
    EXPECT_EQ(readAll(process.outputDescriptor), expected);
    const auto status = service.wait(process.pid, true);
    ASSERT_TRUE(status);
    EXPECT_EQ(WEXITSTATUS(*status), 3);
    EXPECT_FALSE(service.wait(process.pid, false)) << "the status is returned once";
}

TEST_F(PkexecAuthorizationServiceTest, ChecksWithoutWaiting) {
    PkexecAuthorizationService service(tool("read -r _ </proc/self/fd/0; exec sleep 60\n"));
    const auto process = service.launch(QStringLiteral("/bin/x"), {}, QStringLiteral("/"));
    ASSERT_EQ(process.status, 0);
    EXPECT_FALSE(service.wait(process.pid, false));
    ASSERT_EQ(kill(process.pid, SIGKILL), 0);
    const auto status = service.wait(process.pid, true);
    ASSERT_TRUE(status);
    EXPECT_EQ(WTERMSIG(*status), SIGKILL);
    close(process.outputDescriptor);
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
