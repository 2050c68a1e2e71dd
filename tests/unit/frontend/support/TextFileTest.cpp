#include "frontend/support/TextFile.h"

#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace quorvane {

namespace {

/// During its lifetime the files of this process cannot grow, as if the disk were full.
class NoRoom {
public:
    NoRoom() {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_usual);
        const rlimit none{0, m_usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }

    ~NoRoom() { setrlimit(RLIMIT_FSIZE, &m_usual); }

    NoRoom(const NoRoom &) = delete;
    NoRoom &operator=(const NoRoom &) = delete;

private:
    rlimit m_usual{};
};

class TextFileTest : public testing::Test {
protected:
    void write(const QByteArray &bytes) {
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(QStringLiteral("file"));
};

TEST_F(TextFileTest, MissingEmptyOrBinaryFilesHoldNoText) {
    EXPECT_TRUE(TextFile::read(m_path).isNull());
    for (const QByteArray &bytes : {QByteArray(), QByteArray("\xff"), QByteArray("ok\xC3"),
                                    QByteArray("\xED\xA0\x80"), QByteArray("\xC0\x80")}) {
        write(bytes);
        EXPECT_TRUE(TextFile::read(m_path).isNull()) << bytes.toHex().toStdString();
    }
}

TEST_F(TextFileTest, FileWithoutASizeIsReadToItsEnd) {
    EXPECT_TRUE(TextFile::readBytes(QStringLiteral("/proc/self/status")).contains("VmHWM"));
}

TEST_F(TextFileTest, TextIsReadAsItIs) {
    write("a\r\n\xC3\xBC\n");
    EXPECT_EQ(TextFile::read(m_path), QString::fromUtf8("a\r\n\xC3\xBC\n"));
}

TEST_F(TextFileTest, HugeFileHoldsNoText) {
    write(QByteArray(16 * 1024 * 1024, 'x'));
    EXPECT_EQ(TextFile::read(m_path).size(), 16 * 1024 * 1024);
    write(QByteArray(16 * 1024 * 1024 + 1, 'x'));
    EXPECT_TRUE(TextFile::read(m_path).isNull());
}

TEST_F(TextFileTest, PipeHoldsNoTextAndIsNotWaitedFor) {
    ASSERT_EQ(mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
    EXPECT_TRUE(TextFile::read(m_path).isNull());
}

TEST_F(TextFileTest, DeviceOrLinkToOneHoldsNoText) {
    EXPECT_TRUE(TextFile::read(QStringLiteral("/dev/zero")).isNull());
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), m_path));
    EXPECT_TRUE(TextFile::read(m_path).isNull());
}

TEST_F(TextFileTest, ReplacedFileIsPrivateWhateverWasThere) {
    write("old");
    QFile::setPermissions(m_path, QFileDevice::Permissions(0x6644));
    ASSERT_TRUE(TextFile::replace(m_path, "new"));
    EXPECT_EQ(TextFile::read(m_path), QStringLiteral("new"));
    EXPECT_EQ(QFile::permissions(m_path) &
                  (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
              QFileDevice::Permissions());
}

TEST_F(TextFileTest, FailureLeavesNothing) {
    EXPECT_FALSE(TextFile::replace(m_folder.filePath(QStringLiteral("no/such/folder")), "x"));
}

TEST_F(TextFileTest, FullDiskLeavesTheOldFileUnchanged) {
    write("old");
    bool replaced = true;
    {
        const NoRoom full;
        replaced = TextFile::replace(m_path, "new");
    }
    EXPECT_FALSE(replaced);
    EXPECT_EQ(TextFile::read(m_path), QStringLiteral("old"));
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("file")});
}

TEST_F(TextFileTest, LinkIsReplacedNotFollowed) {
    write("other's");
    const QString link = m_folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(m_path, link));
    ASSERT_TRUE(TextFile::replace(link, "new"));
    EXPECT_EQ(TextFile::read(m_path), QStringLiteral("other's"));
    EXPECT_EQ(TextFile::read(link), QStringLiteral("new"));
}

} // namespace

} // namespace quorvane
