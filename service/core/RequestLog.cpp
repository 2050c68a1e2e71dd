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
    constexpr std::string_view Digits = "0123456789abcdef";
    std::string text = "\"";
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            text += '\\';
            text += character;
        } else if (byte < 0x20 || byte > 0x7e) {
            text += "\\u00";
            text += Digits[byte >> 4];
            text += Digits[byte & 15];
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

std::string logLine(const Traffic &traffic, std::chrono::system_clock::time_point time, bool unexpected) {
    std::string line = "{\"time\":\"" + isoTime(time) + "\",\"event\":" + jsonText(traffic.event) +
                       ",\"peer\":" + jsonText(traffic.peer) + ",\"host\":" + jsonText(traffic.host) +
                       ",\"method\":" + jsonText(traffic.method) + ",\"target\":" + jsonText(traffic.target) +
                       ",\"status\":" + std::to_string(traffic.status) +
                       ",\"bytes\":" + std::to_string(traffic.bytes);
    if (!traffic.detail.empty()) {
        line += ",\"detail\":" + jsonText(traffic.detail);
    }
    if (unexpected) {
        line += ",\"unexpected\":true";
    }
    return line + '}';
}

RequestLog::RequestLog(AnnouncedRequests *announced, WallClock clock)
    : m_announced(announced), m_clock(std::move(clock)) {}

RequestLog::~RequestLog() {
    if (m_file >= 0) {
        close(m_file);
    }
}

Result<> RequestLog::open(const std::string &path) {
    m_file = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (m_file < 0) {
        return Failure{"request_log: cannot write " + path + ": " + std::strerror(errno)};
    }
    return {};
}

void RequestLog::record(const Traffic &traffic) {
    const bool isRequest = traffic.event == "request" || traffic.event == "bad_request";
    const bool unexpected = isRequest && m_announced != nullptr && !m_announced->take(traffic.target);
    const std::string line = logLine(traffic, m_clock(), unexpected) + '\n';
    // A full disk must not stop the service; the loss is told once per line on standard error.
    if (write(m_file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        std::fprintf(stderr, "quorvane-service: the request log cannot be written: %s\n",
                     std::strerror(errno));
    }
}

} // namespace quorvane::service
