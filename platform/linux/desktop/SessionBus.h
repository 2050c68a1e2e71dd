#pragma once

namespace quorvane::platform {

/// Whether the session has a message bus. Without an address the bus library would start a bus of its own,
/// which would outlive the program.
[[nodiscard]] bool isSessionBusThere();

} // namespace quorvane::platform
