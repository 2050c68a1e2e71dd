#pragma once

#include "platform/SystemLog.h"

#include <QStringList>

#include <mutex>

namespace quorvane::fakes {

/// Keeps every line that left the log. Any thread.
class RecordingLogSink final : public platform::LogSink {
public:
    void write(const QString &line) override {
        const std::lock_guard lock(mutex);
        written.append(line);
    }

    [[nodiscard]] QStringList lines() const {
        const std::lock_guard lock(mutex);
        return written;
    }

    void clear() {
        const std::lock_guard lock(mutex);
        written.clear();
    }

private:
    mutable std::mutex mutex;
    QStringList written;
};

} // namespace quorvane::fakes
