#include "fakes/TestPlatform.h"

#include <QFile>

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace quorvane::platform {

namespace {

using fakes::FakeReachability;

/// Waits for a condition that another thread fulfils.
template <typename Condition>
bool becomesTrue(Condition condition) {
    for (int i = 0; i < 5000; ++i) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

TEST(TestPlatformTest, IsCurrentAndComplete) {
    QString home;
    {
        fakes::TestPlatform test;
        platform::Platform &current = platform::Platform::current();
        EXPECT_EQ(&current, &test.platform());
        EXPECT_EQ(current.bundle->version(), QStringLiteral("1.0.0"));
        EXPECT_EQ(current.bundle->identifier(), QStringLiteral("com.tallowind.Quorvane"));
        current.preferences->setValue(QStringLiteral("a"), 1);
        EXPECT_EQ(test.preferences().all().size(), 1);
        current.log->write(QStringLiteral("line"));
        EXPECT_EQ(test.logSink().lines(), QStringList{QStringLiteral("line")});
        home = test.home();
        EXPECT_TRUE(QFile::exists(home));
    }
    EXPECT_FALSE(QFile::exists(home));
}

TEST(ManualDelayedCallsTest, RunsDueCallsInOrder) {
    fakes::ManualDelayedCalls calls;
    QObject target;
    QString order;
    calls.callAfter(2, &target, [&] { order += u'c'; });
    calls.callAfter(1, &target, [&] {
        order += u'a';
        calls.callAfter(0.5, &target, [&] { order += u'b'; });
    });
    calls.callAfter(5, &target, [&] { order += u'd'; });
    calls.advance(0.9);
    EXPECT_TRUE(order.isEmpty());
    calls.advance(1.1);
    EXPECT_EQ(order, QStringLiteral("abc"));
    EXPECT_EQ(calls.delaysFor(&target), std::vector<double>{5});
    calls.cancelAll(&target);
    calls.advance(10);
    EXPECT_EQ(order, QStringLiteral("abc"));
}

TEST(ManualDelayedCallsTest, DropsCallsOfDestroyedTargets) {
    fakes::ManualDelayedCalls calls;
    auto target = std::make_unique<QObject>();
    bool called = false;
    calls.callAfter(1, target.get(), [&] { called = true; });
    target.reset();
    calls.advance(2);
    EXPECT_FALSE(called);
}

TEST(FakeScriptingServiceTest, AnswersFromHandlerQueueOrDefault) {
    fakes::FakeScriptingService scripting;
    scripting.queueAnswer(fakes::FakeScriptingService::failure(3, QStringLiteral("m")));
    EXPECT_EQ(scripting.runAsUser(QStringLiteral("l")).errorNumber, 3);
    EXPECT_TRUE(scripting.runAsAdministrator(QStringLiteral("l2"), QStringLiteral("u"), QString()).succeeded);
    scripting.setHandler([](const auto &call) { return fakes::FakeScriptingService::success(call.line); });
    EXPECT_EQ(scripting.runAsUser(QStringLiteral("x")).text, QStringLiteral("x"));
    ASSERT_EQ(scripting.calls().size(), 3U);
    EXPECT_EQ(scripting.calls()[1].kind, fakes::FakeScriptingService::Kind::Administrator);
    EXPECT_TRUE(scripting.calls()[1].password.isNull());
}

TEST(FakeReachabilityTest, DeliversFirstStateThenChangesOnTheQueue) {
    FakeReachability reachability;
    reachability.setFlags(QStringLiteral("host"), 0);
    const auto queue = reachability.makeQueue(QStringLiteral("q"));
    const auto target = reachability.targetWithName(QStringLiteral("host"));
    std::mutex mutex;
    std::vector<std::uint32_t> seen;
    std::atomic<bool> elsewhere = true;
    const auto main = std::this_thread::get_id();
    target->setCallback([&](std::uint32_t flags) {
        elsewhere = elsewhere && std::this_thread::get_id() != main;
        const std::lock_guard lock(mutex);
        seen.push_back(flags);
    });
    EXPECT_TRUE(target->setQueue(queue.get()));
    reachability.setFlags(QStringLiteral("host"), 2);
    reachability.setFlags(QStringLiteral("host"), 2);
    reachability.setFlags(QStringLiteral("other"), 0);
    reachability.setFlags(QStringLiteral("host"), 0);
    EXPECT_TRUE(becomesTrue([&] {
        const std::lock_guard lock(mutex);
        return seen == std::vector<std::uint32_t>{0, 2, 0};
    }));
    EXPECT_TRUE(elsewhere);
    target->setQueue(nullptr);
    reachability.setFlags(QStringLiteral("host"), 2);
    EXPECT_EQ(seen.size(), 3U);
}

TEST(FakeReachabilityTest, CallbackMayDestroyItsTargetAndQueue) {
    for (const auto kind : {FakeReachability::Queues::Inline, FakeReachability::Queues::Threaded}) {
        FakeReachability reachability(kind);
        auto queue = reachability.makeQueue(QStringLiteral("q"));
        auto target = reachability.targetWithName(QStringLiteral("host"));
        std::atomic<bool> ended = false;
        target->setCallback([&](std::uint32_t) {
            target->setQueue(nullptr);
            target.reset();
            queue.reset();
            ended = true;
        });
        target->setQueue(queue.get());
        EXPECT_TRUE(becomesTrue([&] { return ended.load(); }));
        EXPECT_TRUE(reachability.liveTargets().isEmpty());
    }
}

TEST(FakeProcessTableTest, GrowsBetweenTheQueries) {
    fakes::FakeProcessTable table;
    table.setNames({"init", "a-name-of-more-than-fifteen"});
    table.growBetweenQueries(1);
    std::size_t count = 0;
    ASSERT_EQ(table.query(nullptr, count), 0);
    std::vector<platform::ProcessRecord> rows(count);
    EXPECT_EQ(table.query(rows.data(), count), ENOMEM);
    ASSERT_EQ(table.query(nullptr, count), 0);
    rows.resize(count);
    ASSERT_EQ(table.query(rows.data(), count), 0);
    EXPECT_EQ(count, 3U);
    EXPECT_STREQ(rows[1].name.data(), "a-name-of-more-");
    table.failWith(EPERM);
    EXPECT_EQ(table.query(nullptr, count), EPERM);
}

TEST(FakeUrlLoaderTest, CompletesWhenTheTestSaysSo) {
    const QTemporaryDir folder;
    fakes::FakeUrlLoader loader;
    QObject context;
    const QString path = folder.filePath(QStringLiteral("body"));
    QString events;
    const auto start = [&](const QByteArray &url) {
        return loader.download(
            url, &context, [&] { return path; }, [&] { events += u'f'; },
            [&](const platform::UrlError &error) { events += error.description; });
    };
    EXPECT_FALSE(start("https://a.test/#x"));
    EXPECT_TRUE(start("https://a.test/?a&&b"));
    EXPECT_TRUE(start("https://a.test/2"));
    EXPECT_TRUE(events.isEmpty());
    EXPECT_TRUE(loader.finishNext("body"));
    EXPECT_TRUE(loader.failNext({platform::UrlError::Kind::Other, QStringLiteral("e")}));
    EXPECT_FALSE(loader.failNext({}));
    EXPECT_EQ(events, QStringLiteral("fe"));
    EXPECT_EQ(loader.downloads()[0], "https://a.test/?a&&b");
    EXPECT_EQ(loader.refusals().size(), 1U);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "body");
}

TEST(FakeAuthorizationServiceTest, RecordsAProcess) {
    fakes::FakeAuthorizationService service;
    service.setOutput("out");
    const auto process = service.launch(QStringLiteral("/bin/x"), {"a"}, QStringLiteral("/"));
    ASSERT_EQ(process.status, 0);
    char text[8] = {};
    EXPECT_EQ(read(process.outputDescriptor, text, sizeof text), 3);
    close(process.outputDescriptor);
    EXPECT_FALSE(service.wait(process.pid, false));
    std::thread ender([&] { service.finish(process.pid, 256); });
    EXPECT_EQ(service.wait(process.pid, true), 256);
    ender.join();
    service.setStatus(5);
    EXPECT_EQ(service.launch(QString(), {}, QString()).status, 5);
}

TEST(MemoryKeyStoreTest, KeepsItems) {
    fakes::MemoryKeyStore store;
    EXPECT_FALSE(store.update({QStringLiteral("i"), QStringLiteral("a"), "p"}));
    EXPECT_TRUE(store.add({QStringLiteral("i"), QStringLiteral("a"), "p"}));
    EXPECT_EQ(store.password(QStringLiteral("i")), "p");
    EXPECT_EQ(store.accounts(QStringLiteral("i")), QStringList{QStringLiteral("a")});
    store.setFailing(true);
    EXPECT_FALSE(store.password(QStringLiteral("i")));
    EXPECT_FALSE(store.accounts(QStringLiteral("i")));
}

} // namespace

} // namespace quorvane::platform
