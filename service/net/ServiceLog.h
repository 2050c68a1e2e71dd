#pragma once

#include <string>

namespace quorvane::service {

/// Writes one line on standard error, with the time in front.
void note(const std::string &line);

} // namespace quorvane::service
