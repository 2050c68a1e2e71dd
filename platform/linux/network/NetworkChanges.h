#pragma once

#include "common/FileDescriptor.h"

namespace quorvane::platform {

/// The kernel's messages about changes of the network: links, addresses and routes. One thread at a time.
class NetworkChanges {
public:
    /// False when the kernel cannot be asked.
    [[nodiscard]] bool open();

    void close() { m_file.reset(); }

    /// Readable when something has changed.
    [[nodiscard]] int descriptor() const { return m_file.get(); }

    /// Discards the waiting messages: their content does not matter, since the tables are read again.
    void clear() const;

private:
    FileDescriptor m_file;
};

} // namespace quorvane::platform
