#pragma once

#include <QString>
#include <QStringView>

namespace quorvane {

/// The integer that the text begins with, as the service's answers and the window's fields are read: leading
/// white space is skipped, one sign is allowed, reading stops at the first other character. Without digits
/// the value is 0; values beyond 32 bits become the nearest end of the range.
[[nodiscard]] int integerValue(QStringView text);

/// Keeps the digits '0' to '9' of the text and, if maxLen is above 0, only that many of them. True when
/// nothing had to be removed.
bool pureInteger(QString &text, int maxLen);

} // namespace quorvane
