#include "TextNumbers.h"

#include <algorithm>
#include <limits>

namespace quorvane {

int integerValue(QStringView text) {
    qsizetype at = 0;
    while (at < text.size() && text[at].isSpace()) {
        ++at;
    }
    bool negative = false;
    if (at < text.size() && (text[at] == u'-' || text[at] == u'+')) {
        negative = text[at] == u'-';
        ++at;
    }
    constexpr qint64 bound = qint64{std::numeric_limits<int>::max()} + 1;
    qint64 value = 0;
    for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9'; ++at) {
        value = std::min(value * 10 + (text[at].unicode() - u'0'), bound);
    }
    value = negative ? -value : std::min(value, bound - 1);
    return static_cast<int>(value);
}

bool pureInteger(QString &text, int maxLen) {
    QString clean;
    for (const QChar unit : text) {
        if (unit >= u'0' && unit <= u'9') {
            clean += unit;
        }
    }
    if (maxLen > 0) {
        clean.truncate(maxLen);
    }
    if (clean.size() == text.size()) {
        return true;
    }
    text = clean;
    return false;
}

} // namespace quorvane
