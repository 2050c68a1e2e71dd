#pragma once

#include "frontend/support/Task.h"

#include <QString>

namespace quorvane {

class EventQueue;

/// The name servers around a session, when the user wants them back after it (Preference::RestoresDns).
/// While that is off, these steps do nothing, and the servers are set at the start of the program only. Each
/// is awaited by a handler of the queue, which it holds; no step blocks the main thread. Main thread.
namespace NameServers {

/// Whether the user wants them back after each session.
[[nodiscard]] bool areRestored();
/// Before a tunnel is started: sets our servers unless both services list them.
[[nodiscard]] Task<> setForSession(EventQueue &events);
/// After the last tunnel of a session, and at the start of the program, for a session that a crash or a
/// reboot has ended: puts back what was there.
[[nodiscard]] Task<> putBackAfterSession(EventQueue &events);
/// Puts back what was there, whatever the preference is. Null when that was done or nothing is remembered,
/// else why it was not; what could not be put back stays remembered.
[[nodiscard]] Task<QString> putBackNow(EventQueue &events);
/// Whether there is anything to put back.
[[nodiscard]] bool isAnythingRemembered();

} // namespace NameServers

} // namespace quorvane
