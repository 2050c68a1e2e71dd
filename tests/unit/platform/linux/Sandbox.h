#pragma once

#include <QString>

namespace quorvane::platform {

/// Runs a test program in its own namespaces.
namespace sandbox {

/// Whether enter() started this process.
[[nodiscard]] bool wasTried();
/// Whether it is inside: it has its own mounts, processes and network.
[[nodiscard]] bool isInside();
/// Whether it is inside with temporary accounts: joe (password "joepw", an ordinary user), ada ("ada pw",
/// full name "Ada Admin", may use sudo), norm ("normpw") and root ("rootpw"). Needs real root outside.
[[nodiscard]] bool hasAccounts();
/// Starts this program again, inside if possible. Returns only when even starting it outside fails.
void enter(char **ownArguments);

} // namespace sandbox

} // namespace quorvane::platform
