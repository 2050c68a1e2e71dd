#include "LocationRotation.h"

#include "DiscardedAddresses.h"
#include "LocationList.h"
#include "SessionState.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/support/Preferences.h"

namespace quorvane {

LocationRotation::LocationRotation(QrvAPI &api, LocationList &list, DiscardedAddresses &discarded,
                                   LocationChoice::Random random)
    : m_api(api), m_list(list), m_discarded(discarded), m_choice(std::move(random)) {}

LocationChoice::Request LocationRotation::request() const {
    LocationChoice::Request request{m_list, m_list.entryAt(m_list.currentRow()), false, false, {}};
    request.usOnly = Preferences::boolean(Preference::RequireUs);
    request.automaticChange = Preferences::boolean(Preference::ChangeIpEvery);
    request.isDiscarded = [this](const QString &text) {
        return m_discarded.hasRow(text);
    };
    return request;
}

LocationChoice::Result LocationRotation::pick() {
    const LocationChoice::Outcome outcome = m_choice.choose(request());
    if (outcome.selection) {
        m_list.selectId(*outcome.selection);
    }
    if (outcome.result != LocationChoice::Result::Picked) {
        return outcome.result;
    }
    QString &place = SessionState::shared().currentLocation;
    if (outcome.updatesLocationText) {
        place = outcome.pick.title;
    }
    if (!outcome.pick.data->ipAdress.isNull() && place.isEmpty()) {
        place = m_api.model().getLocationByIP(outcome.pick.data->ipAdress);
    }
    m_last = outcome.pick;
    return outcome.result;
}

void LocationRotation::discardLastAddress() {
    if (!m_last.data) {
        return;
    }
    // The address that was picked when the list was read, even if another one of the group was requested.
    m_discarded.addDiscardedIp(m_last.data->ipAdress);
    m_last.data->filteredIpAdressArray.removeAll(m_last.data->ipAdress);
    if (m_last.data->filteredIpAdressArray.isEmpty()) {
        m_list.removeTitle(m_last.title);
        m_list.setCurrentRow(0);
    }
}

} // namespace quorvane
