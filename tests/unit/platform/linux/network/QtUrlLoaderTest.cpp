#include "platform/linux/network/QtUrlLoader.h"
#include "TestServer.h"
#include "TlsServer.h"
#include "platform/StrictUrl.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quorvane::platform {

namespace {

using platform::QtUrlLoader;
using platform::UrlError;
using platform::UrlLimits;
using namespace std::chrono_literals;

UrlLimits shortLimits() {
    return {400ms, 1200ms, qint64{16} * 1024 * 1024};
}

/// What came of one download.
struct Outcome {
    bool accepted = false;
    int finished = 0;
    std::optional<UrlError> error;

    [[nodiscard]] bool isOver() const { return finished > 0 || error; }
};

class QtUrlLoaderTest : public ::testing::Test {
protected:
    /// Runs the event loop until the condition holds.
    template <typename Condition>
    static bool spin(Condition condition, int milliseconds = 20000) {
        QElapsedTimer clock;
        clock.start();
        while (!condition() && clock.elapsed() < milliseconds) {
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
        }
        return condition();
    }

    Outcome download(QtUrlLoader &by, const QByteArray &url) {
        Outcome outcome;
        QObject context;
        outcome.accepted = by.download(
            url, &context,
            [this] {
                ++m_destinationsAsked;
                return m_path;
            },
            [&] { ++outcome.finished; }, [&](const UrlError &error) { outcome.error = error; });
        EXPECT_FALSE(outcome.isOver()) << "told from within the request";
        EXPECT_TRUE(!outcome.accepted || spin([&] { return outcome.isOver(); }));
        return outcome;
    }

