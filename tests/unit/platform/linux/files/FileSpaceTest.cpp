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

/// A folder on its own small disk, and a file in it.
class FileSpaceTest : public ::testing::Test {
protected:
    void mountDisk(const char *options) {
        ASSERT_EQ(mount("small", QFile::encodeName(m_disk).constData(), "tmpfs", 0, options), 0);
        m_mounted = true;
    }

    void SetUp() override { ASSERT_TRUE(QDir().mkpath(m_disk)); }

    void TearDown() override {
        if (m_mounted) {
            EXPECT_EQ(umount2(QFile::encodeName(m_disk).constData(), MNT_DETACH), 0);
        }
    }

    static void write(const QString &name, const QByteArray &bytes) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    /// Writes until the disk is full.
    void fill() const {
        QFile file(m_disk + QStringLiteral("/ballast"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (file.write(QByteArray(4096, 'x')) > 0) {
        }
    }

    QTemporaryDir m_folder;
    const QString m_disk = m_folder.filePath(QStringLiteral("disk"));
    const QString m_path = m_disk + QStringLiteral("/log");
    bool m_mounted = false;
};

TEST_F(FileSpaceTest, SizeAndContentsDoNotChange) {
    write(m_path, "abc");
    EXPECT_EQ(platform::reserveSpace(m_path, room), 0);
    QFile file(m_path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("abc"));
}

TEST_F(FileSpaceTest, MissingFile) {
    EXPECT_EQ(platform::reserveSpace(m_path, room), ENOENT);
}

TEST_F(FileSpaceTest, LinkIsNotFollowed) {
    write(m_disk + QStringLiteral("/other"), "x");
    ASSERT_TRUE(QFile::link(m_disk + QStringLiteral("/other"), m_path));
    EXPECT_EQ(platform::reserveSpace(m_path, room), ELOOP);
}

TEST_F(FileSpaceTest, ReservedSpaceRemainsOnAFullDisk) {
    if (!sandbox::isInside()) {
        GTEST_SKIP() << "needs mount namespaces for a small disk";
    }
    mountDisk("size=256k,mode=700");
    const QString other = m_disk + QStringLiteral("/other");
    write(m_path, {});
    write(other, {});
    ASSERT_EQ(platform::reserveSpace(m_path, room), 0);
    fill();
    EXPECT_EQ(platform::reserveSpace(other, room), ENOSPC);
    QFile log(m_path);
    ASSERT_TRUE(log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered));
    EXPECT_EQ(log.write(QByteArray(room, 'l')), room);
    EXPECT_EQ(log.write(QByteArray(room, 'l')), -1) << "no more than was reserved";
}

TEST_F(FileSpaceTest, FullDiskIsReported) {
    if (!sandbox::isInside()) {
        GTEST_SKIP() << "needs mount namespaces for a small disk";
    }
    mountDisk("size=64k,mode=700");
    write(m_path, "x");
    fill();
    EXPECT_EQ(platform::reserveSpace(m_path, room), ENOSPC);
}

TEST_F(FileSpaceTest, FileSystemWithoutReservationCountsAsSpacious) {
    if (!sandbox::isInside()) {
        GTEST_SKIP() << "needs mount namespaces for a small disk";
    }
    ASSERT_EQ(mount("small", QFile::encodeName(m_disk).constData(), "ramfs", 0, "mode=700"), 0);
    m_mounted = true;
    write(m_path, "x");
    EXPECT_EQ(platform::reserveSpace(m_path, room), 0);
}

TEST_F(FileSpaceTest, ReadOnlyDiskIsReported) {
    if (!sandbox::isInside()) {
        GTEST_SKIP() << "needs mount namespaces for a small disk";
    }
    mountDisk("size=1m,mode=700");
    write(m_path, "x");
    ASSERT_EQ(mount("small", QFile::encodeName(m_disk).constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr),
              0);
    EXPECT_EQ(platform::reserveSpace(m_path, room), EROFS);
}

} // namespace

} // namespace quorvane::platform
