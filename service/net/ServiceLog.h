#pragma once

#include <string>

namespace quorvane::service {

/// Writes one line to standard error, with the time in front.
void writeLog(const std::string &line);

} // namespace quorvane::service
