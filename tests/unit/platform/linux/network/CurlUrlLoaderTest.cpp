#include "TestServer.h"
#include "UrlLoaderFixture.h"
#include "platform/StrictUrl.h"
#include "platform/linux/network/CurlLibrary.h"
#include "platform/linux/network/CurlTransfer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/stat.h>

namespace quorvane::platform {

namespace {

class CurlUrlLoaderTest : public UrlLoaderFixture {};

TEST_F(CurlUrlLoaderTest, SendsTargetsByteForByte) {
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

TEST_F(CurlUrlLoaderTest, RefusesTextsThatCannotBeSentAsTheyAre) {
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
        EXPECT_FALSE(strictUrl(url)) << url;
    }
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(CurlUrlLoaderTest, SendsPlainHeaders) {
    TestServer server(TestServer::reply("200 OK", "x", "Set-Cookie: a=b\r\n"));
    download(m_loader, server.url());
    download(m_loader, server.url());
    const QByteArray head = server.requests().value(1).toLower();
    EXPECT_TRUE(head.contains("\r\nuser-agent: quorvane/1.0.0\r\n")) << head.constData();
    EXPECT_TRUE(head.contains("\r\naccept-encoding: identity\r\n"));
    EXPECT_FALSE(head.contains("cookie"));
    EXPECT_FALSE(head.contains("upgrade"));
}

TEST_F(CurlUrlLoaderTest, SavesTheBodyPrivately) {
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

TEST_F(CurlUrlLoaderTest, NameThatCannotBeGivenIsReplacedByAnother) {
    const QByteArray body = QByteArray("body\0\xFF", 6).repeated(30000);
    TestServer server(TestServer::reply("200 OK", body));
    ASSERT_TRUE(QDir().mkpath(m_path));
    const QString other = m_folder.filePath(QStringLiteral("other"));
    QStringList paths{m_path, other};
    Outcome outcome;
    QObject context;
    ASSERT_TRUE(m_loader.download(
        server.url(), &context, [&paths] { return paths.takeFirst(); }, [&] { ++outcome.finished; },
        [&](const UrlError &error) { outcome.error = error; }));
    EXPECT_TRUE(spin([&] { return outcome.isOver(); }));
    EXPECT_EQ(outcome.finished, 1);
    QFile file(other);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), body);
    EXPECT_EQ(file.permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    EXPECT_EQ(filesLeft(), (QStringList{QStringLiteral("answer"), QStringLiteral("other")}));
    EXPECT_EQ(server.requests().size(), 1) << "nothing is requested again";
}

TEST_F(CurlUrlLoaderTest, NameThatCannotBeGivenFailsWhenThereIsNoOther) {
    TestServer server(TestServer::reply("200 OK", "body"));
    ASSERT_TRUE(QDir().mkpath(m_path));
    const Outcome outcome = download(m_loader, server.url());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::File);
    EXPECT_EQ(m_destinationsAsked, 2);
    EXPECT_EQ(filesLeft(), QStringList{QStringLiteral("answer")});
}

TEST_F(CurlUrlLoaderTest, ErrorStatusWithABodyIsAFinishedDownload) {
    for (const char *status : {"500 Internal Server Error", "404 Not Found", "401 Unauthorized",
                               "403 Forbidden", "503 Service Unavailable", "418 Teapot", "599 Odd"}) {
        TestServer server(TestServer::reply(status, "reason"));
        QFile::remove(m_path);
        EXPECT_EQ(download(m_loader, server.url()).finished, 1) << status;
        EXPECT_EQ(saved(), "reason") << status;
        EXPECT_EQ(fetch(m_loader, server.url()), "reason") << status;
    }
}

TEST_F(CurlUrlLoaderTest, EmptyBodyIsAnEmptyFile) {
    TestServer server(TestServer::reply("200 OK", ""));
    EXPECT_EQ(download(m_loader, server.url()).finished, 1);
    EXPECT_EQ(saved(), "");
    EXPECT_EQ(fetch(m_loader, server.url()), QByteArray(""));
}

TEST_F(CurlUrlLoaderTest, TruncatedBodyFails) {
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

TEST_F(CurlUrlLoaderTest, ChunksAreJoinedAndAMissingOneFails) {
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

TEST_F(CurlUrlLoaderTest, AHugeHeadIsCutOff) {
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

TEST_F(CurlUrlLoaderTest, WhatIsNotHttpFails) {
    TestServer server([](int descriptor) { TestServer::send(descriptor, "SSH-2.0-x\r\n"); });
    EXPECT_TRUE(download(m_loader, server.url()).error);
    EXPECT_EQ(server.requests().size(), 1) << "one request";
    TestServer mute([](int) {});
    EXPECT_TRUE(download(m_loader, mute.url()).error);
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(CurlUrlLoaderTest, SilenceTimesOut) {
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

TEST_F(CurlUrlLoaderTest, DripTimesOutOverall) {
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

TEST_F(CurlUrlLoaderTest, LargeBodiesAreCutOff) {
    CurlUrlLoader small(QStringLiteral("1"), QString(), {5s, 5s, 100000});
    // Known from the head, and found while the body comes.
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

TEST_F(CurlUrlLoaderTest, FailuresOfTheNetworkAreReported) {
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

TEST_F(CurlUrlLoaderTest, FollowsRedirects) {
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
    TestServer raw(TestServer::reply("302 Found", "", "Location: /x?a=1&&b=%0D%0AX:%20y&c=[0]\r\n"));
    EXPECT_TRUE(download(m_loader, raw.url("/?first=1&&2")).error);
    EXPECT_EQ(raw.requests().value(0).split('\r').first(), "GET /?first=1&&2 HTTP/1.1");
    EXPECT_EQ(raw.requests().value(1).split('\r').first(), "GET /x?a=1&&b=%0D%0AX:%20y&c=[0] HTTP/1.1");
    for (const char *wanted :
         {"ftp://127.0.0.1/", "file:///etc/passwd", "http://u:p@127.0.0.1/", "//", "/a b"}) {
        TestServer wrong(TestServer::reply("302 Found", "x", QByteArray("Location: ") + wanted + "\r\n"));
        EXPECT_TRUE(download(m_loader, wrong.url()).error) << wanted;
        EXPECT_EQ(wrong.requests().size(), 1) << wanted;
    }
}

TEST_F(CurlUrlLoaderTest, PlantedLinkIsReplacedNotFollowed) {
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

TEST_F(CurlUrlLoaderTest, FolderThatIsMissingOrFullFailsWithFile) {
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

TEST_F(CurlUrlLoaderTest, ContextThatGoesTakesTheDownloadAlong) {
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

TEST_F(CurlUrlLoaderTest, LoaderThatGoesEndsDownloadsSilently) {
    TestServer server([&server](int) {
        while (server.isRunning()) {
            usleep(5000);
        }
    });
    Outcome outcome;
    QObject context;
    {
        CurlUrlLoader shortLived(QStringLiteral("1"), QString(), shortLimits());
        ASSERT_TRUE(shortLived.download(
            server.url(), &context, [this] { return m_path; }, [&] { ++outcome.finished; },
            [&](const UrlError &error) { outcome.error = error; }));
        ASSERT_TRUE(spin([&] { return !server.requests().isEmpty(); }));
    }
    EXPECT_FALSE(spin([&] { return outcome.isOver(); }, 800));
}

TEST_F(CurlUrlLoaderTest, ACallbackMayDestroyItsContext) {
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

TEST_F(CurlUrlLoaderTest, TheDestinationMayDestroyItsContext) {
    TestServer server(TestServer::reply("200 OK", "body"));
    Outcome outcome;
    auto context = std::make_unique<QObject>();
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> held = token;
    bool called = false;
    bool heldItsState = false;
    ASSERT_TRUE(m_loader.download(
        server.url(), context.get(),
        [&, state = std::move(token)] {
            context.reset();
            heldItsState = !held.expired();
            called = true;
            return m_path;
        },
        [&] { ++outcome.finished; }, [&](const UrlError &error) { outcome.error = error; }));
    EXPECT_TRUE(spin([&] { return called; }));
    EXPECT_TRUE(heldItsState) << "the callable was destroyed while it ran";
    EXPECT_FALSE(spin([&] { return outcome.isOver(); }, 300));
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(CurlUrlLoaderTest, TheDestinationMayDestroyTheLoader) {
    TestServer server([](int descriptor) {
        TestServer::send(descriptor, "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf ");
    });
    Outcome outcome;
    QObject context;
    auto shortLived = std::make_unique<CurlUrlLoader>(QStringLiteral("1"), QString(), shortLimits());
    ASSERT_TRUE(shortLived->download(
        server.url(), &context,
        [&] {
            shortLived.reset();
            return m_path;
        },
        [&] { ++outcome.finished; }, [&](const UrlError &error) { outcome.error = error; }));
    EXPECT_TRUE(spin([&] { return !shortLived; }));
    EXPECT_FALSE(spin([&] { return outcome.isOver(); }, 300));
    EXPECT_TRUE(filesLeft().isEmpty());
}

/// Sets variables of the environment until the end of the test.
class Environment {
public:
    void set(const char *name, const QByteArray &value) {
        m_former.push_back({name, qEnvironmentVariableIsSet(name), qgetenv(name)});
        qputenv(name, value);
    }

    Environment() = default;

    ~Environment() {
        for (const Variable &variable : m_former) {
            variable.wasSet ? qputenv(variable.name, variable.value) : qunsetenv(variable.name);
        }
    }

    Environment(const Environment &) = delete;
    Environment &operator=(const Environment &) = delete;

private:
    struct Variable {
        const char *name;
        bool wasSet;
        QByteArray value;
    };

    std::vector<Variable> m_former;
};

TEST_F(CurlUrlLoaderTest, ProxiesOfTheEnvironmentAreNotUsed) {
    TestServer server(TestServer::reply("200 OK", "x"));
    Environment environment;
    for (const char *name : {"http_proxy", "https_proxy", "all_proxy", "HTTPS_PROXY", "ALL_PROXY"}) {
        environment.set(name, "http://127.0.0.1:9/");
    }
    environment.set("no_proxy", "");
    EXPECT_EQ(download(m_loader, server.url()).finished, 1);
    EXPECT_EQ(fetch(m_loader, server.url()), "x");
}

TEST_F(CurlUrlLoaderTest, PasswordsOfTheHomeFolderAreNotSent) {
    TestServer server(TestServer::reply("200 OK", "x"));
    QFile file(m_folder.filePath(QStringLiteral(".netrc")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("default login user password secret\n");
    file.close();
    Environment environment;
    environment.set("HOME", m_folder.path().toUtf8());
    EXPECT_EQ(fetch(m_loader, server.url()), "x");
    EXPECT_FALSE(server.requests().value(0).toLower().contains("authorization"));
}

TEST_F(CurlUrlLoaderTest, SocketsAreNotPassedToOtherPrograms) {
    int sockets = 0;
    int passedOn = 0;
    TestServer server([&](int descriptor) {
        for (int other = 0; other < 1024; ++other) {
            sockaddr_in peer{};
            socklen_t size = sizeof peer;
            const bool isClient =
                getpeername(other, static_cast<sockaddr *>(static_cast<void *>(&peer)), &size) == 0 &&
                peer.sin_family == AF_INET && ntohs(peer.sin_port) == server.port();
            sockets += isClient ? 1 : 0;
            passedOn += isClient && (fcntl(other, F_GETFD) & FD_CLOEXEC) == 0 ? 1 : 0;
        }
        TestServer::send(descriptor, "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx");
    });
    EXPECT_EQ(fetch(m_loader, server.url()), "x");
    EXPECT_EQ(sockets, 1);
    EXPECT_EQ(passedOn, 0);
}

TEST_F(CurlUrlLoaderTest, WithoutTheLibraryDownloadsFail) {
    EXPECT_FALSE(CurlLibrary::load(QStringLiteral("no-such-library.so")));
    EXPECT_FALSE(CurlLibrary::load(QStringLiteral("libc.so.6"))) << "without the functions";
    ASSERT_NE(CurlLibrary::shared(), nullptr);
    std::optional<UrlError> failure;
    QObject context;
    new CurlTransfer(
        nullptr, {QUrl(QStringLiteral("http://127.0.0.1/")), {}, {}, {}}, {}, &context,
        [](const QByteArray &) { return std::optional<UrlError>(); },
        [&failure](const std::optional<UrlError> &error) { failure = error; });
    EXPECT_FALSE(failure) << "reported from within the request";
    ASSERT_TRUE(spin([&] { return failure.has_value(); }));
    EXPECT_EQ(failure->kind, UrlError::Kind::Other);
    EXPECT_FALSE(failure->description.isEmpty());
}

} // namespace

} // namespace quorvane::platform
