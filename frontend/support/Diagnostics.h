#pragma once

#include <QString>

namespace quorvane {

/// The program's diagnostic lines. The platform's log masks them and writes them only if diagnostics are on.
/// Any thread.
namespace Diagnostics {

/// Writes the line while diagnostics are on.
void log(const QString &line);
/// Writes the line whether diagnostics are on or not.
void logAlways(const QString &line);
/// The text as it is written in a line: a null text becomes "(null)".
[[nodiscard]] QString shown(const QString &text);

} // namespace Diagnostics

} // namespace quorvane
