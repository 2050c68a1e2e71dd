#include "platform/linux/network/HttpAnswer.h"

#include <gtest/gtest.h>
#include <numeric>

namespace quorvane::platform {

namespace {

using platform::HttpAnswer;
using State = HttpAnswer::State;

constexpr qint64 room = 1000;

struct Read {
    State state = State::Head;
    QByteArray body;
    int status = 0;
    QByteArray location;

    bool operator==(const Read &) const = default;
};

/// Reads the bytes in pieces of that size, then the end of the connection if wanted.
Read read(const QByteArray &bytes, qsizetype pieces, bool ends = true) {
    HttpAnswer answer(room);
    Read result;
    for (qsizetype at = 0; at < bytes.size(); at += pieces) {
        result.body += answer.take(bytes.mid(at, pieces));
    }
    if (ends) {
        answer.takeEnd();
    }
    result.state = answer.state();
    result.status = answer.status();
    result.location = answer.location();
    return result;
}

/// The same whatever the pieces are.
Read readInPieces(const QByteArray &bytes, bool ends = true) {
    const Read whole = read(bytes, std::max<qsizetype>(bytes.size(), 1), ends);
    for (const qsizetype pieces : {1, 2, 3, 7}) {
        EXPECT_EQ(read(bytes, pieces, ends), whole) << bytes.constData() << " in pieces of " << pieces;
    }
    return whole;
}

TEST(HttpAnswer, BodiesOfEveryKind) {
    const QByteArray head = "HTTP/1.1 200 OK\r\nServer: x\r\n";
    EXPECT_EQ(readInPieces(head + "Content-Length: 5\r\n\r\nhello", false),
              (Read{State::Complete, "hello", 200, {}}));
    EXPECT_EQ(readInPieces(head + "content-LENGTH:5 \r\n\r\nhello and more", false),
              (Read{State::Complete, "hello", 200, {}}));
    EXPECT_EQ(readInPieces(head + "Content-Length: 0\r\n\r\n", false), (Read{State::Complete, {}, 200, {}}));
    EXPECT_EQ(readInPieces(head + "\r\nhello"), (Read{State::Complete, "hello", 200, {}}));
    EXPECT_EQ(readInPieces(head + "\r\n"), (Read{State::Complete, {}, 200, {}}));
    EXPECT_EQ(readInPieces(head + "Transfer-Encoding: Chunked\r\n\r\n3\r\nhel\r\nA;x=y\r\n0123456789\r\n0\r\n"
                                  "Trailer: x\r\n\r\nmore",
                           false),
              (Read{State::Complete, "hel0123456789", 200, {}}));
    EXPECT_EQ(readInPieces("HTTP/1.0 404\nContent-Length: 2\n\nno", false),
              (Read{State::Complete, "no", 404, {}}));
    EXPECT_EQ(readInPieces("HTTP/1.1 204 Nothing\r\nContent-Length: 7\r\n\r\n", false).state,
              State::Complete);
}

TEST(HttpAnswer, CutShortIsBroken) {
    const QByteArrayList cut{"",
                             "HTTP/1.1 200 OK\r\n",
                             "HTTP/1.1 200 OK\r\nA: b\r\n",
                             "HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nhello",
                             "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n",
                             "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhel",
                             "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n",
                             "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\n"};
    for (const QByteArray &bytes : cut) {
        EXPECT_EQ(readInPieces(bytes).state, State::Broken) << bytes.constData();
    }
}

TEST(HttpAnswer, WhatIsNoHttpIsBrokenAtOnce) {
    const QByteArrayList wrong{
        "SSH-2.0-x\r\n",
        "\n",
        "HTTP/2 200\r\n",
        "HTTP/1.1 OK\r\n",
        "HTTP/1.1 99 x\r\n",
        "HTTP/1.1 099 x\r\n",
        "HTTP/1.1 2000 x\r\n",
        "HTTP/1.1 200 OK\r\nno colon\r\n",
        "HTTP/1.1 200 OK\r\n: x\r\n",
        "HTTP/1.1 200 OK\r\nContent-Length: -1\r\n",
        "HTTP/1.1 200 OK\r\nContent-Length: 5x\r\n",
        "HTTP/1.1 200 OK\r\nContent-Length: \r\n",
        "HTTP/1.1 200 OK\r\nContent-Length: 9999999999999999999999\r\n",
        "HTTP/1.1 200 OK\r\nContent-Length: 5\r\nContent-Length: 6\r\n",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip, chunked\r\n",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nxyz\r\n",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n\r\n",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nffffffffffffffffffff\r\n",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nhello\r\n"};
    for (const QByteArray &bytes : wrong) {
        EXPECT_EQ(readInPieces(bytes, false).state, State::Broken) << bytes.constData();
    }
}

TEST(HttpAnswer, TheHeadIsBounded) {
    const QByteArray filler(room, 'a');
    EXPECT_EQ(readInPieces(filler + filler, false).state, State::TooLarge);
    EXPECT_EQ(readInPieces("HTTP/1.1 200 OK\r\nX: " + filler, false).state, State::TooLarge);
    EXPECT_EQ(readInPieces("HTTP/1.1 200 OK\r\n" + QByteArray("X: y\r\n").repeated(room), false).state,
              State::TooLarge);
    EXPECT_EQ(readInPieces(QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(room), false).state,
              State::TooLarge);
    const QByteArray chunks = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    EXPECT_EQ(readInPieces(chunks + "1;" + filler, false).state, State::TooLarge);
    EXPECT_EQ(readInPieces(chunks + "0\r\nX: " + filler, false).state, State::TooLarge);
    const QByteArray line = "HTTP/1.1 200 OK\r\nX: ";
    const QByteArray rest = "\r\nContent-Length: 0\r\n\r\n";
    const QByteArray fits(room - line.size() - rest.size(), 'a');
    EXPECT_EQ(readInPieces(line + fits + rest, false).state, State::Complete);
    EXPECT_EQ(readInPieces(line + fits + 'a' + rest, false).state, State::TooLarge);
}

TEST(HttpAnswer, InterimAnswersAreSkipped) {
    EXPECT_EQ(readInPieces("HTTP/1.1 103 Hints\r\nContent-Length: 9\r\n\r\nHTTP/1.1 200 OK\r\n"
                           "Content-Length: 1\r\n\r\nx",
                           false),
              (Read{State::Complete, "x", 200, {}}));
}

TEST(HttpAnswer, LocationAndLengthAreTold) {
    EXPECT_EQ(readInPieces("HTTP/1.1 302 Found\r\nLOCATION:  https://a.test/?b \r\nContent-Length: 0\r\n\r\n",
                           false),
              (Read{State::Complete, {}, 302, "https://a.test/?b"}));
    HttpAnswer answer(room);
    EXPECT_EQ(answer.take("HTTP/1.1 200 OK\r\nContent-Length: 123456789012\r\n\r\n"), "");
    EXPECT_EQ(answer.length(), 123456789012);
    EXPECT_EQ(answer.state(), State::Body);
}

} // namespace

} // namespace quorvane::platform
