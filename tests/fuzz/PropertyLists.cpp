#include "PropertyLists.h"

#include "Fuzz.h"
#include "platform/PropertyList.h"
#include "platform/linux/preferences/PropertyListChecks.h"

#include <QDateTime>
#include <QStringDecoder>

#include <algorithm>
#include <cmath>

using namespace quorvane;

namespace PropertyLists {

namespace {

using platform::PropertyList::maximumDepth;

/// The reader's limits: containers, "<" marks and bytes. See PropertyListChecks.cpp.
constexpr qsizetype maximumContainers = 4096;
constexpr qsizetype maximumMarks = 400'000;

void checkType(const QVariant &value, int depth) {
    must(depth <= maximumDepth, "depth is limited");
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        std::for_each(map.begin(), map.end(),
                      [depth](const QVariant &entry) { checkType(entry, depth + 1); });
        return;
    }
    case QMetaType::QVariantList: {
        const QVariantList list = value.toList();
        std::for_each(list.begin(), list.end(),
                      [depth](const QVariant &entry) { checkType(entry, depth + 1); });
        return;
    }
    case QMetaType::QString:
        must(!value.toString().isNull(), "a present text is not null");
        return;
    case QMetaType::QByteArray:
    case QMetaType::LongLong:
    case QMetaType::Double:
    case QMetaType::Bool:
    case QMetaType::QDateTime:
        return;
    default:
        must(false, "only the documented types are returned");
    }
}

/// Whether XML can contain the key unchanged.
bool isPlainKey(const QString &key) {
    return key.isValidUtf16() && std::none_of(key.begin(), key.end(), [](QChar unit) {
               return (unit < u' ' && unit != u'\t' && unit != u'\n') || unit == QChar(0xFFFE) ||
                      unit == QChar(0xFFFF);
           });
}

QVariant expected(const QVariant &value);

QVariantMap expectedMap(const QVariantMap &map) {
    QVariantMap result;
    for (auto entry = map.begin(); entry != map.end(); ++entry) {
        if (isPlainKey(entry.key())) {
            result.insert(entry.key(), expected(*entry));
        }
    }
    return result;
}

/// The value as it should be read again.
QVariant expected(const QVariant &value) {
    switch (value.typeId()) {
    case QMetaType::QVariantMap:
        return expectedMap(value.toMap());
    case QMetaType::QVariantList: {
        QVariantList list = value.toList();
        std::transform(list.begin(), list.end(), list.begin(), expected);
        return list;
    }
    case QMetaType::QDateTime:
        return QDateTime::fromSecsSinceEpoch(value.toDateTime().toSecsSinceEpoch(), Qt::UTC);
    default:
        return value;
    }
}

bool same(const QVariant &a, const QVariant &b) {
    if (a.typeId() != b.typeId()) {
        return false;
    }
    switch (a.typeId()) {
    case QMetaType::QVariantMap: {
        const QVariantMap first = a.toMap();
        const QVariantMap second = b.toMap();
        return first.keys() == second.keys() && std::equal(first.begin(), first.end(), second.begin(), same);
    }
    case QMetaType::QVariantList: {
        const QVariantList first = a.toList();
        const QVariantList second = b.toList();
        return std::equal(first.begin(), first.end(), second.begin(), second.end(), same);
    }
    case QMetaType::Double:
        return a.toDouble() == b.toDouble() || (std::isnan(a.toDouble()) && std::isnan(b.toDouble()));
    default:
        return a == b;
    }
}

} // namespace

void checkTypes(const QVariantMap &dictionary) {
    checkType(dictionary, 0);
}

void checkRoundTrip(const QVariantMap &dictionary) {
    const QByteArray written = platform::PropertyList::write(dictionary);
    must(written.startsWith("<?xml") && !written.contains('\0'), "the written bytes are XML");
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(written);
    must(!decoded.isEmpty() && !decoder.hasError(), "the written bytes are UTF-8");
    if (written.size() > platform::PropertyList::maximumSize || written.count('<') > maximumMarks ||
        written.count("<dict") + written.count("<array") > maximumContainers) {
        return;
    }
    const auto again = platform::PropertyList::parse(written);
    const bool isSame = again && same(expectedMap(dictionary), *again);
    if (!isSame) {
        std::fprintf(stderr, "%s", written.constData());
    }
    must(again.has_value(), "the written bytes can be read");
    must(isSame, "the same dictionary is read again");
}

} // namespace PropertyLists
