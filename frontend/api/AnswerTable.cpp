#include "AnswerTable.h"

#include "frontend/support/UnicodeText.h"

#include <utility>

namespace quorvane {

namespace {

constexpr QByteArrayView lineEnd("<br />");

/// Blanks and tabs only: a line feed is part of a key or value.
QByteArrayView trimmedOfBlanks(QByteArrayView text) {
    const auto isBlank = [](char c) {
        return c == ' ' || c == '\t';
    };
    while (!text.isEmpty() && isBlank(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isBlank(text.back())) {
        text.chop(1);
    }
    return text;
}

/// Splits the first line off the text.
QByteArrayView takeLine(QByteArrayView &text) {
    for (qsizetype at = text.indexOf('<'); at >= 0; at = text.indexOf('<', at + 1)) {
        if (text.sliced(at).startsWith(lineEnd)) {
            const QByteArrayView line = text.first(at);
            text = text.sliced(at + lineEnd.size());
            return line;
        }
    }
    return std::exchange(text, {});
}

} // namespace

QString AnswerTable::value(const QString &key) const {
    return values.value(key);
}

std::optional<AnswerTable> AnswerTable::read(const QByteArray &text) {
    QByteArrayView rest(text);
    if (rest.startsWith(UnicodeText::byteOrderMark)) {
        rest = rest.sliced(UnicodeText::byteOrderMark.size());
    }
    if (text.isNull() || !rest.isValidUtf8() ||
        rest == QByteArrayView("Connection to the Quorvane API successful.")) {
        return std::nullopt;
    }
    AnswerTable table;
    while (!rest.isEmpty()) {
        const QByteArrayView line = takeLine(rest);
        const qsizetype colon = line.indexOf(':');
        if (colon < 0) {
            continue;
        }
        const QByteArrayView key = trimmedOfBlanks(line.first(colon));
        const QByteArrayView value = trimmedOfBlanks(line.sliced(colon + 1));
        if (key == QByteArrayView("Server")) {
            table.servers.append(value);
        } else {
            // An empty value is not null, so that it differs from an absent one.
            table.values.insert(UnicodeText::decoded(key), UnicodeText::decoded(value));
        }
    }
    return table;
}

} // namespace quorvane
