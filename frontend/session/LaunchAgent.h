#pragma once

namespace quorvane {

/// The launch-at-login agent: a property list in the user's "Library/LaunchAgents" that is never removed; its
/// boolean "RunAtLoad" switches it. The desktop's own autostart entry is switched together with it. Main
/// thread.
namespace LaunchAgent {

/// Writes both, or neither: after a failed write of one, the other is as it was. Failures are not reported.
void launchOnStartup(bool enabled);
/// Whether the agent exists and is switched on.
[[nodiscard]] bool launchesOnStartup();

} // namespace LaunchAgent

} // namespace quorvane
