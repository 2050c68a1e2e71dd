#pragma once

#include <QByteArray>
#include <QString>

namespace quorvane::platform {

/// Replaces the file with the bytes atomically: they are on the disk before the file gets its name. The file
/// has mode 600 (owner only); a link under that name is replaced, not followed. Any thread. Returns 0 or an
/// errno value; on an error the old file is unchanged.
[[nodiscard]] int replaceFile(const QString &path, const QByteArray &bytes);

/// Reserves disk space for an existing file, so that another program can append that many bytes even when the
/// disk fills up meanwhile. The file's size and contents do not change. Any thread. Returns 0, also where the
/// file system cannot reserve space, or an errno value when there is not enough.
[[nodiscard]] int reserveSpace(const QString &path, qint64 bytes);

/// Whether another process holds a lock on the file, as the guard does on the log while OpenVPN runs. Any
/// thread.
[[nodiscard]] bool isLockedElsewhere(const QString &path);

} // namespace quorvane::platform
