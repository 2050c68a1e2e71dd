#pragma once

#include <QByteArray>

namespace quorvane::platform::PropertyList {

/// Whether the bytes are an XML property list that is small and plain enough for the parser: limited in size
/// and in elements, valid UTF-8, without NUL bytes and without entity declarations.
[[nodiscard]] bool isAcceptableXml(const QByteArray &bytes);

/// Whether the bytes are a binary property list whose every object lies within them, and which stays within
/// the limits of depth and number of values when shared objects are expanded.
[[nodiscard]] bool isAcceptableBinary(const QByteArray &bytes);

/// Whether the bytes begin like a binary property list.
[[nodiscard]] bool isBinary(const QByteArray &bytes);

inline constexpr qsizetype maximumSize = 16 * 1024 * 1024;
/// Maximum nesting of dictionaries and arrays.
inline constexpr int maximumDepth = 64;

} // namespace quorvane::platform::PropertyList
