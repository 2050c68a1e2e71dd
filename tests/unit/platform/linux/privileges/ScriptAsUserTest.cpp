// Lines that run as the user.
#include "platform/linux/privileges/SudoScriptingService.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

class UserLine : public ::testing::Test {
protected:
    QTemporaryDir m_resources;
    SudoScriptingService m_service{m_resources.path()};
};

TEST_F(UserLine, ReturnsOutputWithoutItsLastLineFeed) {
    const ScriptResult result = m_service.runAsUser(QStringLiteral("printf 'a\\n\\nb\\n\\n'"));
    EXPECT_TRUE(result.succeeded);
    EXPECT_EQ(result.text, QStringLiteral("a\n\nb\n"));
    EXPECT_FALSE(result.errorNumber);
    EXPECT_TRUE(result.errorMessage.isNull());
}

TEST_F(UserLine, SilentSuccessReturnsAnEmptyTextThatIsNotNull) {
    const ScriptResult result = m_service.runAsUser(QStringLiteral("true"));
    EXPECT_TRUE(result.succeeded);
    EXPECT_FALSE(result.text.isNull());
    EXPECT_TRUE(result.text.isEmpty());
}

TEST_F(UserLine, FailureReturnsStatusAndStandardError) {
    const ScriptResult result =
        m_service.runAsUser(QStringLiteral("echo out; echo 'went wrong' >&2; exit 7"));
    EXPECT_FALSE(result.succeeded);
    EXPECT_TRUE(result.text.isNull());
    EXPECT_EQ(result.errorNumber, 7);
    EXPECT_EQ(result.errorMessage, QStringLiteral("went wrong"));
}

TEST_F(UserLine, SilentFailureHasAMessageToo) {
    const ScriptResult result = m_service.runAsUser(QStringLiteral("exit 3"));
    EXPECT_EQ(result.errorMessage, QStringLiteral("The command ended with status 3."));
}

TEST_F(UserLine, EndBySignalIsAFailure) {
    EXPECT_EQ(m_service.runAsUser(QStringLiteral("kill -9 $$")).errorNumber, 128 + 9);
}

TEST_F(UserLine, LineIsNeitherReQuotedNorReadAsAnOption) {
    EXPECT_EQ(m_service.runAsUser(QStringLiteral("printf %s 'a\"b\\c$d'")).text, QStringLiteral("a\"b\\c$d"));
    EXPECT_EQ(m_service.runAsUser(QStringLiteral("-x 2>/dev/null")).errorNumber, 127);
}

TEST_F(UserLine, ResourcesComeFirstInTheSearchPath) {
    QFile tool(m_resources.filePath(QStringLiteral("ls")));
    ASSERT_TRUE(tool.open(QIODevice::WriteOnly));
    tool.write("#!/bin/sh\necho ours\n");
    tool.close();
    ASSERT_TRUE(tool.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_EQ(m_service.runAsUser(QStringLiteral("ls")).text, QStringLiteral("ours"));
}

TEST_F(UserLine, EnvironmentIsClean) {
    ASSERT_TRUE(qputenv("QUORVANE_LEAK", "1"));
    const QString text = m_service.runAsUser(QStringLiteral("env | sort")).text;
    qunsetenv("QUORVANE_LEAK");
    EXPECT_FALSE(text.contains(QStringLiteral("QUORVANE_LEAK")));
    EXPECT_TRUE(text.contains(QStringLiteral("LC_ALL=C\n")));
}

TEST_F(UserLine, HasNoInputAndNoInheritedDescriptor) {
    const int leak = dup(STDERR_FILENO);
    ASSERT_GE(leak, 0);
    const QString text = m_service.runAsUser(QStringLiteral("cat; ls /proc/self/fd | tr '\\n' ' '")).text;
    close(leak);
    // 3 belongs to the listing itself.
    EXPECT_EQ(text, QStringLiteral("0 1 2 3 "));
}

TEST_F(UserLine, DoesNotWaitForAChildThatHoldsTheOutput) {
    const ScriptResult result = m_service.runAsUser(QStringLiteral("sleep 60 & echo $!"));
    ASSERT_TRUE(result.succeeded);
    const pid_t left = result.text.toInt();
    ASSERT_GT(left, 1);
    EXPECT_EQ(kill(left, SIGKILL), 0) << "the call waited until the child had ended";
}

TEST_F(UserLine, ChildLeftBehindCanContinueWriting) {
    const QString writtenFile = m_resources.filePath(QStringLiteral("writtenFile"));
    const ScriptResult result = m_service.runAsUser(
        QStringLiteral("(sleep 0.2; yes | head -c 200000; echo done >'%1') &").arg(writtenFile));
    ASSERT_TRUE(result.succeeded);
    QElapsedTimer clock;
    clock.start();
    while (!QFile::exists(writtenFile) && clock.elapsed() < 10000) {
        usleep(10000);
    }
    EXPECT_TRUE(QFile::exists(writtenFile));
}

TEST_F(UserLine, AcceptsLongOutputOnBothStreams) {
    const ScriptResult result = m_service.runAsUser(
        QStringLiteral("head -c 1000000 /dev/zero | tr '\\0' x; head -c 300000 /dev/zero | tr '\\0' y >&2"));
    EXPECT_EQ(result.text.size(), 1000000);
}

TEST_F(UserLine, NulCannotBePassed) {
    const ScriptResult result = m_service.runAsUser(QStringLiteral("echo a") + QChar(u'\0'));
    EXPECT_FALSE(result.succeeded);
    EXPECT_TRUE(result.errorNumber.has_value());
}

} // namespace

} // namespace quorvane::platform