    [[nodiscard]] QByteArray saved() const {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    /// Nothing but the destination may be in its folder.
    [[nodiscard]] QStringList filesLeft() const {
        return QDir(QFileInfo(m_path).path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    /// fetch() on a thread of its own, as it is meant.
    static std::optional<QByteArray> fetch(QtUrlLoader &by, const QByteArray &url) {
        std::optional<QByteArray> result;
        std::thread([&] { result = by.fetch(url); }).join();
        return result;
    }

    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(QStringLiteral("answer"));
    int m_destinationsAsked = 0;
    QtUrlLoader m_loader{QStringLiteral("1.0.0"), QString(), shortLimits()};
};

TEST_F(QtUrlLoaderTest, SendsTargetsByteForByte) {
    TestServer server(TestServer::reply("200 OK", "x"));
    const QByteArrayList targets{
        "/?cmd=MRTSL&ver=1.0.0&device=1&systamp=MacOS,user,mobilebox&uniqueid=AB-1.0.0",
        "/?a=1&&b=2,3",
        "/?a=%2B+%25%20%C3%A4",
        "/?list[0]=(x)'!*;:@$~",
        "/p//q/r.x/s..?x=%2F/../.",
        "/?",
        "/?a=?b=/c"};
    for (const QByteArray &target : targets) {
        EXPECT_TRUE(download(m_loader, server.url(target)).accepted) << target.constData();
        ASSERT_FALSE(server.requests().isEmpty());
        EXPECT_EQ(server.requests().last().split('\r').first(), "GET " + target + " HTTP/1.1");
        EXPECT_EQ(fetch(m_loader, server.url(target)), "x");
        EXPECT_EQ(server.requests().last().split('\r').first(), "GET " + target + " HTTP/1.1");
    }
}

TEST_F(QtUrlLoaderTest, RefusesTextsThatCannotBeSentAsTheyStand) {
    const TestServer server(TestServer::reply("200 OK", "x"));
    const QByteArrayList targets{"/a b",   "/#x",   "/?a#",       "/%zz",    "/%",
                                 "/?\"",   "/?<a>", "/?a|b",      "/?{}",    "/?a^b",
                                 "/?a\\b", "/?`",   "/?\xC3\xA4", "/?\xFF",  "/?a\n",
                                 "/?%c3",  "/?%41", "/a/./b",     "/a/../b", QByteArray("/?a\0b", 5),
                                 "/?\x7f"};
    for (const QByteArray &target : targets) {
        EXPECT_FALSE(download(m_loader, server.url(target)).accepted) << target.constData();
        EXPECT_FALSE(fetch(m_loader, server.url(target))) << target.constData();
    }
    for (const char *url : {"", "/", "ftp://127.0.0.1/", "file:///etc/passwd", "https://", "https:///x",
                            "http://u:p@127.0.0.1/", "127.0.0.1", "HTTP://127.0.0.1/"}) {
        EXPECT_FALSE(platform::strictUrl(url)) << url;
    }
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(QtUrlLoaderTest, SendsPlainHeaders) {
    TestServer server(TestServer::reply("200 OK", "x", "Set-Cookie: a=b\r\n"));
    download(m_loader, server.url());
    download(m_loader, server.url());
    const QByteArray head = server.requests().value(1).toLower();
    EXPECT_TRUE(head.contains("\r\nuser-agent: quorvane/1.0.0\r\n")) << head.constData();
    EXPECT_TRUE(head.contains("\r\naccept-encoding: identity\r\n"));
    EXPECT_FALSE(head.contains("cookie"));
    EXPECT_FALSE(head.contains("upgrade"));
}

TEST_F(QtUrlLoaderTest, SavesTheBodyPrivately) {
    const QByteArray body = QByteArray("body\0\xFF", 6).repeated(10000);
    TestServer server(TestServer::reply("200 OK", body));
    const mode_t before = umask(0);
    const Outcome outcome = download(m_loader, server.url());
    umask(before);
    EXPECT_EQ(outcome.finished, 1);
    EXPECT_EQ(saved(), body);
    EXPECT_EQ(m_destinationsAsked, 1);

    struct stat status {};

    ASSERT_EQ(stat(m_path.toUtf8().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    EXPECT_EQ(filesLeft(), QStringList{QStringLiteral("answer")});
}

TEST_F(QtUrlLoaderTest, ErrorStatusWithABodyIsAFinishedDownload) {
    for (const char *status : {"500 Internal Server Error", "404 Not Found", "401 Unauthorized",
                               "403 Forbidden", "503 Service Unavailable", "418 Teapot", "599 Odd"}) {
        TestServer server(TestServer::reply(status, "reason"));
        QFile::remove(m_path);
        EXPECT_EQ(download(m_loader, server.url()).finished, 1) << status;
        EXPECT_EQ(saved(), "reason") << status;
        EXPECT_EQ(fetch(m_loader, server.url()), "reason") << status;
    }
}

TEST_F(QtUrlLoaderTest, EmptyBodyIsAnEmptyFile) {
    TestServer server(TestServer::reply("200 OK", ""));
    EXPECT_EQ(download(m_loader, server.url()).finished, 1);
    EXPECT_EQ(saved(), "");
    EXPECT_EQ(fetch(m_loader, server.url()), QByteArray(""));
}

TEST_F(QtUrlLoaderTest, TruncatedBodyFails) {
    const QByteArrayList answers{"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nonly this",
                                 "HTTP/1.1 500 Error\r\nContent-Length: 100\r\n\r\nonly this"};
    for (const QByteArray &answer : answers) {
        TestServer server([answer](int descriptor) { TestServer::send(descriptor, answer); });
        for (int round = 0; round < 10; ++round) {
            const Outcome outcome = download(m_loader, server.url());
            EXPECT_TRUE(outcome.error) << answer.constData();
            EXPECT_EQ(outcome.finished, 0);
            EXPECT_TRUE(filesLeft().isEmpty());
            EXPECT_FALSE(fetch(m_loader, server.url()));
        }
    }
}

TEST_F(QtUrlLoaderTest, ChunksAreJoinedAndAMissingOneFails) {
    const QByteArray chunks = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\n";
    TestServer whole([chunks](int descriptor) { TestServer::send(descriptor, chunks + "0\r\n\r\n"); });
    EXPECT_EQ(download(m_loader, whole.url()).finished, 1);
    EXPECT_EQ(saved(), "half");
    QFile::remove(m_path);
    TestServer cut([chunks](int descriptor) { TestServer::send(descriptor, chunks); });
    for (int round = 0; round < 20; ++round) {
        EXPECT_TRUE(download(m_loader, cut.url()).error);
        EXPECT_FALSE(fetch(m_loader, cut.url()));
    }
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(QtUrlLoaderTest, AHugeHeadIsCutOff) {
    std::atomic<qint64> sent = 0;
    TestServer server([&sent](int descriptor) {
        TestServer::send(descriptor, "HTTP/1.1 200 OK\r\nX: ");
        for (int i = 0; i < 1000 && TestServer::send(descriptor, QByteArray(100000, 'x')); ++i) {
            sent += 100000;
        }
    });
    const Outcome outcome = download(m_loader, server.url());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::TooLarge);
    EXPECT_FALSE(fetch(m_loader, server.url()));
    EXPECT_LT(sent, 2 * 20000000) << "what the kernel keeps, not all of it";
}

TEST_F(QtUrlLoaderTest, WhatIsNotHttpFails) {
    TestServer server([](int descriptor) { TestServer::send(descriptor, "SSH-2.0-x\r\n"); });
    EXPECT_TRUE(download(m_loader, server.url()).error);
    EXPECT_EQ(server.requests().size(), 1) << "asked once";
    TestServer mute([](int) {});
    EXPECT_TRUE(download(m_loader, mute.url()).error);
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(QtUrlLoaderTest, SilenceTimesOut) {
    TestServer server([&server](int) {
        while (server.isRunning()) {
            usleep(5000);
        }
    });
    QElapsedTimer clock;
    clock.start();
    const Outcome outcome = download(m_loader, server.url());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::TimedOut);
    EXPECT_GE(clock.elapsed(), 390);
    EXPECT_LT(clock.elapsed(), 1100) << "the overall limit, not the one of silence";
    EXPECT_FALSE(fetch(m_loader, server.url()));
}

TEST_F(QtUrlLoaderTest, DripTimesOutOverall) {
    TestServer server([&server](int descriptor) {
        bool live = TestServer::send(descriptor, "HTTP/1.1 200 OK\r\nContent-Length: 10000\r\n\r\n");
        while (live && server.isRunning()) {
            live = TestServer::send(descriptor, "x");
            usleep(50000);
        }
    });
    QElapsedTimer clock;
    clock.start();
    const Outcome outcome = download(m_loader, server.url());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::TimedOut);
    EXPECT_GE(clock.elapsed(), 1190);
    EXPECT_LT(clock.elapsed(), 5000);
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(QtUrlLoaderTest, LargeBodiesAreCutOff) {
    QtUrlLoader small(QStringLiteral("1"), QString(), {5s, 5s, 100000});
    // Told in the head, and found out on the way.
    const QByteArrayList heads{"Content-Length: 1000000\r\n", ""};
    for (const QByteArray &head : heads) {
        TestServer server([head](int descriptor) {
            TestServer::send(descriptor, "HTTP/1.1 200 OK\r\n" + head + "Connection: close\r\n\r\n" +
                                             QByteArray(1000000, 'x'));
        });
        const Outcome outcome = download(small, server.url());
        ASSERT_TRUE(outcome.error);
        EXPECT_EQ(outcome.error->kind, UrlError::Kind::TooLarge);
        EXPECT_TRUE(filesLeft().isEmpty());
        EXPECT_FALSE(fetch(small, server.url()));
    }
    TestServer exact(TestServer::reply("200 OK", QByteArray(100000, 'x')));
    EXPECT_EQ(download(small, exact.url()).finished, 1);
}

TEST_F(QtUrlLoaderTest, FailuresOfTheNetworkAreTold) {
    int port = 0;
    {
        const TestServer gone(TestServer::reply("200 OK", ""));
        port = gone.port();
    }
    const Outcome refused = download(m_loader, "http://127.0.0.1:" + QByteArray::number(port) + "/");
    ASSERT_TRUE(refused.error);
    EXPECT_EQ(refused.error->kind, UrlError::Kind::Refused);
    EXPECT_FALSE(refused.error->description.isEmpty());
}

TEST_F(QtUrlLoaderTest, FollowsRedirects) {
    TestServer target(TestServer::reply("200 OK", "there"));
    TestServer server(TestServer::reply("302 Found", "moved", "Location: " + target.url("/x") + "\r\n"));
    EXPECT_EQ(download(m_loader, server.url()).finished, 1);
    EXPECT_EQ(saved(), "there");
    EXPECT_EQ(target.requests().size(), 1);
    EXPECT_EQ(server.requests().size(), 1);
    TestServer relative(TestServer::reply("301 Moved", "", "Location: /y?a=1\r\n"));
    EXPECT_TRUE(download(m_loader, relative.url("/x")).error) << "in a circle";
    EXPECT_EQ(relative.requests().value(1).split('\r').first(), "GET /y?a=1 HTTP/1.1");
    EXPECT_EQ(relative.requests().size(), 11);
    for (const char *astray :
         {"ftp://127.0.0.1/", "file:///etc/passwd", "http://u:p@127.0.0.1/", "//", "/a b"}) {
        TestServer wrong(TestServer::reply("302 Found", "x", QByteArray("Location: ") + astray + "\r\n"));
        EXPECT_TRUE(download(m_loader, wrong.url()).error) << astray;
        EXPECT_EQ(wrong.requests().size(), 1) << astray;
    }
}

TEST_F(QtUrlLoaderTest, PlantedLinkIsReplacedNotFollowed) {
    TestServer server(TestServer::reply("200 OK", "body"));
    const QString victim = m_folder.filePath(QStringLiteral("victim"));
    QFile file(victim);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("precious");
    file.close();
    ASSERT_TRUE(QFile::link(victim, m_path));
    EXPECT_EQ(download(m_loader, server.url()).finished, 1);
    EXPECT_FALSE(QFileInfo(m_path).isSymLink());
    EXPECT_EQ(saved(), "body");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "precious");
}

TEST_F(QtUrlLoaderTest, FolderThatIsMissingOrFullFailsWithFile) {
    TestServer server(TestServer::reply("200 OK", "body"));
    QObject context;
    for (const QString &target :
         {m_folder.filePath(QStringLiteral("no/such/file")), QStringLiteral("/dev/full/x")}) {
        Outcome outcome;
        EXPECT_TRUE(m_loader.download(
            server.url(), &context, [&] { return target; }, [&] { ++outcome.finished; },
            [&](const UrlError &error) { outcome.error = error; }));
        ASSERT_TRUE(spin([&] { return outcome.isOver(); }));
        ASSERT_TRUE(outcome.error);
        EXPECT_EQ(outcome.error->kind, UrlError::Kind::File);
    }
}

TEST_F(QtUrlLoaderTest, ContextThatGoesTakesTheDownloadAlong) {
    TestServer server([&server](int descriptor) {
        TestServer::send(descriptor, "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf ");
        while (server.isRunning()) {
            usleep(5000);
        }
    });
    Outcome outcome;
    auto context = std::make_unique<QObject>();
    ASSERT_TRUE(m_loader.download(
        server.url(), context.get(),
        [this] {
            ++m_destinationsAsked;
            return m_path;
        },
        [&] { ++outcome.finished; }, [&](const UrlError &error) { outcome.error = error; }));
    ASSERT_TRUE(spin([&] { return m_destinationsAsked > 0; }));
    context.reset();
    EXPECT_FALSE(spin([&] { return outcome.isOver(); }, 600));
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(QtUrlLoaderTest, LoaderThatGoesEndsDownloadsSilently) {
    TestServer server([&server](int) {
        while (server.isRunning()) {
            usleep(5000);
        }
    });
    Outcome outcome;
    QObject context;
    {
        QtUrlLoader shortLived(QStringLiteral("1"), QString(), shortLimits());
        ASSERT_TRUE(shortLived.download(
            server.url(), &context, [this] { return m_path; }, [&] { ++outcome.finished; },
            [&](const UrlError &error) { outcome.error = error; }));
    }
    EXPECT_FALSE(spin([&] { return outcome.isOver(); }, 800));
}

TEST_F(QtUrlLoaderTest, ACallbackMayDestroyItsContext) {
    TestServer server(TestServer::reply("200 OK", "x"));
    auto context = std::make_unique<QObject>();
    bool called = false;
    ASSERT_TRUE(m_loader.download(
        server.url(), context.get(), [this] { return m_path; },
        [&] {
            context.reset();
            called = true;
        },
        [](const UrlError &) {}));
    EXPECT_TRUE(spin([&] { return called; }));
}

TEST_F(QtUrlLoaderTest, ProxiesOfTheEnvironmentAreNotUsed) {
    TestServer server(TestServer::reply("200 OK", "x"));
    ASSERT_TRUE(qputenv("http_proxy", "http://127.0.0.1:9/"));
    EXPECT_EQ(download(m_loader, server.url()).finished, 1);
    qunsetenv("http_proxy");
}

class QtUrlLoaderTls : public QtUrlLoaderTest {
protected:
    static void SetUpTestSuite() { m_certificates = std::make_unique<TestCertificates>(); }

    static void TearDownTestSuite() { m_certificates.reset(); }

    void SetUp() override {
        ASSERT_TRUE(m_certificates->areMade()) << "the openssl tool made no certificates";
        m_trusting = std::make_unique<QtUrlLoader>(QStringLiteral("1"), m_certificates->authority(),
                                                   UrlLimits{5s, 10s, 1000});
    }

    static QByteArray answer(const QByteArray &body) {
        return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\n\r\n" + body;
    }

    inline static std::unique_ptr<TestCertificates> m_certificates;
    std::unique_ptr<QtUrlLoader> m_trusting;
};

TEST_F(QtUrlLoaderTls, ExtraAuthorityIsTrusted) {
    const TlsServer server(*m_certificates, QStringLiteral("good"), answer("secret"));
    EXPECT_EQ(download(*m_trusting, server.url()).finished, 1);
    EXPECT_EQ(saved(), "secret");
    EXPECT_EQ(fetch(*m_trusting, server.url()), "secret");
}

TEST_F(QtUrlLoaderTls, LargeBodiesComeThroughWhole) {
    const QByteArray body = QByteArray("0123456789abcdef").repeated(500000);
    const TlsServer server(*m_certificates, QStringLiteral("good"), answer(body));
    QtUrlLoader patient(QStringLiteral("1"), m_certificates->authority(), {5s, 20s, body.size()});
    EXPECT_EQ(download(patient, server.url()).finished, 1);
    EXPECT_TRUE(saved() == body);
    EXPECT_TRUE(fetch(patient, server.url()) == body);
}

TEST_F(QtUrlLoaderTls, UnknownAuthorityFails) {
    const TlsServer server(*m_certificates, QStringLiteral("good"), answer("secret"));
    const Outcome outcome = download(m_loader, server.url());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::Tls) << outcome.error->description.toStdString();
    EXPECT_FALSE(fetch(m_loader, server.url()));
}

TEST_F(QtUrlLoaderTls, CertificateOfAnotherHostFails) {
    const TlsServer server(*m_certificates, QStringLiteral("wrong"), answer("secret"));
    const Outcome outcome = download(*m_trusting, server.url());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::Tls);
}

TEST_F(QtUrlLoaderTls, RedirectToPlainHttpIsNotFollowed) {
    const TestServer plain(TestServer::reply("200 OK", "plain"));
    const TlsServer server(*m_certificates, QStringLiteral("good"),
                           "HTTP/1.1 302 Found\r\nConnection: close\r\nContent-Length: 0\r\nLocation: " +
                               plain.url() + "\r\n\r\n");
    EXPECT_TRUE(download(*m_trusting, server.url()).error);
    EXPECT_FALSE(fetch(*m_trusting, server.url()));
    EXPECT_TRUE(plain.requests().isEmpty());
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(QtUrlLoaderTls, AuthorityFileThatIsMissingLeavesTheOthersAlone) {
    QtUrlLoader other(QStringLiteral("1"), QStringLiteral("/no/such/ca.crt"), shortLimits());
    TestServer server(TestServer::reply("200 OK", "x"));
    EXPECT_EQ(download(other, server.url()).finished, 1);
}

} // namespace

} // namespace quorvane::platform
