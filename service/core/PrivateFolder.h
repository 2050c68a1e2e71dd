#pragma once

#include "common/Result.h"

#include <string>

namespace quorvane::service {

/// Fails when another user owns the folder or can write in it, and so could replace its files. Root may own
/// it. A folder that is missing is no failure.
Result<> checkPrivateFolder(const std::string &path);

/// Makes the folder when it is missing, and leaves it to the process's own user alone. Fails when it is not a
/// folder of that user, or when other users could write in it until now: what is in it may be theirs.
Result<> makePrivateFolder(const std::string &path);

} // namespace quorvane::service
