#pragma once

#include "Configuration.h"

#include <optional>
#include <string>
#include <vector>

namespace quorvane::guard {

/// Looks at every directive; the first that a client's configuration does not need, or whose parameters are
/// not among those it may have, is named. Nothing when all may pass.
///
/// The list holds what reaches a server and protects the connection. It holds nothing that names a file or a
/// program, runs anything, writes anywhere, sends what the user did not ask to send, or sends traffic round
/// the tunnel.
std::optional<Refusal> check(const std::vector<Directive> &directives);

/// The configuration that OpenVPN is given: what was understood and nothing else, written in the plainest
/// form.
std::string privateCopy(const std::vector<Directive> &directives);

} // namespace quorvane::guard
