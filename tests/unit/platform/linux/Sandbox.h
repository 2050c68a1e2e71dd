#pragma once

#include <QString>

namespace quorvane::platform {

/// Namespaces of a test program's own.
namespace sandbox {

/// Whether this process comes from enter().
[[nodiscard]] bool wasTried();
/// Whether it is inside: mounts, processes and network are its own.
[[nodiscard]] bool isInside();
/// Whether it is inside with throw-away accounts: joe (password "joepw", an ordinary user), ada ("ada pw",
/// full name "Ada Admin", may use sudo), norm ("normpw") and root ("rootpw"). Needs real root outside.
[[nodiscard]] bool hasAccounts();
/// Starts this program again, inside if that can be had. Returns only when even that fails.
void enter(char **arguments);

} // namespace sandbox

} // namespace quorvane::platform
