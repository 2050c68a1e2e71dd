#pragma once

#include <QString>

namespace quorvane {

/// The public address that the tunnel lends.
namespace LentAddress {

/// Runs the "extractip" script with the configuration's path and returns its whole output unchanged. Blocks
/// until the script has ended; the script limits its own time. Null when it could not be run or its output is
/// no text.
[[nodiscard]] QString read(const QString &configurationPath);

} // namespace LentAddress

} // namespace quorvane
