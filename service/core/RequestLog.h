#pragma once

#include "AnnouncedRequests.h"
#include "LogFile.h"

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
    std::uint64_t count = 1; ///< how many of the same kind the line reports
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

    /// `announced` is null unless the run is strict. Neither it nor `limits` is owned.
    RequestLog(const LogLimits &limits, AnnouncedRequests *announced, WallClock clock,
               LogFile::Clock budgetClock = &std::chrono::steady_clock::now);

    /// Opens the file for appending. A new file can be read by its owner only.
    Result<> open(const std::string &path);

    /// Opens the path again: another program has renamed the file.
    void reopen() { m_file.reopen(); }

    void record(const RequestLogEntry &entry) override;

private:
    AnnouncedRequests *m_announced;
    WallClock m_clock;
    LogFile m_file;
};

/// The line without its line feed. Bytes outside printable ASCII are written as \u00XX: a JSON text of the
/// line, encoded as Latin-1, is byte for byte what was received, unless the line would be longer than a line
/// may be: then texts are cut, and the line contains "cut":true and the target's length.
[[nodiscard]] std::string logLine(const RequestLogEntry &entry, std::chrono::system_clock::time_point time,
                                  bool unexpected);

/// UTC with milliseconds, as in 2024-01-31T23:59:59.123Z.
[[nodiscard]] std::string isoTime(std::chrono::system_clock::time_point time);

/// A JSON text with its quotation marks, by the rule of logLine(). Its length without them is at most
/// `maximum`; what does not fit is left out.
[[nodiscard]] std::string jsonText(std::string_view bytes, std::size_t maximum = std::string::npos);

} // namespace quorvane::service
