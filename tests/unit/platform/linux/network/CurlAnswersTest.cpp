#include "TestServer.h"
#include "UrlLoaderFixture.h"

#include <QByteArrayList>

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

const QByteArray plainHead = "HTTP/1.1 200 OK\r\n";
const QByteArray chunkedHead = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";

struct Answer {
    QByteArray bytes;
    QByteArray body;
};

/// Answers as a hostile server could send them.
class CurlAnswersTest : public UrlLoaderFixture {
protected:
    /// Sends these bytes as the answer and closes the connection.
    static TestServer::Answer closing(const QByteArray &bytes) {
        return [bytes](int descriptor) {
            TestServer::send(descriptor, bytes);
        };
    }

    /// Neither way of loading accepts the answer, and nothing is requested again.
    void expectFailure(const QByteArray &bytes, UrlError::Kind kind) {
        const QByteArray start = bytes.left(120);
        TestServer server(closing(bytes));
        const Outcome outcome = download(m_loader, server.url());
        ASSERT_TRUE(outcome.error) << start.constData();
        EXPECT_EQ(outcome.error->kind, kind) << start.constData() << outcome.error->description.toStdString();
        EXPECT_EQ(outcome.finished, 0) << start.constData();
        EXPECT_FALSE(fetch(m_loader, server.url())) << start.constData();
        EXPECT_EQ(server.requests().size(), 2) << start.constData();
        EXPECT_TRUE(filesLeft().isEmpty()) << start.constData();
    }

    void expectTimeOut(TestServer &server) {
        QElapsedTimer clock;
        clock.start();
        const Outcome outcome = download(m_loader, server.url());
        ASSERT_TRUE(outcome.error);
        EXPECT_EQ(outcome.error->kind, UrlError::Kind::TimedOut);
        EXPECT_GE(clock.elapsed(), 1190) << "it was not silent";
        EXPECT_LT(clock.elapsed(), 5000);
        EXPECT_TRUE(filesLeft().isEmpty());
    }
};

TEST_F(CurlAnswersTest, BodiesOfEveryKindAreComplete) {
    const QList<Answer> answers{
        {plainHead + "Content-Length: 5\r\n\r\nhello", "hello"},
        {plainHead + "content-LENGTH:5 \r\n\r\nhello and more", "hello"},
        {plainHead + "Content-Length: 5\r\nContent-Length: 5\r\n\r\nhello", "hello"},
        {plainHead + "Content-Length: 0\r\n\r\n", ""},
        {plainHead + "\r\nended by the connection", "ended by the connection"},
        {plainHead + "\r\n", ""},
        {chunkedHead + "3\r\nhel\r\nA;x=y\r\n0123456789\r\n0\r\nTrailer: x\r\n\r\nmore", "hel0123456789"},
        {plainHead + "Transfer-Encoding: Chunked\r\nContent-Length: 1\r\n\r\n3\r\nhel\r\n0\r\n\r\n", "hel"},
        {"HTTP/1.0 404\nContent-Length: 2\n\nno", "no"},
        {"HTTP/1.1 204 Nothing\r\nContent-Length: 7\r\n\r\n", ""},
        {"HTTP/1.1 304 Nothing\r\nContent-Length: 7\r\n\r\n", ""},
        {"HTTP/1.1 103 Hints\r\nContent-Length: 9\r\n\r\n" + plainHead + "Content-Length: 1\r\n\r\nx", "x"},
        {"HTTP/1.1 302 Found\r\nLocation: \r\n\r\nto nowhere", "to nowhere"},
        {"HTTP/1.1 401 No\r\nWWW-Authenticate: Negotiate\r\nContent-Length: 2\r\n\r\nno", "no"}};
    for (const Answer &answer : answers) {
        TestServer server(closing(answer.bytes));
        QFile::remove(m_path);
        EXPECT_EQ(download(m_loader, server.url()).finished, 1) << answer.bytes.constData();
        EXPECT_EQ(saved(), answer.body) << answer.bytes.constData();
        EXPECT_EQ(fetch(m_loader, server.url()), answer.body) << answer.bytes.constData();
        EXPECT_EQ(server.requests().size(), 2) << answer.bytes.constData();
    }
}

TEST_F(CurlAnswersTest, AnswersThatAreCutShortFail) {
    for (const QByteArray &bytes :
         QByteArrayList{"", plainHead, plainHead + "A: b\r\n", plainHead + "A: b\r\n\r",
                        "HTTP/1.1 100 Continue\r\n\r\n" + plainHead, "HTTP/1.1 100 Continue\r\n\r\n",
                        plainHead + "Content-Length: 6\r\n\r\nhello", chunkedHead, chunkedHead + "5\r\nhel",
                        chunkedHead + "5\r\nhello\r\n", chunkedHead + "5\r\nhello\r\n0\r\n"}) {
        expectFailure(bytes, UrlError::Kind::Other);
    }
}

