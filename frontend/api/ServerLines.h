#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

namespace quorvane {

/// The "Server" lines of one answer, in their order, as UTF-8 and in one piece: a list of 100,000 lines is
/// two blocks of memory. A value; copies share the text. Any thread.
class ServerLines {
public:
    /// Further lines of an answer are left out.
    static constexpr qsizetype maximumLines = 100'000;

    ServerLines() = default;
    explicit ServerLines(const QStringList &lines);

    [[nodiscard]] qsizetype size() const { return m_ends.size(); }

    [[nodiscard]] bool isEmpty() const { return m_ends.isEmpty(); }

    /// The line's text, without a copy: it is valid as long as this list or a copy of it exists unchanged.
    [[nodiscard]] QByteArrayView at(qsizetype index) const;
    [[nodiscard]] QStringList toStringList() const;

    /// The number of lines that append() left out.
    [[nodiscard]] qsizetype leftOut() const { return m_leftOut; }

    /// Adds a line of valid UTF-8, or only counts it when there are maximumLines.
    void append(QByteArrayView line);

private:
    QByteArray m_text;
    QList<qsizetype> m_ends; // of each line, in m_text
    qsizetype m_leftOut = 0;
};

} // namespace quorvane
