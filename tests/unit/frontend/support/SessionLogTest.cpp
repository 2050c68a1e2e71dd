#include "frontend/support/SessionLog.h"

#include "fakes/TestPlatform.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quorvane {

namespace {

class SessionLogTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(QDir().mkpath(QFileInfo(m_path).path())); }

    static QByteArray contentsOf(const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }

    void fill(qint64 size) const {
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(QByteArray(size, 'o')), size);
    }

    fakes::TestPlatform m_services;
    const QString m_path = m_services.home() + text("/Documents/Quorvane/qrvp.log");
    const QString m_old = m_path + text(".old");
};

TEST_F(SessionLogTest, LinesAreOnlyAppendedToAnExistingFile) {
    SessionLog::append(text("connection error"), text("Berlin"));
    EXPECT_FALSE(QFile::exists(m_path));
    SessionLog::ensureExists();
    EXPECT_EQ(contentsOf(m_path), QByteArray());
    SessionLog::append(text("connection error"), text("Berlin"));
    SessionLog::ensureExists();
    SessionLog::append(text("trying to connect"), QString::fromUtf8("M\xC3\xBCnchen 1"));
    EXPECT_EQ(contentsOf(m_path),
              QByteArray("connection error Berlin\ntrying to connect M\xC3\xBCnchen 1\n"));
}

TEST_F(SessionLogTest, NewLogIsForItsOwnerOnly) {
    SessionLog::ensureExists();
    EXPECT_EQ(QFile::permissions(m_path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
}

TEST_F(SessionLogTest, TitlesAreCutAtTwoHundredCharacters) {
    SessionLog::ensureExists();
    SessionLog::append(text("e"), QString(200, u'x'));
    SessionLog::append(text("e"), QString(100000, u'x'));
    // A character beyond the basic plane counts once and is never cut in half.
    SessionLog::append(text("e"), QString::fromUtf8("\xF0\x9F\x98\x80").repeated(300));
    const QByteArray line = "e " + QByteArray(200, 'x') + '\n';
    EXPECT_EQ(contentsOf(m_path), line + line + "e " + QByteArray("\xF0\x9F\x98\x80").repeated(200) + '\n');
}

TEST_F(SessionLogTest, WhatIsNotVisibleIsReplaced) {
    SessionLog::ensureExists();
    const char16_t title[] = u"a\nconnection success b\r\t\u001B[2J\u202E\u2028\u0085\xD800"
                             u"c";
    SessionLog::append(text("connection error"), QString::fromUtf16(title));
    EXPECT_EQ(
        QString::fromUtf8(contentsOf(m_path)),
        QString::fromUtf16(u"connection error a\uFFFDconnection success b\uFFFD\uFFFD\uFFFD[2J\uFFFD\uFFFD"
                           u"\uFFFD\uFFFDc\n"));
}

TEST_F(SessionLogTest, FullLogBecomesTheOldCopy) {
    const QByteArray line("connection success Oslo\n");
    fill(SessionLog::maximumSize - line.size());
    SessionLog::append(text("connection success"), text("Oslo"));
    EXPECT_EQ(QFileInfo(m_path).size(), SessionLog::maximumSize);
    EXPECT_FALSE(QFile::exists(m_old));
    SessionLog::append(text("connection success"), text("Oslo"));
    EXPECT_EQ(contentsOf(m_path), line);
    EXPECT_EQ(QFileInfo(m_old).size(), SessionLog::maximumSize);
    EXPECT_TRUE(contentsOf(m_old).endsWith(QByteArray("o" + line)));
}

TEST_F(SessionLogTest, ThereIsOneOldCopyOnly) {
    for (int round = 0; round < 3; ++round) {
        fill(SessionLog::maximumSize);
        SessionLog::append(text("e"), QString::number(round));
    }
    EXPECT_EQ(contentsOf(m_path), QByteArray("e 2\n"));
    EXPECT_EQ(QDir(QFileInfo(m_path).path()).entryList(QDir::Files).size(), 2);
}

TEST_F(SessionLogTest, LogDoesNotGrowWhenTheOldCopyCannotBeMade) {
    fill(SessionLog::maximumSize);
    ASSERT_TRUE(QDir().mkpath(m_old));
    SessionLog::append(text("e"), text("new"));
    EXPECT_EQ(contentsOf(m_path), QByteArray("e new\n"));
}

TEST_F(SessionLogTest, PipeInItsPlaceIsNotWaitedFor) {
    ASSERT_EQ(mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
    SessionLog::ensureExists();
    SessionLog::append(text("connection error"), text("Berlin"));
    const int reader = ::open(QFile::encodeName(m_path).constData(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    SessionLog::append(text("connection error"), text("Berlin"));
    char byte = 0;
    EXPECT_EQ(::read(reader, &byte, 1), 0) << "a reader receives nothing either";
    ::close(reader);
}

TEST_F(SessionLogTest, DeviceOrFolderInItsPlaceStopsNothing) {
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/full"), m_path));
    SessionLog::ensureExists();
    SessionLog::append(text("e"), text("x"));
    ASSERT_TRUE(QFile::remove(m_path));
    ASSERT_TRUE(QDir().mkpath(m_path));
    SessionLog::ensureExists();
    SessionLog::append(text("e"), text("x"));
    EXPECT_TRUE(QDir(m_path).isEmpty());
}

} // namespace

} // namespace quorvane
