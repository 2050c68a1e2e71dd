#include "platform/linux/desktop/QtDelayedCalls.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

class QtDelayedCallsTest : public ::testing::Test {
protected:
    platform::QtDelayedCalls delayed;
    std::unique_ptr<QObject> target = std::make_unique<QObject>();
    QStringList calls;

    void ask(double seconds, const QString &label, QObject *of = nullptr) {
        delayed.callAfter(seconds, of != nullptr ? of : target.get(), [this, label] { calls.append(label); });
    }

    /// Runs the event loop until so many calls came, or for the given time.
    void spin(qsizetype count, int milliseconds = 5000) {
        QElapsedTimer clock;
        clock.start();
        while (calls.size() < count && clock.elapsed() < milliseconds) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        }
    }
};

TEST_F(QtDelayedCallsTest, CallsByDueTimeThenByOrder) {
    ask(0.05, QStringLiteral("c"));
    ask(0, QStringLiteral("a"));
    ask(-1, QStringLiteral("b"));
    ask(0.05, QStringLiteral("d"));
    EXPECT_TRUE(calls.isEmpty()) << "never from within the request";
    spin(4);
    EXPECT_EQ(calls.join(QString()), QStringLiteral("abcd"));
}

TEST_F(QtDelayedCallsTest, NotBeforeTheirTime) {
    QElapsedTimer clock;
    clock.start();
    ask(0.1, QStringLiteral("a"));
    spin(1);
    EXPECT_GE(clock.elapsed(), 99);
}

TEST_F(QtDelayedCallsTest, DroppedWithTheirTarget) {
    QObject other;
    ask(0.01, QStringLiteral("gone"));
    ask(0.02, QStringLiteral("kept"), &other);
    target.reset();
    spin(1);
    spin(2, 60);
    EXPECT_EQ(calls, QStringList{QStringLiteral("kept")});
}

TEST_F(QtDelayedCallsTest, CancelledByTarget) {
    QObject other;
    ask(0.01, QStringLiteral("a"));
    ask(0.01, QStringLiteral("b"));
    ask(0.02, QStringLiteral("kept"), &other);
    delayed.cancelAll(target.get());
    spin(1);
    spin(2, 60);
    EXPECT_EQ(calls, QStringList{QStringLiteral("kept")});
    delayed.cancelAll(nullptr);
}

TEST_F(QtDelayedCallsTest, ACallMayCancelAskAndDestroy) {
    delayed.callAfter(0, target.get(), [this] {
        delayed.cancelAll(target.get());
        ask(0, QStringLiteral("again"));
    });
    ask(0, QStringLiteral("cancelled"));
    spin(1);
    EXPECT_EQ(calls, QStringList{QStringLiteral("again")});
    delayed.callAfter(0, target.get(), [this] {
        target.reset();
        calls.append(QStringLiteral("end"));
    });
    spin(2);
    EXPECT_EQ(calls.last(), QStringLiteral("end"));
}

TEST_F(QtDelayedCallsTest, GoingAwayDropsEverything) {
    {
        platform::QtDelayedCalls shortLived;
        shortLived.callAfter(0, target.get(), [this] { calls.append(QStringLiteral("x")); });
    }
    spin(1, 60);
    EXPECT_TRUE(calls.isEmpty());
}

} // namespace

} // namespace quorvane::platform
