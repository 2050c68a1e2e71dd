#include "RequestLog.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace quorvane::service {

namespace {

/// Lengths of texts in a line, in their JSON form. The other parts of a line need less than what is left.
constexpr std::size_t maximumText = 160;
constexpr std::size_t maximumTarget = 1200;

} // namespace

std::string jsonText(std::string_view bytes, std::size_t maximum) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text = "\"";
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        std::string piece(1, character);
        if (character == '"' || character == '\\') {
            piece.insert(0, 1, '\\');
        } else if (byte < 0x20 || byte > 0x7e) {
            piece = "\\u00";
            piece += digits[byte >> 4];
            piece += digits[byte & 15];
        }
        if (text.size() - 1 + piece.size() > maximum) {
            break;
        }
        text += piece;
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
    const std::string host = jsonText(entry.host, maximumText);
    const std::string method = jsonText(entry.method, maximumText);
    const std::string target = jsonText(entry.target, maximumTarget);
    std::string line = "{\"time\":\"" + isoTime(time) + "\",\"event\":" + jsonText(entry.event) +
                       ",\"peer\":" + jsonText(entry.peer) + ",\"host\":" + host + ",\"method\":" + method +
                       ",\"target\":" + target + ",\"status\":" + std::to_string(entry.status) +
                       ",\"bytes\":" + std::to_string(entry.bytes);
    if (host != jsonText(entry.host) || method != jsonText(entry.method) ||
        target != jsonText(entry.target)) {
        line += ",\"cut\":true,\"target_bytes\":" + std::to_string(entry.target.size());
    }
    if (!entry.detail.empty()) {
        line += ",\"detail\":" + jsonText(entry.detail, maximumText);
    }
    if (entry.count != 1) {
        line += ",\"count\":" + std::to_string(entry.count);
    }
    if (unexpected) {
        line += ",\"unexpected\":true";
    }
    return line + '}';
}

RequestLog::RequestLog(const LogLimits &limits, AnnouncedRequests *announced, WallClock clock,
                       LogFile::Clock budgetClock)
    : m_announced(announced), m_clock(std::move(clock)), m_file(limits, std::move(budgetClock)) {}

Result<> RequestLog::open(const std::string &path) {
    auto opened = m_file.open(path);
    return opened ? std::move(opened) : Failure{"request_log: " + opened.error()};
}

void RequestLog::record(const RequestLogEntry &entry) {
    const bool isRequest = entry.event == "request" || entry.event == "bad_request";
    const bool unexpected = isRequest && m_announced != nullptr && !m_announced->consume(entry.target);
    m_file.write(logLine(entry, m_clock(), unexpected) + '\n', [this](std::uint64_t count) {
        RequestLogEntry leftOut;
        leftOut.event = "left_out";
        leftOut.count = count;
        leftOut.detail = "lines beyond log.bytes_per_second";
        return logLine(leftOut, m_clock(), false) + '\n';
    });
}

} // namespace quorvane::service
