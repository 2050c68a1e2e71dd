#include "frontend/support/QrvThread.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace quorvane {

namespace {

void *addOne(void *number, void *, void *) {
    ++*static_cast<std::atomic<int> *>(number);
    return number;
}

void *waitForRelease(void *flag, void *, void *) {
    while (!*static_cast<std::atomic<bool> *>(flag)) {
        std::this_thread::yield();
    }
    return nullptr;
}

/// Counts for ever; ends by cancellation only. The destructor proves that the frame was unwound.
struct Loop {
    std::atomic<int> rounds = 0;
    std::atomic<bool> unwound = false;
};

void *loopForEver(void *argument, void *, void *) {
    auto *loop = static_cast<Loop *>(argument);

    struct Unwinding {
        Loop *loop;

        ~Unwinding() { loop->unwound = true; }
    } guard{loop};

    for (;;) {
        QrvThread::cancellationPoint(1000);
        ++loop->rounds;
    }
}

template <typename Condition>
bool eventually(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

TEST(QrvThread, StartsInStateZeroAndNeedsAFunction) {
    QrvThread thread;
    EXPECT_EQ(thread.getState(), 0);
    EXPECT_EQ(thread.run(), -1);
    EXPECT_EQ(thread.getState(), 0);
}

TEST(QrvThread, JoinReturnsTheFunctionsResult) {
    std::atomic<bool> release = false;
    QrvThread thread;
    ASSERT_EQ(thread.run(waitForRelease, &release, nullptr, nullptr), 0);
    EXPECT_EQ(thread.getState(), 1);
    void *result = &release;
    std::thread releasingThread([&release] { release = true; });
    const int joined = thread.join(result);
    releasingThread.join();
    // The function may end before join() reads the state: then the state is 4 already and there is no thread
    // to join.
    EXPECT_EQ(thread.getState(), 4);
    if (joined == 0) {
        EXPECT_EQ(result, nullptr);
    }
}

TEST(QrvThread, FunctionReceivesItsArguments) {
    std::atomic<int> number = 0;
    QrvThread thread;
    thread.setThreadFunction(addOne, &number, nullptr, nullptr);
    EXPECT_EQ(thread.executeThreadFunction(), &number);
    EXPECT_EQ(number, 1);
    ASSERT_EQ(thread.run(), 0);
    EXPECT_TRUE(eventually([&thread] { return thread.getState() == 4; }));
    EXPECT_EQ(number, 2);
}

TEST(QrvThread, SecondRunStartsNothing) {
    std::atomic<int> starts = 0;
    std::atomic<bool> release = false;
    const auto countAndWait = [](void *number, void *flag, void *) -> void * {
        ++*static_cast<std::atomic<int> *>(number);
        return waitForRelease(flag, nullptr, nullptr);
    };
    QrvThread thread;
    ASSERT_EQ(thread.run(countAndWait, &starts, &release, nullptr), 0);
    ASSERT_TRUE(eventually([&starts] { return starts == 1; }));
    EXPECT_EQ(thread.run(), 0);
    ASSERT_EQ(thread.detach(), 0);
    EXPECT_EQ(thread.run(), 0);
    release = true;
    EXPECT_TRUE(eventually([&thread] { return thread.getState() == 4; }));
    EXPECT_EQ(starts, 1);
}

TEST(QrvThread, FinishedThreadCanRunAgain) {
    std::atomic<int> number = 0;
    QrvThread thread;
    ASSERT_EQ(thread.run(addOne, &number, nullptr, nullptr), 0);
    ASSERT_TRUE(eventually([&thread] { return thread.getState() == 4; }));
    ASSERT_EQ(thread.run(), 0);
    ASSERT_TRUE(eventually([&number] { return number == 2; }));
}

/// Sets a flag when the thread that made it ends, after all that QrvThread does on it.
struct ThreadEnd {
    std::atomic<bool> *flag = nullptr;

    ~ThreadEnd() {
        if (flag != nullptr) {
            *flag = true;
        }
    }
};

TEST(QrvThread, RunAfterACancelIsNotDisturbedByTheCancelledThread) {
    struct Run {
        std::atomic<bool> begun = false;
        std::atomic<bool> release = false;
        std::atomic<bool> ended = false;
    };

    const auto wait = [](void *argument, void *, void *) -> void * {
        auto *run = static_cast<Run *>(argument);
        thread_local ThreadEnd end;
        end.flag = &run->ended;
        run->begun = true;
        return waitForRelease(&run->release, nullptr, nullptr);
    };
    Run first;
    Run second;
    QrvThread thread;
    ASSERT_EQ(thread.run(wait, &first, nullptr, nullptr), 0);
    ASSERT_TRUE(eventually([&first] { return first.begun.load(); }));
    EXPECT_EQ(thread.cancel(), 0); // acts nowhere in that function
    ASSERT_EQ(thread.run(wait, &second, nullptr, nullptr), 0);
    ASSERT_TRUE(eventually([&second] { return second.begun.load(); }));
    first.release = true;
    ASSERT_TRUE(eventually([&first] { return first.ended.load(); }));
    EXPECT_EQ(thread.getState(), 1);
    EXPECT_EQ(thread.cancel(), 0);
    second.release = true;
    EXPECT_TRUE(eventually([&second] { return second.ended.load(); }));
}

TEST(QrvThread, DetachNeedsARunningThread) {
    QrvThread thread;
    EXPECT_EQ(thread.detach(), -1);
}

TEST(QrvThread, JoinNeedsARunningThread) {
    QrvThread thread;
    void *result = nullptr;
    EXPECT_EQ(thread.join(result), -1);
}

TEST(QrvThread, JoinAfterDetachFails) {
    std::atomic<bool> release = false;
    QrvThread thread;
    ASSERT_EQ(thread.run(waitForRelease, &release, nullptr, nullptr), 0);
    ASSERT_EQ(thread.detach(), 0);
    void *result = nullptr;
    EXPECT_EQ(thread.join(result), -1);
    thread.setState(1); // as a thread does that starts after the detach
    EXPECT_EQ(thread.join(result), -1);
    EXPECT_EQ(thread.detach(), -1);
    release = true;
    EXPECT_TRUE(eventually([&thread] { return thread.getState() == 4; }));
}

TEST(QrvThread, CancelNeedsAStartedThread) {
    QrvThread thread;
    EXPECT_EQ(thread.cancel(), -1);
    EXPECT_EQ(thread.getState(), 0);
}

TEST(QrvThread, CancelEndsADetachedLoop) {
    Loop loop;
    QrvThread thread;
    ASSERT_EQ(thread.run(loopForEver, &loop, nullptr, nullptr), 0);
    ASSERT_EQ(thread.detach(), 0);
    ASSERT_TRUE(eventually([&loop] { return loop.rounds > 2; }));
    EXPECT_EQ(thread.cancel(), 0);
    EXPECT_EQ(thread.getState(), 0);
    ASSERT_TRUE(eventually([&loop] { return loop.unwound.load(); }));
    const int rounds = loop.rounds;
    EXPECT_EQ(thread.cancel(), -1);
    EXPECT_EQ(loop.rounds, rounds);
}

TEST(QrvThread, DestructionCancels) {
    Loop loop;
    {
        QrvThread thread;
        ASSERT_EQ(thread.run(loopForEver, &loop, nullptr, nullptr), 0);
        ASSERT_EQ(thread.detach(), 0);
    }
    EXPECT_TRUE(eventually([&loop] { return loop.unwound.load(); }));
}

TEST(QrvThread, CancelOfAFinishedThreadFails) {
    std::atomic<int> number = 0;
    QrvThread thread;
    ASSERT_EQ(thread.run(addOne, &number, nullptr, nullptr), 0);
    ASSERT_TRUE(eventually([&thread] { return thread.getState() == 4; }));
    EXPECT_EQ(thread.cancel(), -1);
    EXPECT_EQ(thread.getState(), 4);
}

TEST(QrvThread, StateCanBeSet) {
    QrvThread thread;
    thread.setState(5);
    EXPECT_EQ(thread.getState(), 5);
}

TEST(QrvThread, ManyShortThreadsLeakNothing) {
    for (int i = 0; i < 100; ++i) {
        auto loop = std::make_unique<Loop>();
        {
            QrvThread thread;
            ASSERT_EQ(thread.run(loopForEver, loop.get(), nullptr, nullptr), 0);
            ASSERT_EQ(thread.detach(), 0);
        }
        ASSERT_TRUE(eventually([&loop] { return loop->unwound.load(); }));
    }
}

} // namespace

} // namespace quorvane
