#include "platform/linux/desktop/QtDelayedCalls.h"
#include "tests/unit/EventLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

class QtDelayedCallsTest : public ::testing::Test {
protected:
    platform::QtDelayedCalls m_delayed;
    std::unique_ptr<QObject> m_target = std::make_unique<QObject>();
    QStringList m_calls;

    void ask(double seconds, const QString &label, QObject *of = nullptr) {
        m_delayed.callAfter(seconds, of != nullptr ? of : m_target.get(),
                            [this, label] { m_calls.append(label); });
    }

    /// Runs the event loop until that many calls have run.
    void spin(qsizetype count) {
        EXPECT_TRUE(spinUntil([&] { return m_calls.size() >= count; }));
    }
};

TEST_F(QtDelayedCallsTest, CallsByDueTimeThenByOrder) {
    ask(0.05, QStringLiteral("c"));
    ask(0, QStringLiteral("a"));
    ask(-1, QStringLiteral("b"));
    ask(0.05, QStringLiteral("d"));
    EXPECT_TRUE(m_calls.isEmpty()) << "no call runs within the request";
    spin(4);
    EXPECT_EQ(m_calls.join(QString()), QStringLiteral("abcd"));
}

TEST_F(QtDelayedCallsTest, NotEarlierThanRequested) {
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
    m_target.reset();
    spin(1);
    EXPECT_EQ(m_calls, QStringList{QStringLiteral("kept")});
}

TEST_F(QtDelayedCallsTest, CancelledByTarget) {
    QObject other;
    ask(0.01, QStringLiteral("a"));
    ask(0.01, QStringLiteral("b"));
    ask(0.02, QStringLiteral("kept"), &other);
    m_delayed.cancelAll(m_target.get());
    spin(1);
    EXPECT_EQ(m_calls, QStringList{QStringLiteral("kept")});
    m_delayed.cancelAll(nullptr);
}

TEST_F(QtDelayedCallsTest, CallMayCancelRequestAndDestroy) {
    m_delayed.callAfter(0, m_target.get(), [this] {
        m_delayed.cancelAll(m_target.get());
        ask(0, QStringLiteral("again"));
    });
    ask(0, QStringLiteral("cancelled"));
    spin(1);
    EXPECT_EQ(m_calls, QStringList{QStringLiteral("again")});
    m_delayed.callAfter(0, m_target.get(), [this] {
        m_target.reset();
        m_calls.append(QStringLiteral("end"));
    });
    spin(2);
    EXPECT_EQ(m_calls.last(), QStringLiteral("end"));
}

TEST_F(QtDelayedCallsTest, DestructionDropsEverything) {
    {
        platform::QtDelayedCalls shortLived;
        shortLived.callAfter(0, m_target.get(), [this] { m_calls.append(QStringLiteral("x")); });
    }
    ask(0.01, QStringLiteral("later"));
    spin(1);
    EXPECT_EQ(m_calls, QStringList{QStringLiteral("later")});
}

} // namespace

} // namespace quorvane::platform
