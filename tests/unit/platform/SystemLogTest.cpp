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
    fakes::MemoryPreferences preferences;
    fakes::RecordingLogSink sink;
    platform::SystemLog log{sink, preferences};
};

TEST_F(SystemLogTest, GateIsOpenWhileThePreferenceReadsZero) {
    EXPECT_TRUE(log.gateOpen());
    for (const QVariant &value : {QVariant(0), QVariant(false), QVariant(QStringLiteral("no"))}) {
        preferences.setValue(showLogs, value);
        EXPECT_TRUE(log.gateOpen());
    }
    for (const QVariant &value : {QVariant(1), QVariant(true), QVariant(-1)}) {
        preferences.setValue(showLogs, value);
        EXPECT_FALSE(log.gateOpen());
    }
}

TEST_F(SystemLogTest, ClosedGateHoldsBackOrdinaryLinesOnly) {
    preferences.setValue(showLogs, 1);
    log.write(QStringLiteral("ordinary"));
    log.writeAlways(QStringLiteral("> 1"));
    EXPECT_EQ(sink.lines(), QStringList{QStringLiteral("> 1")});
}

TEST_F(SystemLogTest, EveryLineIsMasked) {
    log.setMask([](const QString &line) {
        return QString(line).replace(QStringLiteral("secret"), QStringLiteral("*****"));
    });
    log.write(QStringLiteral("a secret"));
    log.writeAlways(QStringLiteral("secret"));
    EXPECT_EQ(sink.lines(), (QStringList{QStringLiteral("a *****"), QStringLiteral("*****")}));
}

TEST_F(SystemLogTest, TheMaskSeesTheTextBeforeItIsEscaped) {
    log.setMask([](const QString &line) {
        return QString(line).replace(QStringLiteral("a\nb"), QStringLiteral("*****"));
    });
    log.write(QStringLiteral("<a\nb>"));
    EXPECT_EQ(sink.lines(), QStringList{QStringLiteral("<*****>")});
}

TEST_F(SystemLogTest, OneCallIsOneLine) {
    log.write(QStringLiteral("a\nb\r\tc\x1b[31m\x7f") + QChar(0x2028) + QChar(u'\0') + QChar(0xD800) +
              QChar(0x202E));
    EXPECT_EQ(sink.lines(),
              QStringList{QStringLiteral("a\\nb\\r\\tc\\u001b[31m\\u007f\\u2028\\u0000\\ud800\\u202e")});
    sink.clear();
    log.write(QStringLiteral("äß漢😀"));
    EXPECT_EQ(sink.lines(), QStringList{QStringLiteral("äß漢😀")});
}

TEST_F(SystemLogTest, MaskMayReadPreferencesAndThreadsMayWrite) {
    log.setMask(
        [this](const QString &line) -> QString { return line + preferences.string(QStringLiteral("x")); });
    std::vector<std::thread> writers;
    writers.reserve(4);
    for (int i = 0; i < 4; ++i) {
        writers.emplace_back([this] {
            for (int round = 0; round < 100; ++round) {
                log.write(QStringLiteral("line"));
            }
        });
    }
    for (std::thread &writer : writers) {
        writer.join();
    }
    EXPECT_EQ(sink.lines().size(), 400);
}

} // namespace

} // namespace quorvane::platform
