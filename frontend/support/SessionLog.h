#pragma once

#include <QString>

namespace quorvane {

/// The session log "qrvp.log" in the documents folder: one line for each attempt, success and error. Lines
/// are only appended to an existing file. Any thread; short lines are written in one piece.
///
/// The log does not grow without end: before it would exceed maximumSize it becomes "qrvp.log.old", which
/// replaces an earlier one, and a new log is begun. A pipe or a device under that name receives nothing and
/// is not waited for.
namespace SessionLog {

constexpr qint64 maximumSize = 1024LL * 1024;
constexpr qsizetype longestTitle = 200;

/// Creates the log empty if it is missing.
void ensureExists();
/// Appends the line "<event> <title>". The title comes from the service: it is cut to its first 200
/// characters, and U+FFFD replaces each of them that would not be visible.
void append(const QString &event, const QString &title);

} // namespace SessionLog

} // namespace quorvane
