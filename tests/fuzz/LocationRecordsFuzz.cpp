#include "Fuzz.h"
#include "frontend/api/ServerModel.h"

#include <algorithm>

using namespace quorvane;

namespace {

bool same(const QrvLocation &a, const QrvLocation &b) {
    return a.title == b.title && a.countryCode == b.countryCode && a.codeName == b.codeName &&
           a.codeName.isNull() == b.codeName.isNull() && a.full == b.full;
}

/// The laws of an order, on the first entries only, because the work grows with the third power.
void checkOrder(const QrvLocationList &list) {
    const QrvLocationList few = list.first(std::min<qsizetype>(list.size(), 12));
    for (const QrvLocation &a : few) {
        must(std::is_eq(a.compareLocations(a)), "an entry equals itself");
        for (const QrvLocation &b : few) {
            const auto forth = a.compareLocations(b);
            const auto back = b.compareLocations(a);
            must(std::is_lt(forth) == std::is_gt(back) && std::is_eq(forth) == std::is_eq(back),
                 "swapping the operands reverses the result");
            for (const QrvLocation &c : few) {
                if (std::is_lteq(forth) && std::is_lteq(b.compareLocations(c))) {
                    must(std::is_lteq(a.compareLocations(c)), "the order is transitive");
                }
            }
        }
    }
}

void checkPlaces(const QrvLocationList &list) {
    qsizetype previousRank = 0;
    for (qsizetype i = 0; i < list.size(); ++i) {
        const QString &code = list[i].countryCode;
        const qsizetype rank = code == QStringLiteral("US") ? 0 : code == QStringLiteral("GB") ? 1 : 2;
        must(rank >= previousRank, "the United States first, Great Britain next");
        previousRank = rank;
        must(i == 0 || !std::is_gt(list[i - 1].compareLocations(list[i])), "the list is sorted");
        const bool newCountry = i == 0 || list[i - 1].countryCode != code;
        must(newCountry == list[i].codeName.isNull(), "a country appears once, directly before its cities");
    }
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const QString value = textOf(bytes);
    ServerModel model;
    must(!model.hasLocations(), "a new model has no locations");
    model.setLocations(value);
    must(model.hasLocations(), "any value is a list of locations");
    const QrvLocationList list = model.locations();
    const QStringList pieces = value.split(u'|');
    const auto complete = std::count_if(pieces.begin(), pieces.end(),
                                        [](const QString &piece) { return piece.count(u';') == 3; });
    const auto cities = std::count_if(list.begin(), list.end(),
                                      [](const QrvLocation &entry) { return !entry.codeName.isNull(); });
    must(cities == complete, "every piece with four fields becomes one city");
    checkPlaces(list);
    checkOrder(list);
    for (const QrvLocation &entry : list) {
        must(model.locationValid(entry), "a listed location is valid");
        must(!entry.title.isNull() && !entry.countryCode.isNull(), "title and country are present");
        const QString country = model.getCountryByLocation(entry.title);
        must(std::any_of(list.begin(), list.end(),
                         [&](const QrvLocation &other) {
                             return other.title == entry.title && other.countryCode == country;
                         }),
             "a title gives the country of an entry titled so");
    }
    model.setLocations(value);
    must(std::equal(list.begin(), list.end(), model.locations().begin(), model.locations().end(), same),
         "the same value makes the same list");
    model.clearLocations();
    must(!model.hasLocations() && model.locations().isEmpty(), "a cleared model is empty");
}
