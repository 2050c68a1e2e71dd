#include "platform/SystemLog.h"
#include "fakes/MemoryPreferences.h"
#include "fakes/RecordingLogSink.h"

#include <gtest/gtest.h>
#include <thread>

namespace quorvane::platform {

namespace {

const QString showLogs = QStringLiteral("showLogs");

class SystemLogTest : public ::testing::Test {
protected:
    fakes::MemoryPreferences m_preferences;
    fakes::RecordingLogSink m_sink;
    platform::SystemLog m_log{m_sink, m_preferences};
};

TEST_F(SystemLogTest, GateIsOpenWhileThePreferenceIsZero) {
    EXPECT_TRUE(m_log.gateOpen());
    for (const QVariant &value : {QVariant(0), QVariant(false), QVariant(QStringLiteral("no"))}) {
        m_preferences.setValue(showLogs, value);
        EXPECT_TRUE(m_log.gateOpen());
    }
    for (const QVariant &value : {QVariant(1), QVariant(true), QVariant(-1)}) {
        m_preferences.setValue(showLogs, value);
        EXPECT_FALSE(m_log.gateOpen());
    }
}

TEST_F(SystemLogTest, ClosedGateDropsOrdinaryLinesOnly) {
    m_preferences.setValue(showLogs, 1);
    m_log.write(QStringLiteral("ordinary"));
    m_log.writeAlways(QStringLiteral("> 1"));
    EXPECT_EQ(m_sink.lines(), QStringList{QStringLiteral("> 1")});
}

TEST_F(SystemLogTest, EveryLineIsMasked) {
    m_log.setMask([](const QString &line) {
        return QString(line).replace(QStringLiteral("secret"), QStringLiteral("*****"));
    });
    m_log.write(QStringLiteral("a secret"));
    m_log.writeAlways(QStringLiteral("secret"));
    EXPECT_EQ(m_sink.lines(), (QStringList{QStringLiteral("a *****"), QStringLiteral("*****")}));
}

TEST_F(SystemLogTest, MaskReceivesTheTextBeforeItIsEscaped) {
    m_log.setMask([](const QString &line) {
        return QString(line).replace(QStringLiteral("a\nb"), QStringLiteral("*****"));
    });
    m_log.write(QStringLiteral("<a\nb>"));
    EXPECT_EQ(m_sink.lines(), QStringList{QStringLiteral("<*****>")});
}

TEST_F(SystemLogTest, OneCallWritesOneLine) {
    m_log.write(QStringLiteral("a\nb\r\tc\x1b[31m\x7f") + QChar(0x2028) + QChar(u'\0') + QChar(0xD800) +
                QChar(0x202E));
    EXPECT_EQ(m_sink.lines(),
              QStringList{QStringLiteral("a\\nb\\r\\tc\\u001b[31m\\u007f\\u2028\\u0000\\ud800\\u202e")});
    m_sink.clear();
    m_log.write(QStringLiteral("äß漢😀"));
    EXPECT_EQ(m_sink.lines(), QStringList{QStringLiteral("äß漢😀")});
}

TEST_F(SystemLogTest, MaskMayReadPreferencesAndThreadsMayWrite) {
    m_log.setMask(
        [this](const QString &line) -> QString { return line + m_preferences.string(QStringLiteral("x")); });
    std::vector<std::thread> writers;
    writers.reserve(4);
    for (int i = 0; i < 4; ++i) {
        writers.emplace_back([this] {
            for (int round = 0; round < 100; ++round) {
                m_log.write(QStringLiteral("line"));
            }
        });
    }
    for (std::thread &writer : writers) {
        writer.join();
    }
    EXPECT_EQ(m_sink.lines().size(), 400);
}

} // namespace

} // namespace quorvane::platform
