#pragma once

#include "common/FileDescriptor.h"

#include <QByteArray>
#include <QString>

namespace quorvane::platform {

/// A file on its way to a name: written privately beside it (mode 600 from the first byte), then moved
/// onto the name whole. A link under that name is replaced, not followed. Going away before commit()
/// leaves nothing behind. Every operation gives 0 or an errno value.
class PendingFile {
public:
    PendingFile() = default;
    ~PendingFile();
    PendingFile(const PendingFile &) = delete;
    PendingFile &operator=(const PendingFile &) = delete;

    [[nodiscard]] int open(const QString &path);
    [[nodiscard]] int write(const QByteArray &bytes) const;
    /// Durable: on the disk before it takes the name, so that a power cut leaves the old or the new file.
    [[nodiscard]] int commit(bool durable);

private:
    FileDescriptor m_folder;
    FileDescriptor m_file;
    QByteArray m_name;
    QByteArray m_temporary;
    /// Whether the temporary name is in the folder.
    bool m_named = false;
};

/// Reads a regular file of at most limit bytes without following a link in its last component.
/// 0, or an errno value (EFBIG when it is larger, EINVAL when it is no regular file).
[[nodiscard]] int readPlainFile(const QString &path, qint64 limit, QByteArray &bytes);

/// Makes the folder and what is missing above it, each open to its owner only. 0, or an errno value.
[[nodiscard]] int makePrivateFolders(const QString &path);

/// Writes all of the bytes to the descriptor. 0, or an errno value.
[[nodiscard]] int writeAll(int descriptor, const char *bytes, qsizetype size);

} // namespace quorvane::platform
