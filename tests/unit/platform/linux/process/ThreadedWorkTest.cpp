#include "platform/linux/process/ThreadedWork.h"

#include "tests/unit/EventLoop.h"

#include <QThread>
#include <gtest/gtest.h>
#include <latch>
#include <memory>

namespace quorvane::platform {

namespace {

TEST(ThreadedWorkTest, WorkRunsBesideAndItsEndOnTheMainThread) {
    const QThread *const mainThread = QThread::currentThread();
    const QThread *worked = nullptr;
    const QThread *ended = nullptr;
    ThreadedWork background;
    QObject context;
    background.run([&] { worked = QThread::currentThread(); }, &context,
                   [&] { ended = QThread::currentThread(); });
    EXPECT_EQ(ended, nullptr); // not before run() has returned
    ASSERT_TRUE(spinUntil([&] { return ended != nullptr; }));
    EXPECT_EQ(ended, mainThread);
    EXPECT_NE(worked, mainThread);
}

TEST(ThreadedWorkTest, WorkThatHangsDelaysNoOther) {
    std::latch release(1); // the work uses it until the threads have ended
    ThreadedWork background;
    QObject context;
    constexpr int hanging = 20; // more than there are processors
    for (int i = 0; i < hanging; ++i) {
        background.run([&release] { release.wait(); }, &context, [] {});
    }
    bool ended = false;
    background.run([] {}, &context, [&ended] { ended = true; });
    EXPECT_TRUE(spinUntil([&ended] { return ended; }));
    EXPECT_FALSE(background.isIdle());
    release.count_down();
}

TEST(ThreadedWorkTest, TheEndIsDroppedWhenTheContextIsDestroyedMeanwhile) {
    std::latch release(1);
    bool ended = false;
    ThreadedWork background;
    auto context = std::make_unique<QObject>();
    background.run([&release] { release.wait(); }, context.get(), [&ended] { ended = true; });
    context.reset();
    release.count_down();
    ASSERT_TRUE(spinUntil([&background] { return background.isIdle(); }));
    deliverQueued();
    EXPECT_FALSE(ended);
}

TEST(ThreadedWorkTest, ItsDestructorWaitsForTheWork) {
    bool worked = false;
    {
        ThreadedWork background;
        background.run([&worked] { worked = true; }, nullptr, [] {});
    }
    EXPECT_TRUE(worked);
}

} // namespace

} // namespace quorvane::platform
