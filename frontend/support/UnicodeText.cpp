#include "UnicodeText.h"

namespace quorvane {

QString UnicodeText::decoded(QByteArrayView utf8) {
    if (utf8.isEmpty()) {
        return QStringLiteral("");
    }
    qsizetype marks = 0;
    while (utf8.startsWith(byteOrderMark)) {
        utf8 = utf8.sliced(byteOrderMark.size());
        ++marks;
    }
    const QString text = QString::fromUtf8(utf8);
    return marks == 0 ? text : QString(marks, QChar(QChar::ByteOrderMark)) + text;
}

} // namespace quorvane
