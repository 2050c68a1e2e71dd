#include "LogFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

/// A burst may be as long as this many seconds of the usual rate.
constexpr double burstSeconds = 4;
constexpr double reportsPerSecond = 1.0 / 60;

} // namespace

LogFile::LogFile(const LogLimits &limits, Clock clock)
    : m_limits(limits), m_clock(std::move(clock)),
      m_budget(limits.bytesPerSecond, burstSeconds * limits.bytesPerSecond), m_reports(reportsPerSecond, 1) {}

Result<> LogFile::open(const std::string &path) {
    m_path = path;
    return openFile();
}

Result<> LogFile::openFile() {
    FileDescriptor file(::open(m_path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
    if (!file.isOpen()) {
        return Failure{"cannot write " + m_path + ": " + std::strerror(errno)};
    }

    struct stat state {};

    m_size = fstat(file.get(), &state) == 0 ? static_cast<std::uint64_t>(state.st_size) : 0;
    m_file = std::move(file);
    return {};
}

void LogFile::reopen() {
    if (const auto opened = openFile(); !opened) {
        reportError(opened.error());
    }
}

void LogFile::write(std::string_view line, const LeftOutLine &leftOutLine) {
    std::string text = m_leftOut > 0 ? leftOutLine(m_leftOut) : std::string();
    text += line;
    if (m_limits.bytesPerSecond > 0 && !m_budget.take(static_cast<double>(text.size()), m_clock())) {
        ++m_leftOut;
        return;
    }
    m_leftOut = 0;
    if (m_size > 0 && m_size + text.size() > m_limits.fileBytes) {
        turnOver();
    }
    // A full disk must not stop the service.
    if (::write(m_file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        reportError("cannot write " + m_path + ": " + std::strerror(errno));
    }
    m_size += text.size();
}

void LogFile::turnOver() {
    const auto copy = [this](unsigned number) {
        return m_path + '.' + std::to_string(number);
    };
    for (unsigned number = m_limits.copies; number > 1; --number) {
        std::rename(copy(number - 1).c_str(), copy(number).c_str());
    }
    if (m_limits.copies > 0 && std::rename(m_path.c_str(), copy(1).c_str()) == 0) {
        reopen();
    } else if (ftruncate(m_file.get(), 0) == 0) {
        // No copy is kept, or none can be made: the size is limited in any case.
        m_size = 0;
    }
}

void LogFile::reportError(const std::string &what) {
    if (m_reports.take(1, m_clock())) {
        std::fprintf(stderr, "quorvane-service: a log is incomplete: %s\n", what.c_str());
    }
}

} // namespace quorvane::service
