#pragma once

#include "AnnouncedRequests.h"
#include "common/FileDescriptor.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace quorvane::service {

/// One line of the request log.
struct RequestLogEntry {
    std::string event = "request"; ///< request, bad_request, handshake_failed, timeout or refused
    std::string peer;
    std::string host;
    std::string method;
    std::string target;
    std::string detail; ///< the error, for the other events
    int status = 0;     ///< 0 when no answer was sent
    std::size_t bytes = 0;
};

/// Receives a report of each request from the listener.
class RequestRecorder {
public:
    virtual ~RequestRecorder() = default;
    /// Called once per request, before the first byte of its answer is sent, and once per connection that
    /// ended without a well-formed request.
    virtual void record(const RequestLogEntry &entry) = 0;
};

/// Writes the JSON lines of the request log, each in one write: a reader that has received an answer finds
/// its whole line.
class RequestLog : public RequestRecorder {
public:
    using WallClock = std::function<std::chrono::system_clock::time_point()>;

    /// `announced` is null unless the run is strict.
    RequestLog(AnnouncedRequests *announced, WallClock clock);

    /// Opens the file for appending. A new file can be read by its owner only.
    Result<> open(const std::string &path);
    void record(const RequestLogEntry &entry) override;

private:
    AnnouncedRequests *m_announced;
    WallClock m_clock;
    FileDescriptor m_file;
};

/// The line without its line feed. Bytes outside printable ASCII are written as \u00XX: a JSON text of the
/// line, encoded as Latin-1, is byte for byte what was received.
[[nodiscard]] std::string logLine(const RequestLogEntry &entry, std::chrono::system_clock::time_point time,
                                  bool unexpected);

/// UTC with milliseconds, as in 2024-01-31T23:59:59.123Z.
[[nodiscard]] std::string isoTime(std::chrono::system_clock::time_point time);

/// A JSON text with its quotation marks, by the rule of logLine().
[[nodiscard]] std::string jsonText(std::string_view bytes);

} // namespace quorvane::service
