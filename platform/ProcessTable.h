#pragma once

#include <array>
#include <cstddef>
#include <sys/types.h>

namespace quorvane::platform {

/// One row of the kernel's process table.
struct ProcessRecord {
    pid_t pid = 0;
    /// Short command name, NUL-terminated; the kernel keeps 15 characters.
    std::array<char, 16> name{};
};

/// The kernel's process table, read in two steps: first the size, then the rows.
class ProcessTable {
public:
    virtual ~ProcessTable() = default;

    /// If rows is null, sets count to the number of rows that a buffer needs now. Otherwise writes at most
    /// count rows and sets count to the number written. Returns 0 or an errno value; ENOMEM when the table
    /// has grown beyond count.
    [[nodiscard]] virtual int query(ProcessRecord *rows, std::size_t &count) const = 0;

    /// False where the system hides the processes of other users, which are then not in the table.
    [[nodiscard]] virtual bool showsOtherUsers() const = 0;
};

} // namespace quorvane::platform
