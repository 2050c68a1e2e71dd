#pragma once

#include <QByteArrayView>
#include <QString>

namespace quorvane {

/// Parts of a UTF-8 text that is valid as a whole. Any thread.
namespace UnicodeText {

inline constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");

/// The text, never null. Unlike QString::fromUtf8(), which is for whole files, it keeps a byte order mark at
/// the start.
[[nodiscard]] QString decoded(QByteArrayView utf8);

} // namespace UnicodeText

} // namespace quorvane
