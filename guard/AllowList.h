#pragma once

#include "Configuration.h"

#include <string>
#include <string_view>
#include <vector>

namespace quorvane::guard {

/// Checks every directive against the list of those that a client needs. The error, a text made by
/// refusal(), names the first directive that is not in the list or has a parameter that is not allowed.
///
/// The list contains directives that reach a server and protect the connection. It contains none that names a
/// file or a program, runs anything, writes anywhere, sends what the user did not request, or sends traffic
/// past the tunnel.
Result<> check(const std::vector<Directive> &directives);

/// The names of all directives that may pass, for the test that compares them with docs/directives.md.
[[nodiscard]] std::vector<std::string_view> allowedNames();

/// The configuration that OpenVPN receives: only what was parsed, written in the plainest form. Directives
/// that have no effect on this system are left out.
[[nodiscard]] std::string privateCopy(const std::vector<Directive> &directives);

} // namespace quorvane::guard
