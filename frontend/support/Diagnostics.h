#pragma once

#include <QString>

namespace quorvane {

/// The program's diagnostic lines; masked and gated by the platform's log. Any thread.
namespace Diagnostics {

/// Writes the line while diagnostics are on.
void log(const QString &line);
/// Writes the line whether diagnostics are on or not.
void logAlways(const QString &line);
/// How a value is written inside a line: an absent text as "(null)".
[[nodiscard]] QString shown(const QString &text);

} // namespace Diagnostics

} // namespace quorvane
