#pragma once

#include <QString>

namespace quorvane {

/// The service's web pages. Main thread.
namespace WebPages {

/// Addresses as the program opens them.
[[nodiscard]] QString root(const QString &identifier);
[[nodiscard]] QString ipCheck(const QString &identifier);

/// Opens the guide, which is installed with the program, in the user's browser; an alert with its path if
/// there is none.
void openGuide();

/// Opens an address in the user's browser; an alert with the address if there is none.
void open(const QString &address);

} // namespace WebPages

} // namespace quorvane
