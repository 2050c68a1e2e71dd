#include "Fuzz.h"
#include "PropertyLists.h"

#include <QDateTime>

#include <fuzzer/FuzzedDataProvider.h>

namespace {

constexpr int maximumDepth = 8;

QString anyText(FuzzedDataProvider &source) {
    const bool units = source.ConsumeBool();
    const std::string bytes = source.ConsumeRandomLengthString(40);
    return units ? unitsOf(bytes) : textOf(bytes);
}

QVariantMap anyMap(FuzzedDataProvider &source, int depth);

QVariant anyValue(FuzzedDataProvider &source, int depth) {
    switch (source.ConsumeIntegralInRange(0, depth < maximumDepth ? 7 : 5)) {
    case 0:
        return anyText(source);
    case 1:
        return QVariant::fromValue(source.ConsumeIntegral<qint64>());
    case 2:
        return source.ConsumeFloatingPoint<double>();
    case 3:
        return source.ConsumeBool();
    case 4:
        return QByteArray::fromStdString(source.ConsumeRandomLengthString(40));
    case 5: // a date within 32 bits of seconds around 2001
        return QDateTime::fromSecsSinceEpoch(
            source.ConsumeIntegralInRange<qint64>(-1'100'000'000, 3'100'000'000), Qt::UTC);
    case 6: {
        QVariantList list;
        while (source.remaining_bytes() > 0 && source.ConsumeBool()) {
            list.append(anyValue(source, depth + 1));
        }
        return list;
    }
    default:
        return anyMap(source, depth + 1);
    }
}

QVariantMap anyMap(FuzzedDataProvider &source, int depth) {
    QVariantMap map;
    while (source.remaining_bytes() > 0 && source.ConsumeBool()) {
        const QString key = anyText(source);
        map.insert(key, anyValue(source, depth));
    }
    return map;
}

} // namespace

void fuzzOne(std::string_view bytes) {
    FuzzedDataProvider source(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
    PropertyLists::checkRoundTrip(anyMap(source, 0));
}
