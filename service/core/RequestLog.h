#pragma once

#include "AnnouncedRequests.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace quorvane::service {

/// One line of the request log.
struct Traffic {
    std::string event = "request"; ///< request, bad_request, handshake_failed, timeout or refused
    std::string peer;
    std::string host;
    std::string method;
    std::string target;
    std::string detail; ///< what went wrong, for the other events
    int status = 0;     ///< 0 when nothing was answered
    std::size_t bytes = 0;
};

/// Where the listener reports what came in.
class TrafficSink {
public:
    virtual ~TrafficSink() = default;
    /// Called once per request, just before the first byte of its answer is sent, and once per
    /// connection that ended without a well-formed request.
    virtual void record(const Traffic &traffic) = 0;
};

/// Writes the JSON lines of the request log, each in one write, so that a reader never sees half a line
/// after the answer that belongs to it.
class RequestLog : public TrafficSink {
public:
    using WallClock = std::function<std::chrono::system_clock::time_point()>;

    /// `announced` is null unless the run is strict.
    RequestLog(AnnouncedRequests *announced, WallClock clock);
    ~RequestLog() override;
    RequestLog(const RequestLog &) = delete;
    RequestLog &operator=(const RequestLog &) = delete;

    /// Opens the file for appending, creating it readable for its owner alone.
    Result<> open(const std::string &path);
    void record(const Traffic &traffic) override;

private:
    AnnouncedRequests *m_announced;
    WallClock m_clock;
    int m_file = -1;
};

/// The line without its line feed. Bytes outside printable ASCII are written as \u00XX, so that the
/// text read back, encoded as Latin-1, is byte for byte what came in.
std::string logLine(const Traffic &traffic, std::chrono::system_clock::time_point time, bool unexpected);

/// UTC with milliseconds, as in 2024-01-31T23:59:59.123Z.
std::string isoTime(std::chrono::system_clock::time_point time);

/// A JSON text with its quotation marks, by the rule of logLine.
std::string jsonText(std::string_view bytes);

} // namespace quorvane::service
