#pragma once

#include <QList>
#include <QString>
#include <compare>

namespace quorvane {

/// One entry of the service's location list: a country, or a city within it.
struct QrvLocation {
    QString title;       ///< shown to the user
    QString countryCode; ///< as the service sends it
    QString codeName;    ///< location code of a city; null for a country
    bool full = false;   ///< the entry's fourth field equalled "1"

    [[nodiscard]] static QrvLocation location(const QString &title, const QString &countryCode,
                                              const QString &codeName, bool gold);

    /// The United States first, then Great Britain, then by country code; a country before its cities,
    /// cities by title. Plain comparison of UTF-16 units.
    [[nodiscard]] std::weak_ordering compareLocations(const QrvLocation &other) const;
};

using QrvLocationList = QList<QrvLocation>;

} // namespace quorvane
