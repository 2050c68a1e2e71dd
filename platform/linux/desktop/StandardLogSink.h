#pragma once

#include "platform/SystemLog.h"

namespace quorvane::platform {

/// Writes to standard error and to the system log. Any thread.
class StandardLogSink final : public LogSink {
public:
    StandardLogSink();
    void write(const QString &line) override;
};

} // namespace quorvane::platform
