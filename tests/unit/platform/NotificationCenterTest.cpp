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
    platform::NotificationCenter m_center;
    QObject m_context;
    QStringList m_calls;

    void observe(const QString &label) {
        m_center.addObserver(name, &m_context, [this, label](const QVariant &) { m_calls.append(label); });
    }
};

TEST_F(NotificationCenterTest, CallsBeforePostReturnsInOrderWithTheObject) {
    QVariant seen;
    observe(QStringLiteral("a"));
    m_center.addObserver(name, &m_context, [&seen](const QVariant &object) { seen = object; });
    observe(QStringLiteral("b"));
    m_center.post(name, 7);
    EXPECT_EQ(m_calls, (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(seen.toInt(), 7);
    m_center.post(QStringLiteral("other"));
    EXPECT_EQ(m_calls.size(), 2);
}

TEST_F(NotificationCenterTest, ObserverAddedTwiceIsCalledTwice) {
    observe(QStringLiteral("a"));
    observe(QStringLiteral("a"));
    m_center.post(name);
    EXPECT_EQ(m_calls.size(), 2);
}

TEST_F(NotificationCenterTest, ObserverEndsWithItsContext) {
    auto shortLived = std::make_unique<QObject>();
    m_center.addObserver(name, shortLived.get(), [this](const QVariant &) { m_calls.append(name); });
    shortLived.reset();
    m_center.post(name);
    EXPECT_TRUE(m_calls.isEmpty());
}

TEST_F(NotificationCenterTest, RemovesByContext) {
    QObject other;
    observe(QStringLiteral("a"));
    m_center.addObserver(name, &other, [this](const QVariant &) { m_calls.append(QStringLiteral("other")); });
    m_center.removeObservers(&m_context);
    m_center.post(name);
    EXPECT_EQ(m_calls, QStringList{QStringLiteral("other")});
}

TEST_F(NotificationCenterTest, ObserversMayChangeTheList) {
    QObject later;
    m_center.addObserver(name, &m_context, [&](const QVariant &) {
        m_center.removeObservers(&later);
        observe(QStringLiteral("new"));
    });
    m_center.addObserver(name, &later,
                         [this](const QVariant &) { m_calls.append(QStringLiteral("removed")); });
    m_center.post(name);
    EXPECT_TRUE(m_calls.isEmpty()) << "the removed and the new observer are not called by this post";
    m_center.removeObservers(&m_context);
    m_center.post(name);
    EXPECT_TRUE(m_calls.isEmpty());
}

TEST_F(NotificationCenterTest, WorksFromManyThreads) {
    std::atomic<int> count = 0;
    m_center.addObserver(name, &m_context, [&count](const QVariant &) { ++count; });
    std::vector<std::thread> posters;
    posters.reserve(4);
    for (int i = 0; i < 4; ++i) {
        posters.emplace_back([this] {
            QObject own;
            for (int round = 0; round < 200; ++round) {
                m_center.addObserver(QStringLiteral("private"), &own, [](const QVariant &) {});
                m_center.post(name);
                m_center.removeObservers(&own);
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
