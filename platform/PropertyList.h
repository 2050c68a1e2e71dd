#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <optional>

namespace quorvane::platform {

/// Property lists in memory as variants: QVariantMap, QVariantList, QString, qint64, double, bool,
/// QByteArray. Input is untrusted: for malformed, deep or huge texts nothing is returned, and nothing
/// crashes.
namespace PropertyList {

/// Parses an XML or binary property list whose root is a dictionary. Absent when the bytes are not such a
/// list.
[[nodiscard]] std::optional<QVariantMap> parse(const QByteArray &bytes);
/// Writes an XML property list. Texts that XML cannot contain (U+0000, other control characters, lone
/// surrogates) are written as data with a marker and are read as the same text again. Dates (QDateTime) are
/// written with their seconds. An entry of another type, or under a key that XML cannot contain, is omitted.
[[nodiscard]] QByteArray write(const QVariantMap &dictionary);

/// Reads a file of at most 16 MiB without following a link in its last component. Absent on failure.
[[nodiscard]] std::optional<QVariantMap> readFile(const QString &path);
/// Replaces the file atomically with mode 600 from the first byte. False on an error; the old file is then
/// unchanged.
bool writeFile(const QString &path, const QVariantMap &dictionary);

} // namespace PropertyList

} // namespace quorvane::platform
