#include "RequestLog.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace quorvane::service {

std::string jsonText(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text = "\"";
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            text += '\\';
            text += character;
        } else if (byte < 0x20 || byte > 0x7e) {
            text += "\\u00";
            text += digits[byte >> 4];
            text += digits[byte & 15];
        } else {
            text += character;
        }
    }
    return text + '"';
}

std::string isoTime(std::chrono::system_clock::time_point time) {
    using std::chrono::milliseconds;
    const auto since = std::chrono::floor<milliseconds>(time.time_since_epoch()).count();
    const std::time_t seconds = since / 1000;
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 64> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ",
                                     parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                                     parts.tm_min, parts.tm_sec, static_cast<int>(since % 1000));
    return {text.data(), static_cast<std::size_t>(length)};
}

std::string logLine(const RequestLogEntry &entry, std::chrono::system_clock::time_point time,
                    bool unexpected) {
    std::string line = "{\"time\":\"" + isoTime(time) + "\",\"event\":" + jsonText(entry.event) +
                       ",\"peer\":" + jsonText(entry.peer) + ",\"host\":" + jsonText(entry.host) +
                       ",\"method\":" + jsonText(entry.method) + ",\"target\":" + jsonText(entry.target) +
                       ",\"status\":" + std::to_string(entry.status) +
                       ",\"bytes\":" + std::to_string(entry.bytes);
    if (!entry.detail.empty()) {
        line += ",\"detail\":" + jsonText(entry.detail);
    }
    if (unexpected) {
        line += ",\"unexpected\":true";
    }
    return line + '}';
}

RequestLog::RequestLog(AnnouncedRequests *announced, WallClock clock)
    : m_announced(announced), m_clock(std::move(clock)) {}

Result<> RequestLog::open(const std::string &path) {
    m_file.reset(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
    if (!m_file.isOpen()) {
        return Failure{"request_log: cannot write " + path + ": " + std::strerror(errno)};
    }
    return {};
}

void RequestLog::record(const RequestLogEntry &entry) {
    const bool isRequest = entry.event == "request" || entry.event == "bad_request";
    const bool unexpected = isRequest && m_announced != nullptr && !m_announced->consume(entry.target);
    const std::string line = logLine(entry, m_clock(), unexpected) + '\n';
    // A full disk must not stop the service; each lost line is reported on standard error.
    if (write(m_file.get(), line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        std::fprintf(stderr, "quorvane-service: the request log cannot be written: %s\n",
                     std::strerror(errno));
    }
}

} // namespace quorvane::service
