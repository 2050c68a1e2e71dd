#pragma once

namespace quorvane {

/// The launch-at-login agent: a property list in the user's "Library/LaunchAgents" that stays and is switched
/// by its boolean "RunAtLoad", with the desktop's own autostart entry kept in step. Main thread.
namespace LaunchAgent {

/// Writes both. A failed write is not reported.
void launchOnStartup(bool enabled);
/// Whether the agent is there and switched on.
[[nodiscard]] bool launchesOnStartup();

} // namespace LaunchAgent

} // namespace quorvane
