#pragma once

#include <QString>

namespace quorvane {

/// The session log "qrvp.log" in the documents folder: one line for each attempt, success and error. Lines
/// are only appended to an existing file. Any thread; short lines are written in one piece.
namespace SessionLog {

/// Creates the log empty if it is missing.
void ensureExists();
void append(const QString &line);

} // namespace SessionLog

} // namespace quorvane
