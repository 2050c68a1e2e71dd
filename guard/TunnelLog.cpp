#include "TunnelLog.h"

#include "common/OpenVpnMarkers.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <fcntl.h>

namespace quorvane::guard {

namespace {

constexpr std::size_t reservedSize = 64 * 1024;
/// The log of a usual session is much smaller. Further output is dropped, so that no server can fill the
/// disk.
constexpr std::size_t maximumLogSize = 1024 * 1024;
constexpr std::size_t maximumLineLength = 2048;

constexpr std::array failureMarkers{authFailedMarker, keyNegotiationFailedMarker, hostNotResolvedMarker,
                                    credentialsFileMarker, fatalErrorMarker};

constexpr std::string_view timePattern = "0000-00-00 00:00:00 ";

bool beginsWithTime(std::string_view line) {
    return line.size() >= timePattern.size() &&
           std::ranges::equal(
               line.substr(0, timePattern.size()), timePattern, [](char actual, char expected) {
                   return expected == '0' ? actual >= '0' && actual <= '9' : actual == expected;
               });
}

/// The line after its time, which from log level 4 on ends in microseconds.
std::string_view withoutTime(std::string_view line) {
    constexpr std::string_view microseconds = "us=";
    line.remove_prefix(timePattern.size());
    if (line.starts_with(microseconds)) {
        const auto end = line.find_first_not_of("0123456789", microseconds.size());
        if (end != std::string_view::npos && end > microseconds.size() && line[end] == ' ') {
            line.remove_prefix(end + 1);
        }
    }
    return line;
}

/// OpenVPN's own sentence follows the time directly. Anywhere else it is part of a text that came from
/// outside.
bool reportsCompletion(std::string_view line) {
    return beginsWithTime(line) && withoutTime(line).starts_with(completedMarker);
}

/// Makes the sentence unrecognisable to the application.
void maskCompletion(std::string &line) {
    for (auto at = line.find(completedMarker); at != std::string::npos; at = line.find(completedMarker)) {
        std::replace(line.begin() + static_cast<std::ptrdiff_t>(at),
                     line.begin() + static_cast<std::ptrdiff_t>(at + completedMarker.size()), ' ', '_');
    }
}

/// OpenVPN logs each pushed option that a filter accepts, also the token by which it is logged in again.
void maskToken(std::string &line) {
    constexpr std::string_view name = "'auth-token ";
    if (const auto at = line.find(name); at != std::string::npos) {
        line.erase(at + name.size()).append("*****'");
    }
}

std::string now() {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    std::array<char, timePattern.size() + 1> text{};
    if (localtime_r(&seconds, &local) == nullptr ||
        std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S ", &local) == 0) {
        return std::string(timePattern);
    }
    return text.data();
}

} // namespace

TunnelLog::TunnelLog(FileDescriptor file) : m_file(std::move(file)) {
    // Where the file system cannot reserve space, a full disk shows when the first line is written.
    m_hasSpace = fallocate(m_file.get(), FALLOC_FL_KEEP_SIZE, 0, reservedSize) == 0 || errno == EOPNOTSUPP;
}

void TunnelLog::add(std::string_view output) {
    while (!output.empty()) {
        const auto end = output.find('\n');
        const auto part = output.substr(0, end);
        m_incompleteLine.append(
            part.substr(0, maximumLineLength - std::min(maximumLineLength, m_incompleteLine.size())));
        if (end == std::string_view::npos) {
            return;
        }
        output.remove_prefix(end + 1);
        if (m_reader) {
            m_reader(m_incompleteLine);
        }
        if (m_size + m_incompleteLine.size() < maximumLogSize) {
            addLine(std::exchange(m_incompleteLine, {}));
        }
        m_incompleteLine.clear();
    }
}

void TunnelLog::addLine(std::string line) {
    std::ranges::replace_if(
        line, [](char character) { return character != '\t' && (character < ' ' || character > '~'); }, '?');
    maskToken(line);
    if (!m_hasGivenUp && reportsCompletion(line)) {
        addReport(std::move(line));
        return;
    }
    maskCompletion(line);
    m_isOver = m_isOver || std::ranges::any_of(failureMarkers, [&line](std::string_view marker) {
                   return line.find(marker) != std::string::npos;
               });
    write(line + '\n');
}

void TunnelLog::addReport(std::string line) {
    const auto confirmed = m_confirmation ? m_confirmation() : Result<>();
    if (confirmed) {
        m_isUp = true;
        write(line + '\n');
        return;
    }
    m_isRefused = true;
    giveUp();
    addLine(std::move(line));
    addOwnLine(confirmed.error());
}

void TunnelLog::addOwnLine(std::string_view line) {
    addLine(now() + std::string(line));
}

void TunnelLog::finish(std::string_view reason) {
    if (!m_incompleteLine.empty()) {
        addLine(std::exchange(m_incompleteLine, {}));
    }
    addOwnLine(reason);
    if (!m_isUp && !m_isOver) {
        addOwnLine(fatalErrorMarker);
    }
}

void TunnelLog::write(std::string_view text) {
    m_size += text.size();
    while (!text.empty()) {
        const ssize_t count = ::write(m_file.get(), text.data(), text.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            m_isComplete = false;
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

std::optional<Network> serverIn(std::string_view line) {
    // "UDPv4 link remote: [AF_INET]192.0.2.1:1194", directly after the time.
    constexpr std::string_view middle = " link remote: [AF_INET";
    if (!beginsWithTime(line)) {
        return std::nullopt;
    }
    line = withoutTime(line);
    const auto blank = line.find(' ');
    if (blank == std::string_view::npos || !line.substr(blank).starts_with(middle)) {
        return std::nullopt;
    }
    line.remove_prefix(blank + middle.size());
    const auto begin = line.find(']');
    const auto end = line.rfind(':');
    if (begin == std::string_view::npos || end == std::string_view::npos || end < begin) {
        return std::nullopt;
    }
    return hostOf(std::string(line.substr(begin + 1, end - begin - 1)));
}

} // namespace quorvane::guard
