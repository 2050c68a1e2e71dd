#include "TestNames.h"
#include "TestServer.h"
#include "UrlLoaderFixture.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

namespace quorvane::platform {

namespace {

using LookUps = std::vector<TestNames::LookUp>;

class CurlNamesTest : public UrlLoaderFixture {
protected:
    static QByteArray url(const QByteArray &name, int port) {
        return "http://" + name + ":" + QByteArray::number(port) + "/";
    }

    /// Starts a download whose name look-up does not end, and waits until the look-up runs.
    void startSlowLookUp(CurlUrlLoader &by, QObject &context, Outcome &outcome) {
        ASSERT_TRUE(by.download(
            "http://slow.test/", &context, [this] { return m_path; }, [&] { ++outcome.finished; },
            [&](const UrlError &error) { outcome.error = error; }));
        ASSERT_TRUE(spin([] { return !TestNames::lookUps().empty(); }));
    }

    TestNames m_names;
};

TEST_F(CurlNamesTest, IPv4ComesFirst) {
    TestServer server(TestServer::reply("200 OK", "x"));
    EXPECT_EQ(download(m_loader, url("both.test", server.port())).finished, 1);
    EXPECT_EQ(TestNames::lookUps(), (LookUps{{"both.test", AF_INET}}));
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(CurlNamesTest, AHostWithoutIPv4IsReachedOverIPv6) {
    TestServer server(TestServer::reply("200 OK", "x"));
    EXPECT_EQ(download(m_loader, url("six.test", server.port())).finished, 1);
    EXPECT_EQ(fetch(m_loader, url("six.test", server.port())), "x");
    EXPECT_EQ(server.requests().size(), 2);
    const LookUps all = TestNames::lookUps();
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all[0], (TestNames::LookUp{"six.test", AF_INET}));
    EXPECT_NE(all[1].family, AF_INET);
}

TEST_F(CurlNamesTest, AHostWithKeptAddressesIsNotLookedUp) {
    TestServer server(TestServer::reply("200 OK", "x"));
    CurlUrlLoader loader(QStringLiteral("1.0.0"), {}, shortLimits(), {}, [](const QByteArray &host) {
        return host == "unknown.test" ? QByteArrayList{"127.0.0.9", "127.0.0.1"} : QByteArrayList();
    });
    EXPECT_EQ(fetch(loader, url("unknown.test", server.port())), "x");
    EXPECT_TRUE(TestNames::lookUps().empty());
    EXPECT_EQ(fetch(loader, url("four.test", server.port())), "x");
    EXPECT_EQ(TestNames::lookUps(), (LookUps{{"four.test", AF_INET}}));
}

TEST_F(CurlNamesTest, KeptAddressesAreNotUsedForTheHostOfARedirect) {
    TestServer target(TestServer::reply("200 OK", "there"));
    TestServer server(
        TestServer::reply("302 Found", "", "Location: " + url("four.test", target.port()) + "\r\n"));
    CurlUrlLoader loader(QStringLiteral("1.0.0"), {}, shortLimits(), {}, [](const QByteArray &host) {
        return host == "unknown.test" ? QByteArrayList{"127.0.0.1"} : QByteArrayList();
    });
    EXPECT_EQ(fetch(loader, url("unknown.test", server.port())), "there");
    EXPECT_EQ(TestNames::lookUps(), (LookUps{{"four.test", AF_INET}}));
}

TEST_F(CurlNamesTest, FailuresOfNamesAreReported) {
    const Outcome unknown = download(m_loader, "http://unknown.test/");
    ASSERT_TRUE(unknown.error);
    EXPECT_EQ(unknown.error->kind, UrlError::Kind::NoHost);
    EXPECT_FALSE(unknown.error->description.isEmpty());
    int port = 0;
    {
        const TestServer gone(TestServer::reply("200 OK", ""));
        port = gone.port();
    }
    for (const char *name : {"four.test", "six.test", "both.test"}) {
        const Outcome refused = download(m_loader, url(name, port));
        ASSERT_TRUE(refused.error) << name;
        EXPECT_EQ(refused.error->kind, UrlError::Kind::Refused) << name;
    }
}

TEST_F(CurlNamesTest, ASlowLookUpTimesOutAndBlocksNothing) {
    Outcome outcome;
    QObject context;
    startSlowLookUp(m_loader, context, outcome);
    QElapsedTimer clock;
    clock.start();
    qint64 longestTurn = 0;
    const auto oneTurn = [&] {
        longestTurn = std::max(longestTurn, clock.restart());
        return outcome.isOver();
    };
    EXPECT_TRUE(spin(oneTurn));
    EXPECT_LT(longestTurn, 200);
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::TimedOut);
    EXPECT_FALSE(fetch(m_loader, "http://slow.test/"));
}

TEST_F(CurlNamesTest, EndingADownloadDoesNotWaitForItsLookUp) {
    Outcome outcome;
    QElapsedTimer clock;
    {
        auto context = std::make_unique<QObject>();
        startSlowLookUp(m_loader, *context, outcome);
        clock.start();
        context.reset();
        EXPECT_LT(clock.elapsed(), 200) << "the context";
    }
    {
        QObject context;
        auto shortLived = std::make_unique<CurlUrlLoader>(QStringLiteral("1"), QString(), shortLimits());
        startSlowLookUp(*shortLived, context, outcome);
        clock.start();
        shortLived.reset();
        EXPECT_LT(clock.elapsed(), 200) << "the loader";
    }
    EXPECT_FALSE(spin([&] { return outcome.isOver(); }, 300));
}

} // namespace

} // namespace quorvane::platform
