#include "PreferencesStore.h"

#include <QLocale>

#include <charconv>
#include <cmath>
#include <limits>

namespace quorvane::platform {

namespace {

/// The integer that the text begins with; a number out of range is clamped to the range.
qint64 leadingInteger(const QString &text) {
    qsizetype at = 0;
    while (at < text.size() && text[at].isSpace()) {
        ++at;
    }
    QByteArray digits;
    if (at < text.size() && (text[at] == u'-' || text[at] == u'+')) {
        if (text[at] == u'-') {
            digits += '-';
        }
        ++at;
    }
    for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9'; ++at) {
        digits += text[at].toLatin1();
    }
    qint64 number = 0;
    const auto outcome = std::from_chars(digits.constData(), digits.constData() + digits.size(), number);
    if (outcome.ec == std::errc::result_out_of_range) {
        return digits.startsWith('-') ? std::numeric_limits<qint64>::min()
                                      : std::numeric_limits<qint64>::max();
    }
    return number;
}

qint64 cut(double real) {
    constexpr double limit = 9223372036854775808.0;
    if (std::isnan(real)) {
        return 0;
    }
    if (real >= limit) {
        return std::numeric_limits<qint64>::max();
    }
    return real < -limit ? std::numeric_limits<qint64>::min() : static_cast<qint64>(real);
}

} // namespace

void PreferencesStore::setValue(const QString &key, const QVariant &value) {
    setValues({{key, value}});
}

void PreferencesStore::remove(const QString &key) {
    setValues({{key, QVariant()}});
}

qint64 PreferencesStore::integer(const QString &key) const {
    return integerOf(value(key));
}

bool PreferencesStore::boolean(const QString &key) const {
    return booleanOf(value(key));
}

QString PreferencesStore::string(const QString &key) const {
    return stringOf(value(key));
}

qint64 PreferencesStore::integerOf(const QVariant &value) {
    const QVariant stored = canonical(value);
    switch (stored.typeId()) {
    case QMetaType::LongLong:
        return stored.toLongLong();
    case QMetaType::Bool:
        return stored.toBool() ? 1 : 0;
    case QMetaType::Double:
        return cut(stored.toDouble());
    case QMetaType::QString:
        return leadingInteger(stored.toString());
    default:
        return 0;
    }
}

bool PreferencesStore::booleanOf(const QVariant &value) {
    const QVariant stored = canonical(value);
    if (stored.typeId() == QMetaType::Double) {
        return stored.toDouble() != 0.0;
    }
    if (stored.typeId() != QMetaType::QString) {
        return integerOf(stored) != 0;
    }
    const QString text = stored.toString();
    static const QString yes = QStringLiteral("YyTt123456789");
    return integerOf(stored) != 0 || (!text.isEmpty() && yes.contains(text[0]));
}

QString PreferencesStore::stringOf(const QVariant &value) {
    const QVariant stored = canonical(value);
    switch (stored.typeId()) {
    case QMetaType::LongLong:
        return QString::number(stored.toLongLong());
    case QMetaType::Bool:
        return stored.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    case QMetaType::Double:
        return QString::number(stored.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QString:
        return stored.toString();
    default:
        return {};
    }
}

QVariant PreferencesStore::canonical(const QVariant &value) {
    switch (value.typeId()) {
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return QVariant::fromValue(value.toLongLong());
    case QMetaType::Float:
        return value.toDouble();
    case QMetaType::QString:
        return value.toString().isNull() ? QVariant(QStringLiteral("")) : value;
    case QMetaType::QByteArray:
        return value.toByteArray().isNull() ? QVariant(QByteArray("")) : value;
    default:
        return value;
    }
}

} // namespace quorvane::platform
