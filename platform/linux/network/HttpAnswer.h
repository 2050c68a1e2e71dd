#pragma once

#include <QByteArray>
#include <optional>

namespace quorvane::platform {

/// One HTTP/1.1 answer to a GET, taken in as it comes, in pieces of any size. Keeps the head only, and no
/// more of it than allowed; the body is handed on. What does not keep to the rules is broken for good.
class HttpAnswer {
public:
    enum class State {
        Head,     ///< the head is not whole yet
        Body,     ///< the head is known, the body goes on
        Complete, ///< nothing is missing; what follows is not looked at
        Broken,   ///< not HTTP, or cut short
        TooLarge  ///< a head beyond the limit
    };

    /// Bytes of head lines, those of chunks and trailers included.
    explicit HttpAnswer(qint64 largestHead);

    /// Takes bytes; gives the part of the body that they hold.
    [[nodiscard]] QByteArray take(const QByteArray &bytes);
    /// The connection has ended: an answer whose length nobody told is complete, another one broken.
    void takeEnd();

    [[nodiscard]] State state() const { return m_current; }

    [[nodiscard]] bool hasHead() const { return m_statusCode != 0; }

    [[nodiscard]] int status() const { return m_statusCode; }

    /// The length of the body as the head tells it.
    [[nodiscard]] std::optional<qint64> length() const { return m_told; }

    /// The value of the "Location" field, empty without one.
    [[nodiscard]] QByteArray location() const { return m_locationValue; }

private:
    enum class Part { StatusLine, Fields, Sized, Endless, ChunkSize, Chunk, ChunkEnd, Trailer };

    void takeLine(const QByteArray &line);
    void takeStatus(const QByteArray &line);
    void takeField(const QByteArray &line);
    void takeLength(const QByteArray &value);
    void takeChunkSize(const QByteArray &line);
    void endHead();

    void fail() { m_current = State::Broken; }

    /// Takes what it may of the bytes from `at` on as body.
    [[nodiscard]] QByteArray takeBody(const QByteArray &bytes, qsizetype &at);

    qint64 m_headLeft;
    State m_current = State::Head;
    Part m_part = Part::StatusLine;
    QByteArray m_line;
    int m_statusCode = 0;
    std::optional<qint64> m_told;
    bool m_chunked = false;
    QByteArray m_locationValue;
    qint64 m_left = 0; ///< of the body, or of the chunk
};

} // namespace quorvane::platform
