#pragma once

#include <QString>

namespace quorvane::platform {

/// What another user than root could change of the files that root runs: a path in the resources folder or
/// above it. Null when there is none, and always in a program that was built to run from its tree. Any
/// thread.
[[nodiscard]] QString changeableProgramFile(const QString &resourcesFolder);

} // namespace quorvane::platform