TEST_F(CurlAnswersTest, WhatIsNotHttpFails) {
    for (const QByteArray &bytes :
         QByteArrayList{"SSH-2.0-x\r\n", "\n", "just text", "ICY 200 OK\r\n\r\nx", "HTTP/2 200\r\n\r\nx",
                        "HTTP/3 200\r\n\r\nx", "HTTP/1.1 OK\r\n\r\nx", "HTTP/1.1 99 x\r\n\r\nx",
                        "HTTP/1.1 099 x\r\n\r\nx", "HTTP/1.1 2000 x\r\n\r\nx", "HTTP/1.1 -200 x\r\n\r\nx",
                        "HTTP/1.1 101 Other\r\n\r\nx", plainHead + "no colon\r\n\r\nx",
                        QByteArray("HTTP/1.1 200 OK\r\nA: b\0c\r\n\r\nx", 28)}) {
        expectFailure(bytes, UrlError::Kind::Other);
    }
}

TEST_F(CurlAnswersTest, LengthsAndCodingsMustBePlain) {
    for (const char *field :
         {"Content-Length: -1", "Content-Length: 1x", "Content-Length: 0x1", "Content-Length: +1",
          "Content-Length: 1, 1", "Content-Length:", "Content-Length: 9999999999999999999999",
          "Content-Length: 1\r\nContent-Length: 2", "Transfer-Encoding: gzip",
          "Transfer-Encoding: gzip, chunked", "Transfer-Encoding: identity",
          "Transfer-Encoding: chunked\r\nTransfer-Encoding: gzip"}) {
        expectFailure(plainHead + field + "\r\n\r\n1\r\nx\r\n0\r\n\r\n", UrlError::Kind::Other);
    }
    for (const char *size : {"xyz", "", "-1", "0x1", "ffffffffffffffffffff", ";a"}) {
        expectFailure(chunkedHead + size + "\r\nx\r\n0\r\n\r\n", UrlError::Kind::Other);
    }
    expectFailure(chunkedHead + "3\r\nhello\r\n0\r\n\r\n", UrlError::Kind::Other);
}

TEST_F(CurlAnswersTest, TheHeadIsBounded) {
    const QByteArray filler(70000, 'a');
    const QByteArray line(120000, 'a');
    const QByteArray fields = QByteArray("X: y\r\n").repeated(20000);
    for (const QByteArray &bytes :
         QByteArrayList{plainHead + "X: " + filler + "\r\n\r\nx", plainHead + "X: " + line + "\r\n\r\nx",
                        "HTTP/1.1 200 " + line, plainHead + fields + "\r\nx",
                        QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(20000) + plainHead + "\r\nx",
                        chunkedHead + "0\r\n" + fields + "\r\n"}) {
        expectFailure(bytes, UrlError::Kind::TooLarge);
    }
    expectFailure(chunkedHead + "0\r\nX: " + line + "\r\n\r\n", UrlError::Kind::Other);
    const QByteArray last = "Content-Length: 1\r\n\r\n";
    const QByteArray fits(65536 - plainHead.size() - last.size() - 5, 'a');
    TestServer server(closing(plainHead + "X: " + fits + "\r\n" + last + "x"));
    EXPECT_EQ(fetch(m_loader, server.url()), "x");
    expectFailure(plainHead + "X: a" + fits + "\r\n" + last + "x", UrlError::Kind::TooLarge);
}

TEST_F(CurlAnswersTest, TheLengthOfTheBodyIsBounded) {
    expectFailure(plainHead + "Content-Length: 16777217\r\n\r\nx", UrlError::Kind::TooLarge);
    expectFailure(plainHead + "Content-Length: 999999999999999\r\n\r\nx", UrlError::Kind::TooLarge);
    CurlUrlLoader small(QStringLiteral("1"), QString(), {5s, 5s, 3});
    TestServer chunks(closing(chunkedHead + "2\r\nab\r\n2\r\ncd\r\n0\r\n\r\n"));
    const Outcome outcome = download(small, chunks.url());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::TooLarge);
    EXPECT_TRUE(filesLeft().isEmpty());
    EXPECT_FALSE(fetch(small, chunks.url()));
}

TEST_F(CurlAnswersTest, PackedBodiesAreNotUnpacked) {
    const QByteArray packed(
        "\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03\x4b\x04\x00\x43\xbe\xb7\xe8\x01\x00\x00\x00", 21);
    for (const char *coding : {"gzip", "br", "unknown"}) {
        TestServer server(
            closing(plainHead + "Content-Encoding: " + coding + "\r\nContent-Length: 21\r\n\r\n" + packed));
        EXPECT_EQ(fetch(m_loader, server.url()), packed) << coding;
    }
}

TEST_F(CurlAnswersTest, AnEndlessHeadTimesOut) {
    TestServer server([&server](int descriptor) {
        bool live = TestServer::send(descriptor, plainHead);
        while (live && server.isRunning()) {
            live = TestServer::send(descriptor, "X: y\r\n");
            usleep(50000);
        }
    });
    expectTimeOut(server);
}

TEST_F(CurlAnswersTest, AnEndlessChunkLineTimesOut) {
    TestServer server([&server](int descriptor) {
        bool live = TestServer::send(descriptor, chunkedHead + "1;");
        while (live && server.isRunning()) {
            live = TestServer::send(descriptor, QByteArray(10000, 'x'));
            usleep(10000);
        }
    });
    expectTimeOut(server);
}

} // namespace

} // namespace quorvane::platform
