#pragma once

#include "common/FileDescriptor.h"

#include <QByteArray>
#include <QString>

namespace platform {

using quorvane::FileDescriptor;

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
    FileDescriptor folder;
    FileDescriptor file;
    QByteArray name;
    QByteArray temporary;
    /// Whether the temporary name is in the folder.
    bool named = false;
};

/// Replaces the file with the bytes, whole or not at all, through a durable PendingFile. 0, or an errno
/// value; the old file is then untouched.
[[nodiscard]] int replaceFile(const QString &path, const QByteArray &bytes);

/// Reads a regular file of at most limit bytes without following a link in its last component.
/// 0, or an errno value (EFBIG when it is larger, EINVAL when it is no regular file).
[[nodiscard]] int readPlainFile(const QString &path, qint64 limit, QByteArray &bytes);

/// Makes the folder and what is missing above it, each open to its owner only. 0, or an errno value.
[[nodiscard]] int makePrivateFolders(const QString &path);

/// Writes all of the bytes to the descriptor. 0, or an errno value.
[[nodiscard]] int writeAll(int descriptor, const char *bytes, qsizetype size);

} // namespace platform
