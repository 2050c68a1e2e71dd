#include "HttpAnswer.h"

#include <QByteArrayList>
#include <algorithm>
#include <utility>

namespace quorvane::platform {

namespace {

constexpr int noContent = 204;
constexpr int notModified = 304;
constexpr int firstFinal = 200;

bool isNumber(const QByteArray &text, int base) {
    constexpr qsizetype mostDigits = 15; // far from the end of 64 bits
    return !text.isEmpty() && text.size() <= mostDigits &&
           std::all_of(text.begin(), text.end(), [base](char digit) {
               return (digit >= '0' && digit <= '9') ||
                      (base == 16 && ((digit >= 'a' && digit <= 'f') || (digit >= 'A' && digit <= 'F')));
           });
}

} // namespace

HttpAnswer::HttpAnswer(qint64 largestHead) : headLeft(largestHead) {}

QByteArray HttpAnswer::take(const QByteArray &bytes) {
    QByteArray body;
    qsizetype at = 0;
    while (at < bytes.size() && (current == State::Head || current == State::Body)) {
        if (part == Part::Sized || part == Part::Endless || part == Part::Chunk) {
            body += takeBody(bytes, at);
            continue;
        }
        const qsizetype end = bytes.indexOf('\n', at);
        const qsizetype upTo = end < 0 ? bytes.size() : end + 1;
        headLeft -= upTo - at;
        if (headLeft < 0) {
            current = State::TooLarge;
            break;
        }
        line += bytes.mid(at, upTo - at);
        at = upTo;
        if (end >= 0) {
            line.chop(line.endsWith("\r\n") ? 2 : 1);
            const QByteArray whole = std::exchange(line, {});
            takeLine(whole);
        }
    }
    return body;
}

QByteArray HttpAnswer::takeBody(const QByteArray &bytes, qsizetype &at) {
    const qint64 there = bytes.size() - at;
    const qint64 mine = part == Part::Endless ? there : std::min<qint64>(there, left);
    const QByteArray piece = bytes.mid(at, mine);
    at += mine;
    if (part == Part::Endless) {
        return piece;
    }
    left -= mine;
    if (left == 0 && part == Part::Chunk) {
        part = Part::ChunkEnd;
    } else if (left == 0) {
        current = State::Complete;
    }
    return piece;
}

void HttpAnswer::takeEnd() {
    if (current == State::Body && part == Part::Endless) {
        current = State::Complete;
    } else if (current == State::Head || current == State::Body) {
        fail();
    }
}

void HttpAnswer::takeLine(const QByteArray &whole) {
    switch (part) {
    case Part::StatusLine:
        takeStatus(whole);
        break;
    case Part::Fields:
        whole.isEmpty() ? endHead() : takeField(whole);
        break;
    case Part::ChunkSize:
        takeChunkSize(whole);
        break;
    case Part::ChunkEnd:
        part = Part::ChunkSize;
        if (!whole.isEmpty()) {
            fail();
        }
        break;
    case Part::Trailer:
        if (whole.isEmpty()) {
            current = State::Complete;
        }
        break;
    case Part::Sized:
    case Part::Endless:
    case Part::Chunk:
        break;
    }
}

void HttpAnswer::takeStatus(const QByteArray &whole) {
    // "HTTP/1.x NNN" and, after a blank, words for people.
    const bool shaped = whole.size() >= 12 && whole.startsWith("HTTP/1.") && whole.at(8) == ' ' &&
                        (whole.size() == 12 || whole.at(12) == ' ');
    const QByteArray number = whole.mid(9, 3);
    if (!shaped || !isNumber(number, 10) || number < "100") {
        fail();
        return;
    }
    statusCode = number.toInt();
    part = Part::Fields;
}

void HttpAnswer::takeField(const QByteArray &whole) {
    const qsizetype colon = whole.indexOf(':');
    if (colon <= 0) {
        fail();
        return;
    }
    const QByteArray name = whole.left(colon).toLower();
    const QByteArray value = whole.mid(colon + 1).trimmed();
    if (name == "content-length") {
        takeLength(value);
    } else if (name == "transfer-encoding") {
        // No other way of packing was asked for.
        chunked = value.toLower() == "chunked";
        if (!chunked) {
            fail();
        }
    } else if (name == "location") {
        locationValue = value;
    }
}

void HttpAnswer::takeLength(const QByteArray &value) {
    const bool contradicts = told && *told != value.toLongLong();
    if (!isNumber(value, 10) || contradicts) {
        fail();
        return;
    }
    told = value.toLongLong();
}

void HttpAnswer::endHead() {
    if (statusCode < firstFinal) { // an interim answer: the real one follows
        statusCode = 0;
        told.reset();
        chunked = false;
        part = Part::StatusLine;
        return;
    }
    current = State::Body;
    if (statusCode == noContent || statusCode == notModified) {
        current = State::Complete;
    } else if (chunked) {
        told.reset();
        part = Part::ChunkSize;
    } else if (told) {
        left = *told;
        part = Part::Sized;
        if (left == 0) {
            current = State::Complete;
        }
    } else {
        part = Part::Endless;
    }
}

void HttpAnswer::takeChunkSize(const QByteArray &whole) {
    const QByteArray size = whole.split(';').first().trimmed();
    if (!isNumber(size, 16)) {
        fail();
        return;
    }
    left = size.toLongLong(nullptr, 16);
    part = left == 0 ? Part::Trailer : Part::Chunk;
}

} // namespace quorvane::platform
