#include "frontend/support/EventQueue.h"

#include "fakes/TestPlatform.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace quorvane {

namespace {

class EventQueueTest : public testing::Test {
protected:
    void note(const char *what) { m_notes.append(QString::fromUtf8(what)); }

    [[nodiscard]] QString notes() const { return m_notes.join(u' '); }

    /// A handler without a wait.
    [[nodiscard]] EventQueue::Handler noting(const char *what) {
        return [this, what]() -> Task<> {
            note(what);
            co_return;
        };
    }

    /// A handler that notes, waits for background work, and notes again.
    [[nodiscard]] EventQueue::Handler working(const char *before, const char *after) {
        return [this, before, after]() -> Task<> {
            note(before);
            co_await m_queue->background([this] { note("work"); });
            note(after);
        };
    }

    /// A handler that notes, waits for a window, and notes again.
    [[nodiscard]] EventQueue::Handler showing(const char *before, const char *after) {
        return [this, before, after]() -> Task<> {
            note(before);
            co_await m_queue->outside(
                [this](std::function<void()> proceed) { m_windows.append(std::move(proceed)); });
            note(after);
        };
    }

    void closeWindow() { m_windows.takeFirst()(); }

    fakes::TestPlatform m_services;
    QStringList m_notes;
    QList<std::function<void()>> m_windows;
    std::unique_ptr<EventQueue> m_queue = std::make_unique<EventQueue>();
};

TEST_F(EventQueueTest, AnEventIsHandledAtOnceWhenNothingRuns) {
    m_queue->post(noting("a"));
    EXPECT_EQ(notes(), QStringLiteral("a"));
    EXPECT_FALSE(m_queue->isHeld());
}

TEST_F(EventQueueTest, AnEventOfAHandlerIsHandledAfterIt) {
    m_queue->post([this]() -> Task<> {
        m_queue->post(noting("b"));
        note("a");
        co_return;
    });
    EXPECT_EQ(notes(), QStringLiteral("a b"));
}

TEST_F(EventQueueTest, BackgroundWorkHoldsTheQueueAndKeepsTheOrder) {
    m_queue->post(working("a1", "a2"));
    m_queue->post(noting("b"));
    m_queue->post(noting("c"));
    EXPECT_EQ(notes(), QStringLiteral("a1"));
    EXPECT_TRUE(m_queue->isHeld());
    m_services.background().finishAll();
    EXPECT_EQ(notes(), QStringLiteral("a1 work a2 b c"));
    EXPECT_FALSE(m_queue->isHeld());
}

TEST_F(EventQueueTest, AWindowLetsOthersPassAndItsHandlerContinuesAfterIt) {
    m_queue->post(showing("a1", "a2"));
    m_queue->post(noting("b"));
    EXPECT_EQ(notes(), QStringLiteral("a1 b"));
    closeWindow();
    EXPECT_EQ(notes(), QStringLiteral("a1 b a2"));
}

TEST_F(EventQueueTest, AHandlerWhoseWindowClosedWaitsForTheOneThatHoldsTheQueueOnly) {
    m_queue->post(showing("a1", "a2"));
    m_queue->post(working("b1", "b2"));
    m_queue->post(noting("c"));
    closeWindow();
    EXPECT_EQ(notes(), QStringLiteral("a1 b1"));
    m_services.background().finishAll();
    EXPECT_EQ(notes(), QStringLiteral("a1 b1 work b2 a2 c"));
}

TEST_F(EventQueueTest, AWindowThatClosesAtOnceContinuesItsHandler) {
    m_queue->post([this]() -> Task<> {
        note("a1");
        co_await m_queue->outside([](const std::function<void()> &proceed) { proceed(); });
        note("a2");
    });
    EXPECT_EQ(notes(), QStringLiteral("a1 a2"));
}

TEST_F(EventQueueTest, AWindowThatClosesTwiceContinuesItsHandlerOnce) {
    m_queue->post(showing("a1", "a2"));
    const std::function<void()> proceed = m_windows.first();
    proceed();
    proceed();
    EXPECT_EQ(notes(), QStringLiteral("a1 a2"));
}

TEST_F(EventQueueTest, BackgroundWorkReturnsItsValue) {
    int result = 0;
    m_queue->post([&]() -> Task<> { result = co_await m_queue->background([] { return 7; }); });
    m_services.background().finishAll();
    EXPECT_EQ(result, 7);
}

Task<int> sumOf(EventQueue &queue, int first, int second) {
    const int a = co_await queue.background([first] { return first; });
    const int b = co_await queue.background([second] { return second; });
    co_return a + b;
}

TEST_F(EventQueueTest, ATaskAwaitsOthersWithSeveralWaits) {
    int result = 0;
    m_queue->post([&]() -> Task<> { result = co_await sumOf(*m_queue, 3, 4); });
    m_queue->post(noting("later"));
    m_services.background().finishAt(0);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(notes(), QString());
    m_services.background().finishAt(0);
    EXPECT_EQ(result, 7);
    EXPECT_EQ(notes(), QStringLiteral("later"));
}

TEST_F(EventQueueTest, AnExceptionOfTheWorkReachesItsHandler) {
    m_queue->post([this]() -> Task<> {
        try {
            co_await m_queue->background([] { throw std::runtime_error("broken"); });
        } catch (const std::runtime_error &error) {
            note(error.what());
        }
    });
    m_services.background().finishAll();
    EXPECT_EQ(notes(), QStringLiteral("broken"));
}

TEST_F(EventQueueTest, AnExceptionThatNoHandlerCatchesIsLoggedAndTheNextEventHandled) {
    m_queue->post([]() -> Task<> {
        throw std::runtime_error("broken");
        co_return;
    });
    m_queue->post(noting("b"));
    EXPECT_EQ(notes(), QStringLiteral("b"));
    EXPECT_TRUE(m_services.logSink().lines().contains(QStringLiteral("exception in an event: broken")));
}

TEST_F(EventQueueTest, DestroyedWhileHandlersWaitTheyAreNotResumed) {
    m_queue->post(showing("a1", "a2"));
    m_queue->post(working("b1", "b2"));
    m_queue->post(noting("c"));
    m_queue.reset();
    closeWindow();
    m_services.background().finishAll();
    EXPECT_EQ(notes(), QStringLiteral("a1 b1 work"));
}

} // namespace

} // namespace quorvane
