#include "frontend/session/TrayAnimation.h"

#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QElapsedTimer>
#include <QEvent>
#include <QThread>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

class TrayAnimationTest : public testing::Test {
protected:
    TrayAnimationTest() {
        QObject::connect(&m_animation, &TrayAnimation::frame, [this](const QString &image) {
            m_frames.append(image);
            m_thread = QThread::currentThread();
        });
    }

    TrayAnimation m_animation;
    QStringList m_frames;
    QThread *m_thread = nullptr;
};

TEST_F(TrayAnimationTest, FourteenFramesRepeatAndTheFifteenthIsNeverShown) {
    for (int i = 0; i < 29; ++i) {
        m_animation.animateTrayIcon();
    }
    for (int i = 0; i < 29; ++i) {
        EXPECT_EQ(m_frames.at(i), text("A%1").arg(i % 14 + 1, 2, 10, QChar(u'0')));
    }
}

TEST_F(TrayAnimationTest, ResetStartsWithTheFirstFrame) {
    m_animation.animateTrayIcon();
    m_animation.animateTrayIcon();
    m_animation.resetFrames();
    m_animation.animateTrayIcon();
    EXPECT_EQ(m_frames.last(), text("A01"));
}

TEST_F(TrayAnimationTest, FramesAreAFifthOfASecondApart) {
    EXPECT_EQ(TrayAnimation::frameMicroseconds, 200'000U);
}

TEST_F(TrayAnimationTest, ThreadDrivesFramesOnTheMainThread) {
    QElapsedTimer timer;
    timer.start();
    m_animation.start();
    EXPECT_TRUE(m_animation.isRunning());
    ASSERT_TRUE(spinUntil([this] { return m_frames.size() >= 3; }));
    EXPECT_GE(timer.elapsed(), 600); // three periods: never faster than every 0.2 seconds
    EXPECT_EQ(m_frames.mid(0, 3), (QStringList{text("A01"), text("A02"), text("A03")}));
    EXPECT_EQ(m_thread, QThread::currentThread());
}

TEST_F(TrayAnimationTest, StartWhileRunningChangesNothing) {
    m_animation.start();
    ASSERT_TRUE(spinUntil([this] { return !m_frames.isEmpty(); }));
    m_animation.start();
    ASSERT_TRUE(spinUntil([this] { return m_frames.size() >= 2; }));
    EXPECT_EQ(m_frames.at(1), text("A02"));
}

/// Stops the animation when the first frame has left the queue and has not arrived yet.
class StopBeforeArrival final : public QObject {
public:
    explicit StopBeforeArrival(TrayAnimation &stopped) : m_animation(stopped) {
        m_animation.installEventFilter(this);
    }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override {
        if (event->type() == QEvent::MetaCall) {
            ++delivered;
            m_animation.stop();
        }
        return false; // the frame is delivered
    }

    int delivered = 0;

private:
    TrayAnimation &m_animation;
};

TEST_F(TrayAnimationTest, FrameThatArrivesAfterTheStopIsDropped) {
    const StopBeforeArrival stop(m_animation);
    m_animation.start();
    ASSERT_TRUE(spinUntil([&stop] { return stop.delivered > 0; }));
    EXPECT_FALSE(m_animation.isRunning());
    deliverQueued();
    EXPECT_TRUE(m_frames.isEmpty());
}

TEST_F(TrayAnimationTest, RestartStartsWithTheFirstFrame) {
    m_animation.start();
    ASSERT_TRUE(spinUntil([this] { return m_frames.size() >= 2; }));
    m_animation.stop();
    m_frames.clear();
    m_animation.start();
    ASSERT_TRUE(spinUntil([this] { return !m_frames.isEmpty(); }));
    EXPECT_EQ(m_frames.first(), text("A01"));
}

} // namespace

} // namespace quorvane
