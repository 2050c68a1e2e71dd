#pragma once

#include "Config.h"
#include "TokenBucket.h"
#include "common/FileDescriptor.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace quorvane::service {

/// A file of lines with an end: at its maximum size it becomes FILE.1, FILE.1 becomes FILE.2 and so on, and
/// the oldest copy is removed. The rate of writing is limited, too; what exceeds it is left out and counted.
/// Use it from one thread only.
class LogFile {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// A line about so many lines that were left out, with its line feed.
    using LeftOutLine = std::function<std::string(std::uint64_t count)>;

    /// A line is at most so long, including its line feed.
    static constexpr std::size_t maximumLine = 2048;

    /// `limits` is not owned.
    LogFile(const LogLimits &limits, Clock clock);

    /// Opens the file for appending. A new file can be read by its owner only.
    Result<> open(const std::string &path);
    /// Opens the path again: another program has renamed the file.
    void reopen();
    /// Appends a line, which includes its line feed, in one write. When lines before it were left out,
    /// `leftOutLine` makes a line about them that precedes it. The limit of the rate can leave the line out.
    /// Errors of the system are reported on standard error, at most once a minute.
    void write(std::string_view line, const LeftOutLine &leftOutLine);

private:
    Result<> openFile();
    void turnOver();
    void reportError(const std::string &what);

    const LogLimits &m_limits;
    Clock m_clock;
    TokenBucket m_budget;
    TokenBucket m_reports;
    std::string m_path;
    FileDescriptor m_file;
    std::uint64_t m_size = 0;
    std::uint64_t m_leftOut = 0;
};

} // namespace quorvane::service
