#pragma once

#include <QSet>
#include <QString>

namespace quorvane {

/// The tunnel's view of the machine's processes. Any thread.
class RunningProcesses {
public:
    /// The processes that have a name, by their process ids.
    struct Found {
        QSet<qint64> ids;
        /// False when other users' processes cannot be seen, or the processes cannot be listed.
        bool seesAll = false;
    };

    virtual ~RunningProcesses() = default;
    /// The processes with exactly this short name that run now.
    [[nodiscard]] virtual Found find(const QString &name) = 0;

    /// Whether a process with exactly this short name runs now. False when the processes cannot be listed.
    [[nodiscard]] bool isRunning(const QString &name) { return !find(name).ids.isEmpty(); }
};

} // namespace quorvane
