#pragma once

#include <QByteArray>
#include <QString>

namespace quorvane {

/// Whole-file reading and writing of the program's own small files. Any thread.
namespace TextFile {

/// The file's text. Null when it cannot be read, is empty, larger than 16 MiB, or not UTF-8 from end to end.
[[nodiscard]] QString read(const QString &path);

/// Replaces the file as a whole, for the owner's eyes only (mode 600 whatever was there; a link under that
/// name is replaced, not followed). False, and the old file untouched, when it could not be written.
bool replace(const QString &path, const QByteArray &bytes);

} // namespace TextFile

} // namespace quorvane
