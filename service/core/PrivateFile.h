#pragma once

#include "common/Result.h"

#include <string>

namespace quorvane::service {

/// The text of a short file that no stranger can read or has written: a regular file, owned by root or by the
/// service's user, with mode 600 or, when root owns it, 640, and at most so many bytes. The message of a
/// failure names the file.
Result<std::string> privateFileText(const std::string &path, std::size_t maximumLength = 4096);

/// Writes a new file that only its owner can read. An incomplete file never has the final name.
Result<> writePrivateFile(const std::string &path, const std::string &text);

} // namespace quorvane::service
