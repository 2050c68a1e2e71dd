#pragma once

#include <QString>

namespace quorvane {

/// The tunnel's view of the machine's processes.
class RunningProcesses {
public:
    virtual ~RunningProcesses() = default;
    /// Whether a process with exactly this short name runs now. False when the processes cannot be listed.
    [[nodiscard]] virtual bool isRunning(const QString &name) = 0;
};

} // namespace quorvane
