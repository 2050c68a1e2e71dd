#include "QrvLocation.h"

namespace quorvane {

namespace {

std::weak_ordering plainOrder(const QString &a, const QString &b) {
    return a.compare(b) <=> 0;
}

} // namespace

QrvLocation QrvLocation::location(const QString &title, const QString &countryCode, const QString &codeName,
                                  bool gold) {
    return {title, countryCode, codeName, gold};
}

std::weak_ordering QrvLocation::compareLocations(const QrvLocation &other) const {
    if (countryCode == other.countryCode) {
        const bool isCity = !codeName.isNull();
        const bool otherIsCity = !other.codeName.isNull();
        if (isCity != otherIsCity) {
            return isCity ? std::weak_ordering::greater : std::weak_ordering::less;
        }
        return isCity ? plainOrder(title, other.title) : std::weak_ordering::equivalent;
    }
    for (const QLatin1String first : {QLatin1String("US"), QLatin1String("GB")}) {
        if (countryCode == first) {
            return std::weak_ordering::less;
        }
        if (other.countryCode == first) {
            return std::weak_ordering::greater;
        }
    }
    return plainOrder(countryCode, other.countryCode);
}

} // namespace quorvane
