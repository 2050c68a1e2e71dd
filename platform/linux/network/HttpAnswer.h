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

    [[nodiscard]] State state() const { return current; }

    [[nodiscard]] bool hasHead() const { return statusCode != 0; }

    [[nodiscard]] int status() const { return statusCode; }

    /// The length of the body as the head tells it.
    [[nodiscard]] std::optional<qint64> length() const { return told; }

    /// The value of the "Location" field, empty without one.
    [[nodiscard]] QByteArray location() const { return locationValue; }

private:
    enum class Part { StatusLine, Fields, Sized, Endless, ChunkSize, Chunk, ChunkEnd, Trailer };

    void takeLine(const QByteArray &line);
    void takeStatus(const QByteArray &line);
    void takeField(const QByteArray &line);
    void takeLength(const QByteArray &value);
    void takeChunkSize(const QByteArray &line);
    void endHead();

    void fail() { current = State::Broken; }

    /// Takes what it may of the bytes from `at` on as body.
    [[nodiscard]] QByteArray takeBody(const QByteArray &bytes, qsizetype &at);

    qint64 headLeft;
    State current = State::Head;
    Part part = Part::StatusLine;
    QByteArray line;
    int statusCode = 0;
    std::optional<qint64> told;
    bool chunked = false;
    QByteArray locationValue;
    qint64 left = 0; ///< of the body, or of the chunk
};

} // namespace quorvane::platform
