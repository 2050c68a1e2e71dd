#include "AnswerTable.h"

namespace quorvane {

namespace {

/// Blanks and tabs only: a line feed is part of a key or value.
QStringView trimmedOfBlanks(QStringView text) {
    const auto isBlank = [](QChar c) {
        return c == u' ' || c == u'\t';
    };
    while (!text.isEmpty() && isBlank(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isBlank(text.back())) {
        text.chop(1);
    }
    return text;
}

} // namespace

QString AnswerTable::value(const QString &key) const {
    return values.value(key);
}

std::optional<AnswerTable> AnswerTable::read(const QString &text) {
    if (text.isNull() || text == QLatin1String("Connection to the Quorvane API successful.")) {
        return std::nullopt;
    }
    AnswerTable table;
    const QStringView view(text);
    for (const QStringView line : view.tokenize(u"<br />")) {
        const qsizetype colon = line.indexOf(u':');
        if (colon < 0) {
            continue;
        }
        const QStringView key = trimmedOfBlanks(line.first(colon));
        // An empty value is not null, so that it differs from an absent one.
        const QStringView rest = trimmedOfBlanks(line.sliced(colon + 1));
        const QString value = rest.isEmpty() ? QStringLiteral("") : rest.toString();
        if (key == QLatin1String("Server")) {
            table.servers.append(value);
        } else {
            table.values.insert(key.toString(), value);
        }
    }
    return table;
}

} // namespace quorvane
