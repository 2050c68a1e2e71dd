#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <optional>

namespace quorvane::platform {

/// Property lists in memory as variants: QVariantMap, QVariantList, QString, qint64, double, bool,
/// QByteArray. Input is hostile until parsed: malformed, deep or huge texts give nothing, never a crash.
namespace PropertyList {

/// Parses an XML or binary property list whose root is a dictionary. Absent when it is none.
[[nodiscard]] std::optional<QVariantMap> parse(const QByteArray &bytes);
/// Writes an XML property list. Texts that XML cannot carry (U+0000, other control characters, lone
/// surrogates) are written as data with a marker and come back as the same text. Dates (QDateTime) keep
/// their seconds. An entry of another type, or under a key that XML cannot carry, is left out.
[[nodiscard]] QByteArray write(const QVariantMap &dictionary);

/// Reads a file of at most 16 MiB without following a link in its last component. Absent on failure.
[[nodiscard]] std::optional<QVariantMap> readFile(const QString &path);
/// Replaces the file atomically with mode 600 from the first byte. False when it could not; the old file
/// is then untouched.
bool writeFile(const QString &path, const QVariantMap &dictionary);

} // namespace PropertyList

} // namespace quorvane::platform
