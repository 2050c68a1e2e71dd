#include "platform/linux/network/ThreadQueue.h"
#include "platform/linux/network/ReachabilityDelivery.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <vector>

namespace quorvane::platform {

namespace {

using platform::ReachabilityDelivery;
using platform::ThreadQueue;

TEST(ThreadQueueTest, RunsInOrderOnItsOwnThread) {
    ThreadQueue queue(QStringLiteral("com.qrvp.reachability"));
    std::vector<int> order;
    std::promise<void> done;
    std::thread::id first;
    bool same = true;
    for (int i = 0; i < 100; ++i) {
        queue.async([&, i] {
            if (i == 0) {
                first = std::this_thread::get_id();
            }
            same = same && first == std::this_thread::get_id();
            order.push_back(i);
        });
    }
    queue.async([&] { done.set_value(); });
    done.get_future().wait();
    ASSERT_EQ(order.size(), 100U);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
    }
    EXPECT_TRUE(same);
    EXPECT_NE(first, std::this_thread::get_id());
}

TEST(ThreadQueueTest, DestructionWaitsForTheRunningPieceAndDropsTheRest) {
    std::promise<void> started;
    std::atomic<bool> ended = false;
    std::atomic<bool> dropped = true;
    {
        ThreadQueue queue(QStringLiteral("q"));
        queue.async([&] {
            started.set_value();
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            ended = true;
        });
        queue.async([&] { dropped = false; });
        started.get_future().wait();
    }
    EXPECT_TRUE(ended);
    EXPECT_TRUE(dropped);
}

TEST(ThreadQueueTest, MayBeDestroyedByItsOwnWork) {
    auto queue = std::make_unique<ThreadQueue>(QStringLiteral("q"));
    std::promise<void> done;
    ThreadQueue *raw = queue.get();
    raw->async([&] {
        queue.reset();
        done.set_value();
    });
    done.get_future().wait();
    EXPECT_EQ(queue, nullptr);
}

TEST(ThreadQueueTest, AcceptsWorkFromManyThreads) {
    ThreadQueue queue(QStringLiteral("q"));
    int count = 0; // used by the queue's thread only
    std::vector<std::thread> callers;
    callers.reserve(4);
    for (int i = 0; i < 4; ++i) {
        callers.emplace_back([&] {
            for (int round = 0; round < 250; ++round) {
                queue.async([&] { ++count; });
            }
        });
    }
    for (std::thread &caller : callers) {
        caller.join();
    }
    std::promise<int> done;
    queue.async([&] { done.set_value(count); });
    EXPECT_EQ(done.get_future().get(), 1000);
}

TEST(ReachabilityDeliveryTest, ReportsTheFirstStateAndChangesOnly) {
    ReachabilityDelivery delivery;
    ThreadQueue queue(QStringLiteral("q"));
    std::vector<std::uint32_t> seen;
    delivery.setCallback([&](std::uint32_t flags) { seen.push_back(flags); });
    delivery.report(1);
    delivery.setQueue(&queue);
    for (const std::uint32_t flags : {2U, 2U, 0U, 0U, 2U}) {
        delivery.report(flags);
    }
    std::promise<void> done;
    queue.async([&] { done.set_value(); });
    done.get_future().wait();
    EXPECT_EQ(seen, (std::vector<std::uint32_t>{2, 0, 2}));
    delivery.setQueue(nullptr);
    delivery.setQueue(&queue);
    delivery.report(2);
    std::promise<void> again;
    queue.async([&] { again.set_value(); });
    again.get_future().wait();
    EXPECT_EQ(seen.size(), 4U) << "the first state of a new delivery is reported again";
}

TEST(ReachabilityDeliveryTest, NothingRunsAfterItWasStopped) {
    for (int round = 0; round < 200; ++round) {
        ReachabilityDelivery delivery;
        ThreadQueue queue(QStringLiteral("q"));
        std::atomic<bool> stopped = false;
        std::atomic<bool> late = false;
        delivery.setCallback([&](std::uint32_t) { late = late || stopped; });
        delivery.setQueue(&queue);
        std::thread reporter([&] {
            for (std::uint32_t flags = 0; flags < 20; ++flags) {
                delivery.report(flags);
            }
        });
        delivery.setQueue(nullptr);
        stopped = true;
        reporter.join();
        ASSERT_FALSE(late);
    }
}

} // namespace

} // namespace quorvane::platform
