#pragma once

#include <QByteArray>

namespace quorvane::platform::PropertyList {

/// Whether the bytes are an XML property list small and plain enough to be handed to the parser: bounded
/// in size and in elements, valid UTF-8, free of NUL bytes, without entity declarations.
[[nodiscard]] bool isBearableXml(const QByteArray &bytes);

/// Whether the bytes are a binary property list whose every object lies within them, and which stays
/// within the bounds of depth and number of values when shared objects are written out.
[[nodiscard]] bool isBearableBinary(const QByteArray &bytes);

/// Whether the bytes call themselves a binary property list.
[[nodiscard]] bool isBinary(const QByteArray &bytes);

inline constexpr qsizetype largestSize = 16 * 1024 * 1024;
/// Dictionaries and arrays inside each other.
inline constexpr int greatestDepth = 64;

} // namespace quorvane::platform::PropertyList
