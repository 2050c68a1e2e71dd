#include "frontend/privileges/FileUtils.h"

#include "fakes/TestPlatform.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane {

namespace {

class FileUtilsTest : public testing::Test {
protected:
    FileUtilsTest() {
        QDir().mkpath(m_folder);
        QFile file(m_path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("content");
    }

    [[nodiscard]] mode_t mode() const {
        struct stat info {};

        return stat(m_path.toUtf8().constData(), &info) == 0 ? info.st_mode & 07777 : 0;
    }

    void setMode(mode_t bits) const { ASSERT_EQ(chmod(m_path.toUtf8().constData(), bits), 0); }

    fakes::TestPlatform m_services;
    QString m_folder = m_services.home() + QStringLiteral("/Library/Preferences");
    QString m_path = m_folder + QStringLiteral("/com.tallowind.Quorvane.plist");
};

TEST_F(FileUtilsTest, EveryOtherModeBecomesOwnerReadAndWrite) {
    for (const mode_t bits : {0644U, 0666U, 0400U, 0700U, 0640U, 0000U, 0601U, 04600U}) {
        setMode(bits);
        FileUtils::checkUserDefaultsPremmision();
        EXPECT_EQ(mode(), 0600U) << std::oct << bits;
    }
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
}

TEST_F(FileUtilsTest, RightModeIsLeftAlone) {
    setMode(0600);

    struct stat before {};

    ASSERT_EQ(stat(m_path.toUtf8().constData(), &before), 0);
    FileUtils::checkUserDefaultsPremmision();

    struct stat after {};

    ASSERT_EQ(stat(m_path.toUtf8().constData(), &after), 0);
    EXPECT_EQ(before.st_ctim.tv_nsec, after.st_ctim.tv_nsec);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(FileUtilsTest, MissingFileIsNoProblem) {
    ASSERT_TRUE(QFile::remove(m_path));
    FileUtils::checkUserDefaultsPremmision();
    EXPECT_FALSE(QFile::exists(m_path));
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
}

TEST_F(FileUtilsTest, FolderIsLeftAlone) {
    ASSERT_TRUE(QFile::remove(m_path));
    ASSERT_TRUE(QDir().mkdir(m_path));
    setMode(0755);
    FileUtils::checkUserDefaultsPremmision();
    EXPECT_EQ(mode(), 0755U);
}

TEST_F(FileUtilsTest, TargetOfALinkIsLeftAlone) {
    const QString target = m_services.home() + QStringLiteral("/other");
    ASSERT_TRUE(QFile::rename(m_path, target));
    ASSERT_TRUE(QFile::link(target, m_path));
    setMode(0644);
    FileUtils::checkUserDefaultsPremmision();
    EXPECT_EQ(mode(), 0644U);
    EXPECT_TRUE(QFileInfo(m_path).isSymLink());
    ASSERT_TRUE(QFile::remove(target)); // the link now leads nowhere
    FileUtils::checkUserDefaultsPremmision();
    EXPECT_TRUE(QFileInfo(m_path).isSymLink());
    EXPECT_TRUE(m_services.logSink().lines().isEmpty());
}

TEST_F(FileUtilsTest, FileThatCannotBeRepairedIsRemoved) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "needs root to make a file that belongs to another user";
    }
    // The check runs as a user who owns the folder but not the file.
    setMode(0644);
    constexpr uid_t unprivilegedUser = 65534;
    for (QString up = m_folder; up.size() > 4; up = up.left(up.lastIndexOf(u'/'))) {
        ASSERT_EQ(chown(up.toUtf8().constData(), unprivilegedUser, unprivilegedUser), 0);
    }
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (setuid(unprivilegedUser) != 0) {
            _exit(2);
        }
        FileUtils::checkUserDefaultsPremmision();
        _exit(0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_FALSE(QFile::exists(m_path));
}

} // namespace

} // namespace quorvane
