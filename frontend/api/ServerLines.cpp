#include "ServerLines.h"

#include "frontend/support/UnicodeText.h"

namespace quorvane {

ServerLines::ServerLines(const QStringList &lines) {
    for (const QString &line : lines) {
        append(line.toUtf8());
    }
}

QByteArrayView ServerLines::at(qsizetype index) const {
    const qsizetype start = index == 0 ? 0 : m_ends.at(index - 1);
    return QByteArrayView(m_text).sliced(start, m_ends.at(index) - start);
}

QStringList ServerLines::toStringList() const {
    QStringList lines;
    lines.reserve(size());
    for (qsizetype i = 0; i < size(); ++i) {
        lines.append(UnicodeText::decoded(at(i)));
    }
    return lines;
}

void ServerLines::append(QByteArrayView line) {
    if (size() == maximumLines) {
        ++m_leftOut;
        return;
    }
    m_text.append(line);
    m_ends.append(m_text.size());
}

} // namespace quorvane
