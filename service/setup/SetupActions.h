#pragma once

#include "CommandLine.h"

namespace quorvane::service {

/// Runs setup, its check, renew or routes, and returns the exit status: 0, 1 when something failed, or 2 when
/// an argument is wrong or missing.
[[nodiscard]] int runSetupAction(const CommandLine &line);

} // namespace quorvane::service
