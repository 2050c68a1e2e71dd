#pragma once

#include <optional>
#include <sys/types.h>

namespace quorvane::guard {

/// The variable with the number of the user for whom an administrator's shell starts the guard. The
/// application's root script exports it; SUDO_UID would be the administrator's.
constexpr const char *callerVariable = "QUORVANE_CALLER";

/// The user who called: the one that the variable names, or without it the one that runs this process. Absent
/// when the variable is no number.
[[nodiscard]] std::optional<uid_t> callerOf(const char *variable);

} // namespace quorvane::guard
