#pragma once

#include <QString>

namespace quorvane {

/// A text of a test; the product forbids the conversion from a literal.
inline QString text(const char *utf8) {
    return QString::fromUtf8(utf8);
}

} // namespace quorvane
