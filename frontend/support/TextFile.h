#pragma once

#include <QByteArray>
#include <QString>

namespace quorvane {

/// Whole-file reading and writing of the program's own small files. Any thread.
namespace TextFile {

/// The file's text from a byte on. Null when it cannot be read, is empty, larger than 16 MiB, no regular file
/// (a pipe is not waited for, a link is not followed), or not UTF-8 from there to the end.
[[nodiscard]] QString read(const QString &path, qint64 begin = 0);

/// The file's bytes. Null when it cannot be read, is empty, larger than 16 MiB or no regular file.
[[nodiscard]] QByteArray readBytes(const QString &path);

/// Replaces the file as a whole; only the owner can read the new one (mode 600, whatever the old mode was; a
/// link with that name is replaced, not followed). False when it could not be written; then the old file is
/// unchanged.
bool replace(const QString &path, const QByteArray &bytes);

} // namespace TextFile

} // namespace quorvane
