#pragma once

#include <QString>

namespace quorvane {

/// Addresses of the service's web pages as the program opens them in the browser.
namespace WebPages {

[[nodiscard]] QString root(const QString &identifier);
[[nodiscard]] QString ipCheck(const QString &identifier);

} // namespace WebPages

} // namespace quorvane
