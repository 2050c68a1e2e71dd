#pragma once

#include <QString>

namespace quorvane {

/// A text that a user can send to those who help: versions, desktop, preferences, and the ends of the logs,
/// without what identifies the user. In English whatever the language is.
namespace DiagnosticReport {

/// The whole report, masked. Main thread; reads two small log files.
[[nodiscard]] QString text();

/// The text without names and passwords of the administrator and of the VPN session, the user's name and home
/// folder, and without the last half of each IPv4 address and all but the beginning of other addresses.
[[nodiscard]] QString masked(const QString &text);

} // namespace DiagnosticReport

} // namespace quorvane
