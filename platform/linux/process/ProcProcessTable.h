#pragma once

#include "platform/ProcessTable.h"

#include <QByteArray>

namespace quorvane::platform {

/// The process table as /proc shows it, in the order of the kernel. A process that is ending, or has ended
/// and waits for its parent, is omitted: it does nothing any more and cannot be killed. Any thread.
class ProcProcessTable final : public ProcessTable {
public:
    explicit ProcProcessTable(const QByteArray &folder = "/proc");

    [[nodiscard]] int query(ProcessRecord *rows, std::size_t &count) const override;
    /// Looks whether the first process, which belongs to root and always runs, can be seen: mounted with
    /// hidepid=1 or 2, /proc hides it from all but root and the group of its option "gid".
    [[nodiscard]] bool showsOtherUsers() const override;

private:
    const QByteArray m_folder;
};

} // namespace quorvane::platform
