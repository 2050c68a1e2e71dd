#pragma once

#include "platform/SystemLog.h"

#include <QStringList>

#include <mutex>

namespace quorvane::fakes {

/// Records every line that the log wrote. Any thread.
class RecordingLogSink final : public platform::LogSink {
public:
    void write(const QString &line) override {
        const std::lock_guard lock(m_mutex);
        m_written.append(line);
    }

    [[nodiscard]] QStringList lines() const {
        const std::lock_guard lock(m_mutex);
        return m_written;
    }

    void clear() {
        const std::lock_guard lock(m_mutex);
        m_written.clear();
    }

private:
    mutable std::mutex m_mutex;
    QStringList m_written;
};

} // namespace quorvane::fakes
