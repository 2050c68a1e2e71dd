#include "platform/NotificationCenter.h"

#include <QStringList>

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace quorvane::platform {

namespace {

const QString name = QStringLiteral("name");

class NotificationCenterTest : public ::testing::Test {
protected:
    platform::NotificationCenter center;
    QObject context;
    QStringList calls;

    void observe(const QString &label) {
        center.addObserver(name, &context, [this, label](const QVariant &) { calls.append(label); });
    }
};

TEST_F(NotificationCenterTest, CallsBeforePostReturnsInOrderWithTheObject) {
    QVariant seen;
    observe(QStringLiteral("a"));
    center.addObserver(name, &context, [&seen](const QVariant &object) { seen = object; });
    observe(QStringLiteral("b"));
    center.post(name, 7);
    EXPECT_EQ(calls, (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(seen.toInt(), 7);
    center.post(QStringLiteral("other"));
    EXPECT_EQ(calls.size(), 2);
}

TEST_F(NotificationCenterTest, ObservingTwiceIsBeingCalledTwice) {
    observe(QStringLiteral("a"));
    observe(QStringLiteral("a"));
    center.post(name);
    EXPECT_EQ(calls.size(), 2);
}

TEST_F(NotificationCenterTest, ObserverEndsWithItsContext) {
    auto shortLived = std::make_unique<QObject>();
    center.addObserver(name, shortLived.get(), [this](const QVariant &) { calls.append(name); });
    shortLived.reset();
    center.post(name);
    EXPECT_TRUE(calls.isEmpty());
}

TEST_F(NotificationCenterTest, RemovesByContext) {
    QObject other;
    observe(QStringLiteral("a"));
    center.addObserver(name, &other, [this](const QVariant &) { calls.append(QStringLiteral("other")); });
    center.removeObservers(&context);
    center.post(name);
    EXPECT_EQ(calls, QStringList{QStringLiteral("other")});
}

TEST_F(NotificationCenterTest, ObserversMayChangeTheList) {
    QObject later;
    center.addObserver(name, &context, [&](const QVariant &) {
        center.removeObservers(&later);
        observe(QStringLiteral("new"));
    });
    center.addObserver(name, &later, [this](const QVariant &) { calls.append(QStringLiteral("removed")); });
    center.post(name);
    EXPECT_TRUE(calls.isEmpty()) << "the removed one and the new one are not part of this post";
    center.removeObservers(&context);
    center.post(name);
    EXPECT_TRUE(calls.isEmpty());
}

TEST_F(NotificationCenterTest, WorksFromManyThreads) {
    std::atomic<int> count = 0;
    center.addObserver(name, &context, [&count](const QVariant &) { ++count; });
    std::vector<std::thread> posters;
    posters.reserve(4);
    for (int i = 0; i < 4; ++i) {
        posters.emplace_back([this] {
            QObject own;
            for (int round = 0; round < 200; ++round) {
                center.addObserver(QStringLiteral("private"), &own, [](const QVariant &) {});
                center.post(name);
                center.removeObservers(&own);
            }
        });
    }
    for (std::thread &poster : posters) {
        poster.join();
    }
    EXPECT_EQ(count, 800);
}

} // namespace

} // namespace quorvane::platform
