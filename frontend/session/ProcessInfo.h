#pragma once

#include "frontend/tunnel/RunningProcesses.h"

#include <QStringList>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace quorvane {

namespace platform {
struct ProcessRecord;
}

/// A snapshot of the machine's processes by their short names. Any thread, one object per thread; find()
/// makes a snapshot of its own and may be called from any thread at any time.
class ProcessInfo final : public RunningProcesses {
public:
    /// Fills the list (which must be empty) with a fresh array of process records. 0 on success, else an
    /// errno value and no list. Retries for as long as the table grows between the two queries.
    static int getBSDProcessList(std::unique_ptr<platform::ProcessRecord[]> *procList,
                                 std::size_t *procCount);

    void obtainFreshProcessList();
    /// Exact, case-sensitive equality with a short name of the snapshot. False without a snapshot.
    [[nodiscard]] bool findProcessWithName(const QString &name) const;

    /// Where the system hides the processes of other users, "openvpn" also runs while a process holds a lock
    /// on the log of this user's own tunnel; its id is then 0.
    [[nodiscard]] Found find(const QString &name) override;

    /// Number of entries of the last snapshot; -1 without a snapshot.
    [[nodiscard]] std::int32_t numberOfProcesses() const { return m_count; }

    void setNumberOfProcesses(std::int32_t count) { m_count = count; }

    /// Short names in the kernel's order.
    [[nodiscard]] const QStringList &processList() const { return m_names; }

private:
    std::int32_t m_count = -1;
    QStringList m_names;
};

} // namespace quorvane
