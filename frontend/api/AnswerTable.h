#pragma once

#include "ServerLines.h"

#include <QHash>
#include <QString>
#include <optional>

namespace quorvane {

/// An answer of the service, read into a flat table.
struct AnswerTable {
    QHash<QString, QString> values; ///< a later line with the same key replaced the earlier value
    ServerLines servers;            ///< the values of all "Server" lines, in order

    /// The value of the key; a null text when the answer had no such line.
    [[nodiscard]] QString value(const QString &key) const;

    /// Reads "key: value" lines, which only "<br />" separates. Absent for a null text, for one that is not
    /// UTF-8 from end to end, and for the bare success message, which is no answer. Any thread.
    [[nodiscard]] static std::optional<AnswerTable> read(const QByteArray &text);
};

} // namespace quorvane
