#pragma once

#include <string>

namespace quorvane::service {

/// Writes one line to standard error, with the time in front. What exceeds 16 KiB a second on average is left
/// out and counted. Use it from one thread only.
void writeLog(const std::string &line);

} // namespace quorvane::service
