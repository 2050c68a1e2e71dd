#include "Fuzz.h"
#include "frontend/privileges/QrvCredentials.h"

using namespace quorvane;

namespace {

bool isPlainAlphaNumeric(QChar unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || (unit >= u'0' && unit <= u'9');
}

void checkRoundTrip(const QString &text) {
    const QString scrambled = QrvCredentials::encode(text);
    if (text.isEmpty()) {
        must(scrambled.isNull(), "an empty text has no scrambled form");
        return;
    }
    must(scrambled.size() == 2 * text.size() + 1, "one unit follows each unit, and one is at the end");
    must(scrambled.back() == QChar(u'\0'), "the end is marked");
    for (qsizetype i = 0; i < text.size(); ++i) {
        must(isPlainAlphaNumeric(scrambled[2 * i + 1]), "an inserted unit is a letter or digit");
    }
    must(QrvCredentials::decode(scrambled) == text, "the scrambled text can be decoded");
}

void checkStored(const QString &stored) {
    const QString plain = QrvCredentials::decode(stored);
    must(plain.isNull() == (stored.size() < 2), "less than two units contain no text");
    must(plain.size() == stored.size() / 2, "every second unit counts");
    for (qsizetype i = 0; i < plain.size(); ++i) {
        must(plain[i] == stored[2 * i], "the first unit of each pair counts");
    }
}

} // namespace

void fuzzOne(std::string_view bytes) {
    for (const QString &text : {textOf(bytes), unitsOf(bytes)}) {
        checkRoundTrip(text);
        checkStored(text);
    }
}
