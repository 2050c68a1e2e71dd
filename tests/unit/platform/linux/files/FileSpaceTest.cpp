#include "platform/Files.h"
#include "tests/unit/platform/linux/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace quorvane::platform {

namespace {

constexpr qint64 room = 64LL * 1024;

/// A folder on a small disk of its own, and a file in it.
class FileSpaceTest : public ::testing::Test {
protected:
    void mountDisk(const char *options) {
        ASSERT_EQ(mount("small", QFile::encodeName(disk).constData(), "tmpfs", 0, options), 0);
        mounted = true;
    }

    void SetUp() override { ASSERT_TRUE(QDir().mkpath(disk)); }

    void TearDown() override {
        if (mounted) {
            EXPECT_EQ(umount2(QFile::encodeName(disk).constData(), MNT_DETACH), 0);
        }
    }

    static void write(const QString &name, const QByteArray &bytes) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    /// Writes until nothing more fits.
    void fill() const {
        QFile file(disk + QStringLiteral("/ballast"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (file.write(QByteArray(4096, 'x')) > 0) {
        }
    }

    QTemporaryDir folder;
    const QString disk = folder.filePath(QStringLiteral("disk"));
    const QString path = disk + QStringLiteral("/log");
    bool mounted = false;
};

TEST_F(FileSpaceTest, SizeAndContentsStay) {
    write(path, "abc");
    EXPECT_EQ(platform::reserveSpace(path, room), 0);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("abc"));
}

TEST_F(FileSpaceTest, MissingFileAndFolder) {
    EXPECT_EQ(platform::reserveSpace(path, room), ENOENT);
    EXPECT_EQ(platform::checkSpace(disk + QStringLiteral("/none"), room), ENOENT);
}

TEST_F(FileSpaceTest, LinkIsNotFollowed) {
    write(disk + QStringLiteral("/other"), "x");
    ASSERT_TRUE(QFile::link(disk + QStringLiteral("/other"), path));
    EXPECT_EQ(platform::reserveSpace(path, room), ELOOP);
}

TEST_F(FileSpaceTest, CheckingLeavesNothing) {
    EXPECT_EQ(platform::checkSpace(disk, room), 0);
    EXPECT_TRUE(QDir(disk).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST_F(FileSpaceTest, ReservedSpaceOutlastsAFullDisk) {
    if (!sandbox::isInside()) {
        GTEST_SKIP() << "needs mount namespaces for a small disk";
    }
    mountDisk("size=256k,mode=700");
    write(path, {});
    ASSERT_EQ(platform::reserveSpace(path, room), 0);
    fill();
    EXPECT_NE(platform::checkSpace(disk, room), 0);
    QFile log(path);
    ASSERT_TRUE(log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered));
    EXPECT_EQ(log.write(QByteArray(room, 'l')), room);
    EXPECT_EQ(log.write(QByteArray(room, 'l')), -1) << "no more than was set aside";
}

TEST_F(FileSpaceTest, FullDiskIsReported) {
    if (!sandbox::isInside()) {
        GTEST_SKIP() << "needs mount namespaces for a small disk";
    }
    mountDisk("size=64k,mode=700");
    write(path, "x");
    fill();
    EXPECT_EQ(platform::reserveSpace(path, room), ENOSPC);
    EXPECT_EQ(platform::checkSpace(disk, room), ENOSPC);
}

TEST_F(FileSpaceTest, DiskWithoutSpaceForOneMoreFileIsReported) {
    if (!sandbox::isInside()) {
        GTEST_SKIP() << "needs mount namespaces for a small disk";
    }
    mountDisk("size=1m,nr_inodes=2,mode=700");
    write(path, "x");
    EXPECT_EQ(platform::reserveSpace(path, room), 0);
    EXPECT_EQ(platform::checkSpace(disk, room), ENOSPC);
}

TEST_F(FileSpaceTest, FileSystemThatReservesNothingCountsAsSpacious) {
    if (!sandbox::isInside()) {
        GTEST_SKIP() << "needs mount namespaces for a small disk";
    }
    ASSERT_EQ(mount("small", QFile::encodeName(disk).constData(), "ramfs", 0, "mode=700"), 0);
    mounted = true;
    write(path, "x");
    EXPECT_EQ(platform::reserveSpace(path, room), 0);
    EXPECT_EQ(platform::checkSpace(disk, room), 0);
}

TEST_F(FileSpaceTest, ReadOnlyDiskIsReported) {
    if (!sandbox::isInside()) {
        GTEST_SKIP() << "needs mount namespaces for a small disk";
    }
    mountDisk("size=1m,mode=700");
    write(path, "x");
    ASSERT_EQ(mount("small", QFile::encodeName(disk).constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr),
              0);
    EXPECT_EQ(platform::reserveSpace(path, room), EROFS);
    EXPECT_EQ(platform::checkSpace(disk, room), EROFS);
}

} // namespace

} // namespace quorvane::platform
