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

HttpAnswer::HttpAnswer(qint64 largestHead) : m_headLeft(largestHead) {}

QByteArray HttpAnswer::take(const QByteArray &bytes) {
    QByteArray body;
    qsizetype at = 0;
    while (at < bytes.size() && (m_current == State::Head || m_current == State::Body)) {
        if (m_part == Part::Sized || m_part == Part::Endless || m_part == Part::Chunk) {
            body += takeBody(bytes, at);
            continue;
        }
        const qsizetype end = bytes.indexOf('\n', at);
        const qsizetype upTo = end < 0 ? bytes.size() : end + 1;
        m_headLeft -= upTo - at;
        if (m_headLeft < 0) {
            m_current = State::TooLarge;
            break;
        }
        m_line += bytes.mid(at, upTo - at);
        at = upTo;
        if (end >= 0) {
            m_line.chop(m_line.endsWith("\r\n") ? 2 : 1);
            const QByteArray whole = std::exchange(m_line, {});
            takeLine(whole);
        }
    }
    return body;
}

QByteArray HttpAnswer::takeBody(const QByteArray &bytes, qsizetype &at) {
    const qint64 there = bytes.size() - at;
    const qint64 mine = m_part == Part::Endless ? there : std::min<qint64>(there, m_left);
    const QByteArray piece = bytes.mid(at, mine);
    at += mine;
    if (m_part == Part::Endless) {
        return piece;
    }
    m_left -= mine;
    if (m_left == 0 && m_part == Part::Chunk) {
        m_part = Part::ChunkEnd;
    } else if (m_left == 0) {
        m_current = State::Complete;
    }
    return piece;
}

void HttpAnswer::takeEnd() {
    if (m_current == State::Body && m_part == Part::Endless) {
        m_current = State::Complete;
    } else if (m_current == State::Head || m_current == State::Body) {
        fail();
    }
}

void HttpAnswer::takeLine(const QByteArray &whole) {
    switch (m_part) {
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
        m_part = Part::ChunkSize;
        if (!whole.isEmpty()) {
            fail();
        }
        break;
    case Part::Trailer:
        if (whole.isEmpty()) {
            m_current = State::Complete;
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
    m_statusCode = number.toInt();
    m_part = Part::Fields;
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
        m_chunked = value.toLower() == "chunked";
        if (!m_chunked) {
            fail();
        }
    } else if (name == "location") {
        m_locationValue = value;
    }
}

void HttpAnswer::takeLength(const QByteArray &value) {
    const bool contradicts = m_told && *m_told != value.toLongLong();
    if (!isNumber(value, 10) || contradicts) {
        fail();
        return;
    }
    m_told = value.toLongLong();
}

void HttpAnswer::endHead() {
    if (m_statusCode < firstFinal) { // an interim answer: the real one follows
        m_statusCode = 0;
        m_told.reset();
        m_chunked = false;
        m_part = Part::StatusLine;
        return;
    }
    m_current = State::Body;
    if (m_statusCode == noContent || m_statusCode == notModified) {
        m_current = State::Complete;
    } else if (m_chunked) {
        m_told.reset();
        m_part = Part::ChunkSize;
    } else if (m_told) {
        m_left = *m_told;
        m_part = Part::Sized;
        if (m_left == 0) {
            m_current = State::Complete;
        }
    } else {
        m_part = Part::Endless;
    }
}

void HttpAnswer::takeChunkSize(const QByteArray &whole) {
    const QByteArray size = whole.split(';').first().trimmed();
    if (!isNumber(size, 16)) {
        fail();
        return;
    }
    m_left = size.toLongLong(nullptr, 16);
    m_part = m_left == 0 ? Part::Trailer : Part::Chunk;
}

} // namespace quorvane::platform
