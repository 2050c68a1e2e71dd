#include "StoredLocation.h"

#include "LocationList.h"
#include "SessionState.h"
#include "frontend/api/ServerModel.h"
#include "frontend/support/Preferences.h"

namespace quorvane {

namespace {

QString nonNull(const QString &text) {
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

void StoredLocation::selectIn(LocationList &list, ServerModel &model) {
    QString title = Preferences::text(Preference::Location);
    if (title.isNull()) {
        title = model.countryByCode(Preferences::text(Preference::CountryCode));
    }
    list.selectTitle(title);
}

void StoredLocation::store(const QString &title, const ServerModel &model) {
    const QString country = model.getCountryByLocationForVPN(title);
    QString code = model.getCodeByLocationForVPN(title);
    const QString lastIp = Preferences::text(Preference::LastIp);
    if (Preferences::boolean(Preference::UseSameIp) && !lastIp.isEmpty()) {
        code = model.getLocationByIP(lastIp);
    }
    Preferences::store({{Preference::CountryCode, nonNull(country)}, {Preference::Location, nonNull(code)}});
}

void StoredLocation::storeSameIp(bool keeps) {
    const bool lent = keeps && SessionState::shared().hidden;
    Preferences::choose(
        {{Preference::UseSameIp, keeps},
         {Preference::LastIp, lent ? nonNull(SessionState::shared().currentIp) : QStringLiteral("")}});
}

} // namespace quorvane
