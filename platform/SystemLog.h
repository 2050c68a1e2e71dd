#pragma once

#include <QString>
#include <functional>
#include <mutex>

namespace quorvane::platform {

class PreferencesStore;

/// Receives the finished diagnostic lines.
class LogSink {
public:
    virtual ~LogSink() = default;
    /// Writes one line (no line feed inside or at the end). Any thread.
    virtual void write(const QString &line) = 0;
};

/// The program's diagnostics. Every line passes through the mask before it leaves the process, so no caller
/// can omit it. Line feeds and control characters inside a line are written as escapes: one call writes one
/// line. Safe from any thread.
class SystemLog {
public:
    using Mask = std::function<QString(const QString &)>;

    /// Neither argument is owned; both must outlive the log.
    SystemLog(LogSink &sink, const PreferencesStore &preferences);

    void setMask(Mask mask);
    /// Whether diagnostics are on: while the preference "showLogs" is 0 or absent. The meaning is the reverse
    /// of what the key's name suggests, throughout the program.
    [[nodiscard]] bool gateOpen() const;
    /// Writes the line while the gate is open.
    void write(const QString &line);
    /// Writes the line even while the gate is closed.
    void writeAlways(const QString &line);

private:
    LogSink &m_sink;
    const PreferencesStore &m_preferences;
    mutable std::mutex m_mutex;
    Mask m_mask;
};

} // namespace quorvane::platform
