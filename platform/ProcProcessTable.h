#pragma once

#include "ProcessTable.h"

#include <QByteArray>

namespace platform {

/// The process table as /proc shows it, in the order of the kernel. A process that ends while it is read
/// is left out. Any thread.
class ProcProcessTable final : public ProcessTable {
public:
    explicit ProcProcessTable(const QByteArray &folder = "/proc");

    [[nodiscard]] int query(ProcessRecord *rows, std::size_t &count) const override;

private:
    const QByteArray folder;
};

} // namespace platform
