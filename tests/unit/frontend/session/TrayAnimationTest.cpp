#include "frontend/session/TrayAnimation.h"

#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QElapsedTimer>
#include <QEvent>
#include <QThread>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

QString text(const char *utf8) {
    return QString::fromUtf8(utf8);
}

class TrayAnimationTest : public testing::Test {
protected:
    TrayAnimationTest() {
        QObject::connect(&animation, &TrayAnimation::frame, [this](const QString &image) {
            frames.append(image);
            thread = QThread::currentThread();
        });
    }

    TrayAnimation animation;
    QStringList frames;
    QThread *thread = nullptr;
};

TEST_F(TrayAnimationTest, FourteenFramesGoRoundAndTheFifteenthIsNeverShown) {
    for (int i = 0; i < 29; ++i) {
        animation.animateTrayIcon();
    }
    for (int i = 0; i < 29; ++i) {
        EXPECT_EQ(frames.at(i), text("A%1").arg(i % 14 + 1, 2, 10, QChar(u'0')));
    }
}

TEST_F(TrayAnimationTest, ResetBeginsAnew) {
    animation.animateTrayIcon();
    animation.animateTrayIcon();
    animation.resetFrames();
    animation.animateTrayIcon();
    EXPECT_EQ(frames.last(), text("A01"));
}

TEST_F(TrayAnimationTest, FramesAreAFifthOfASecondApart) {
    EXPECT_EQ(TrayAnimation::frameMicroseconds, 200'000U);
}

TEST_F(TrayAnimationTest, ThreadDrivesFramesOnTheMainThread) {
    QElapsedTimer timer;
    timer.start();
    animation.start();
    EXPECT_TRUE(animation.isRunning());
    ASSERT_TRUE(spinUntil([this] { return frames.size() >= 3; }));
    EXPECT_GE(timer.elapsed(), 600); // three periods: never faster than every 0.2 seconds
    EXPECT_EQ(frames.mid(0, 3), (QStringList{text("A01"), text("A02"), text("A03")}));
    EXPECT_EQ(thread, QThread::currentThread());
}

TEST_F(TrayAnimationTest, StartWhileRunningChangesNothing) {
    animation.start();
    ASSERT_TRUE(spinUntil([this] { return !frames.isEmpty(); }));
    animation.start();
    ASSERT_TRUE(spinUntil([this] { return frames.size() >= 2; }));
    EXPECT_EQ(frames.at(1), text("A02"));
}

/// Stops the animation when the first frame is out of the queue and has not arrived yet.
class StopBeforeArrival final : public QObject {
public:
    explicit StopBeforeArrival(TrayAnimation &stopped) : animation(stopped) {
        animation.installEventFilter(this);
    }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override {
        if (event->type() == QEvent::MetaCall) {
            ++delivered;
            animation.stop();
        }
        return false; // the frame goes on its way
    }

    int delivered = 0;

private:
    TrayAnimation &animation;
};

TEST_F(TrayAnimationTest, FrameThatArrivesAfterTheStopIsDropped) {
    const StopBeforeArrival stop(animation);
    animation.start();
    ASSERT_TRUE(spinUntil([&stop] { return stop.delivered > 0; }));
    EXPECT_FALSE(animation.isRunning());
    deliverQueued();
    EXPECT_TRUE(frames.isEmpty());
}

TEST_F(TrayAnimationTest, RestartBeginsWithTheFirstFrame) {
    animation.start();
    ASSERT_TRUE(spinUntil([this] { return frames.size() >= 2; }));
    animation.stop();
    frames.clear();
    animation.start();
    ASSERT_TRUE(spinUntil([this] { return !frames.isEmpty(); }));
    EXPECT_EQ(frames.first(), text("A01"));
}

} // namespace

} // namespace quorvane
