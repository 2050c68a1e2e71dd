#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

namespace quorvane {

/// An answer of the service, read into a flat table.
struct AnswerTable {
    QHash<QString, QString> values; ///< a later line with the same key replaced the earlier value
    QStringList servers;            ///< the values of all "Server" lines, in order

    /// The value of the key; a null text when the answer had no such line.
    [[nodiscard]] QString value(const QString &key) const;

    /// Reads "key: value" lines, which only "<br />" separates. Absent for a null text and for the bare
    /// success message, which is no answer.
    [[nodiscard]] static std::optional<AnswerTable> read(const QString &text);
};

} // namespace quorvane
