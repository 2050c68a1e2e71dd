#pragma once

#include <QByteArray>
#include <QString>

namespace platform {

/// Replaces the file with the bytes, whole or not at all: written to a private file beside it (mode 600
/// from the first byte), brought to the disk, then moved onto the name. A link under that name is
/// replaced, not followed. 0, or an errno value; the old file is then untouched and nothing is left behind.
[[nodiscard]] int replaceFile(const QString &path, const QByteArray &bytes);

/// Reads a regular file of at most limit bytes without following a link in its last component.
/// 0, or an errno value (EFBIG when it is larger, EINVAL when it is no regular file).
[[nodiscard]] int readPlainFile(const QString &path, qint64 limit, QByteArray &bytes);

/// Makes the folder and what is missing above it, each open to its owner only. 0, or an errno value.
[[nodiscard]] int makePrivateFolders(const QString &path);

/// Writes all of the bytes to the descriptor. 0, or an errno value.
[[nodiscard]] int writeAll(int descriptor, const char *bytes, qsizetype size);

} // namespace platform
