#pragma once

#include <QByteArray>
#include <QString>

namespace quorvane::platform {

/// Replaces the file with the bytes atomically: they are on the disk before the file gets its name. The file
/// has mode 600 (owner only); a link under that name is replaced, not followed. Any thread. Returns 0 or an
/// errno value; on an error the old file is unchanged.
[[nodiscard]] int replaceFile(const QString &path, const QByteArray &bytes);

/// Reads a regular file of at most limit bytes without following a link in its last component. Any thread.
/// Returns 0 or an errno value (EFBIG when it is larger, EINVAL when it is not a regular file: a pipe or a
/// device is not waited for).
[[nodiscard]] int readPlainFile(const QString &path, qint64 limit, QByteArray &bytes);

enum class MissingFile { IsCreated, IsAnError };

/// Appends the bytes to a regular file in one piece; one that is created is private (mode 600). Any thread.
/// Returns 0 or an errno value (EINVAL or ENXIO for what is not a regular file: a pipe without a reader is
/// not waited for).
[[nodiscard]] int appendToPlainFile(const QString &path, const QByteArray &bytes, MissingFile missing);

/// Gives the file another name in one step; a file that has that name already is replaced. Any thread.
/// Returns 0 or an errno value.
[[nodiscard]] int renameFile(const QString &path, const QString &newPath);

/// Reserves disk space for an existing file, so that another program can append that many bytes even when the
/// disk fills up meanwhile. The file's size and contents do not change. Any thread. Returns 0, also where the
/// file system cannot reserve space, or an errno value when there is not enough.
[[nodiscard]] int reserveSpace(const QString &path, qint64 bytes);

/// Whether another process holds a lock on the file, as the guard does on the log while OpenVPN runs. Any
/// thread.
[[nodiscard]] bool isLockedElsewhere(const QString &path);

} // namespace quorvane::platform
