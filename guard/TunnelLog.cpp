#include "TunnelLog.h"

#include "common/OpenVpnMarkers.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <fcntl.h>

namespace quorvane::guard {

namespace {

constexpr std::size_t Reserved = 64 * 1024;
/// A session's log stays far below. What would be more is dropped, so that no far side can fill the disk.
constexpr std::size_t LargestLog = 1024 * 1024;
constexpr std::size_t LongestLine = 2048;

constexpr std::array Failures{authFailedMarker, keyNegotiationFailedMarker, hostNotResolvedMarker,
                              credentialsFileMarker, fatalErrorMarker};

constexpr std::string_view TimePattern = "0000-00-00 00:00:00 ";

bool beginsWithTime(std::string_view line) {
    return line.size() >= TimePattern.size() &&
           std::ranges::equal(line.substr(0, TimePattern.size()), TimePattern, [](char is, char wanted) {
               return wanted == '0' ? is >= '0' && is <= '9' : is == wanted;
           });
}

/// What stands behind the time, which from level 4 on ends in microseconds.
std::string_view withoutTime(std::string_view line) {
    constexpr std::string_view microseconds = "us=";
    line.remove_prefix(TimePattern.size());
    if (line.starts_with(microseconds)) {
        const auto end = line.find_first_not_of("0123456789", microseconds.size());
        if (end != std::string_view::npos && end > microseconds.size() && line[end] == ' ') {
            line.remove_prefix(end + 1);
        }
    }
    return line;
}

/// OpenVPN's own sentence stands alone behind the time; anywhere else it is part of what somebody else sent.
bool saysCompleted(std::string_view line) {
    return beginsWithTime(line) && withoutTime(line).starts_with(completedMarker);
}

void spoilCompleted(std::string &line) {
    for (auto at = line.find(completedMarker); at != std::string::npos; at = line.find(completedMarker)) {
        std::replace(line.begin() + static_cast<std::ptrdiff_t>(at),
                     line.begin() + static_cast<std::ptrdiff_t>(at + completedMarker.size()), ' ', '_');
    }
}

std::string now() {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    std::array<char, TimePattern.size() + 1> text{};
    if (localtime_r(&seconds, &local) == nullptr ||
        std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S ", &local) == 0) {
        return std::string(TimePattern);
    }
    return text.data();
}

} // namespace

TunnelLog::TunnelLog(FileDescriptor file) : m_file(std::move(file)) {
    // A file system that cannot reserve is taken at its word when the first line is written.
    m_hasRoom = fallocate(m_file.get(), FALLOC_FL_KEEP_SIZE, 0, Reserved) == 0 || errno == EOPNOTSUPP;
}

void TunnelLog::add(std::string_view output) {
    while (!output.empty()) {
        const auto end = output.find('\n');
        const auto piece = output.substr(0, end);
        m_unfinished.append(piece.substr(0, LongestLine - std::min(LongestLine, m_unfinished.size())));
        if (end == std::string_view::npos) {
            return;
        }
        output.remove_prefix(end + 1);
        if (m_written + m_unfinished.size() < LargestLog) {
            addLine(std::exchange(m_unfinished, {}));
        }
        m_unfinished.clear();
    }
}

void TunnelLog::addLine(std::string line) {
    std::ranges::replace_if(
        line, [](char character) { return character != '\t' && (character < ' ' || character > '~'); }, '?');
    if (!m_isGivenUp && saysCompleted(line)) {
        m_isUp = true;
    } else {
        spoilCompleted(line);
    }
    m_isOver = m_isOver || std::ranges::any_of(Failures, [&line](std::string_view failure) {
                   return line.find(failure) != std::string::npos;
               });
    write(line + '\n');
}

void TunnelLog::note(std::string_view line) {
    addLine(now() + std::string(line));
}

void TunnelLog::finish(std::string_view reason) {
    if (!m_unfinished.empty()) {
        addLine(std::exchange(m_unfinished, {}));
    }
    note(reason);
    if (!m_isUp && !m_isOver) {
        note(fatalErrorMarker);
    }
}

void TunnelLog::write(std::string_view text) {
    m_written += text.size();
    while (!text.empty()) {
        const ssize_t count = ::write(m_file.get(), text.data(), text.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            m_isWhole = false;
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace quorvane::guard
