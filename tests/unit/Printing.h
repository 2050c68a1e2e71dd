#pragma once

#include <QString>
#include <QStringList>
#include <ostream>

// GoogleTest finds printers by argument-dependent look-up in the global namespace, where QString lives.

inline void PrintTo(const QString &text, std::ostream *out) {
    *out << (text.isNull() ? "(null)" : "\"" + text.toStdString() + "\"");
}

inline void PrintTo(const QByteArray &bytes, std::ostream *out) {
    *out << '"' << bytes.toStdString() << '"';
}

/// Equality that distinguishes an absent text from an empty one.
inline bool sameText(const QString &a, const QString &b) {
    return a == b && a.isNull() == b.isNull();
}
