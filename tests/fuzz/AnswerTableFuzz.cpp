#include "Fuzz.h"
#include "frontend/api/AnswerTable.h"

using namespace quorvane;

namespace {

const QString lineEnd = QStringLiteral("<br />");

bool isBlank(QChar unit) {
    return unit == u' ' || unit == u'\t';
}

bool isTrimmed(const QString &text) {
    return text.isEmpty() || (!isBlank(text.front()) && !isBlank(text.back()));
}

void checkTable(const AnswerTable &table) {
    for (auto entry = table.values.begin(); entry != table.values.end(); ++entry) {
        must(!entry.key().contains(u':'), "a key contains no colon");
        must(isTrimmed(entry.key()), "a key has no blanks at its ends");
        must(entry.key() != QStringLiteral("Server"), "server lines are in their own list only");
        must(!entry.key().contains(lineEnd), "a key does not contain a line's end");
        must(!entry.value().isNull(), "the value of a present line is not null");
        must(isTrimmed(entry.value()), "a value has no blanks at its ends");
        must(!entry.value().contains(lineEnd), "a value does not contain a line's end");
        must(table.value(entry.key()) == entry.value(), "a key returns its value");
    }
    for (const QString &server : table.servers.toStringList()) {
        must(!server.isNull() && isTrimmed(server),
             "a server line is not null and has no blanks at its ends");
        must(!server.contains(lineEnd), "a server line does not contain a line's end");
    }
}

QString written(const AnswerTable &table) {
    QString text = lineEnd; // a byte order mark that begins a key must not begin the text
    for (auto entry = table.values.begin(); entry != table.values.end(); ++entry) {
        text += entry.key() + QStringLiteral(": ") + entry.value() + lineEnd;
    }
    for (const QString &server : table.servers.toStringList()) {
        text += QStringLiteral("Server: ") + server + lineEnd;
    }
    return text;
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const QByteArray answer = textOf(bytes).toUtf8();
    const auto table = AnswerTable::read(answer);
    // Decoded again, since the answer may begin with a byte order mark that followed another one.
    const QString text =
        textOf(std::string_view(answer.constData(), static_cast<std::size_t>(answer.size())));
    must(table.has_value() == (text != QStringLiteral("Connection to the Quorvane API successful.")),
         "only the success message is no answer");
    if (!table) {
        return;
    }
    checkTable(*table);
    const auto lines = text.split(lineEnd);
    const auto counted =
        std::count_if(lines.begin(), lines.end(), [](const QString &line) { return line.contains(u':'); });
    must(table->values.size() + table->servers.size() <= counted,
         "there is a line with a colon for each entry");
    must((table->values.isEmpty() && table->servers.isEmpty()) == (counted == 0),
         "a line with a colon makes an entry");
    const auto again = AnswerTable::read(written(*table).toUtf8());
    must(again && again->values == table->values &&
             again->servers.toStringList() == table->servers.toStringList(),
         "a written table is read again");
}
