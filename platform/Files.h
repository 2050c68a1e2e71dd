#pragma once

#include <QByteArray>
#include <QString>

namespace quorvane::platform {

/// Replaces the file with the bytes, whole or not at all, on the disk before it takes the name and for its
/// owner only (mode 600); a link under that name is replaced, not followed. Any thread. 0, or an errno value;
/// the old file is then untouched.
[[nodiscard]] int replaceFile(const QString &path, const QByteArray &bytes);

/// Sets disk space aside for an existing file, so that another program can append that many bytes even when
/// the disk fills up meanwhile. The file's size and contents stay. Any thread. 0, also where the file system
/// cannot set space aside, or an errno value when there is not enough.
[[nodiscard]] int reserveSpace(const QString &path, qint64 bytes);

/// Whether a new file of that many bytes could be made in the folder now. Leaves nothing behind. Any thread.
/// 0, also where the file system cannot report it, or an errno value.
[[nodiscard]] int checkSpace(const QString &folder, qint64 bytes);

} // namespace quorvane::platform
