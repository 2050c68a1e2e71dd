#pragma once

#include "common/FileDescriptor.h"

#include <QByteArray>
#include <QString>

namespace quorvane::platform {

/// A file that is not complete yet: written privately beside its destination (mode 600 from the first byte),
/// then moved to the destination as a whole. A link under that name is replaced, not followed. Destruction
/// before commit() leaves nothing behind. Every operation returns 0 or an errno value.
class PendingFile {
public:
    PendingFile() = default;
    ~PendingFile();
    PendingFile(const PendingFile &) = delete;
    PendingFile &operator=(const PendingFile &) = delete;

    [[nodiscard]] int open(const QString &path);
    [[nodiscard]] int write(const QByteArray &bytes) const;
    /// Writes everything that the other file contains, which may have got no name.
    [[nodiscard]] int copy(const PendingFile &other) const;
    /// If durable, the file is on the disk before it gets its name, so that after a power cut there is the
    /// old or the new file.
    [[nodiscard]] int commit(bool durable);

private:
    FileDescriptor m_folder;
    FileDescriptor m_file;
    QByteArray m_name;
    QByteArray m_temporary;
    /// Whether the temporary name is in the folder.
    bool m_named = false;
};

/// Creates the folder and missing folders above it, each open to its owner only. Returns 0 or an errno value.
[[nodiscard]] int makePrivateFolders(const QString &path);

/// Writes all of the bytes to the descriptor. Returns 0 or an errno value.
[[nodiscard]] int writeAll(int descriptor, const char *bytes, qsizetype size);

} // namespace quorvane::platform
