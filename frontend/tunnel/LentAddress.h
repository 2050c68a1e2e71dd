#pragma once

#include <QString>

namespace quorvane {

/// The public address that the tunnel lends.
namespace LentAddress {

/// Runs the "extractip" script with the configuration's path and gives all that it printed, as it is.
/// Blocks until the script has ended; the script bounds its own time. Null when it could not be run or
/// printed no text.
[[nodiscard]] QString read(const QString &configurationPath);

} // namespace LentAddress

} // namespace quorvane
