#include "LocationRotation.h"

#include "DiscardedAddresses.h"
#include "HideIpSession.h"
#include "RotationControls.h"
#include "SessionDisplay.h"
#include "SessionState.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Preferences.h"

namespace quorvane {

LocationRotation::LocationRotation(const Parts &parts, LocationChoice::Random random, QObject *parent)
    : QObject(parent), m_parts(parts), m_choice(std::move(random)) {}

LocationChoice::Request LocationRotation::request() const {
    LocationChoice::Request request{
        m_parts.controls.locations(), m_parts.controls.selectedLocation(), false, false, {}};
    request.usOnly = m_parts.controls.requiresUS();
    request.automaticChange = m_parts.controls.changesAutomatically();
    request.isDiscarded = [this](const QString &text) {
        return m_parts.discarded.hasRow(text);
    };
    return request;
}

void LocationRotation::downloadCertificateForSelectedItem() {
    m_waiting = false;
    if (!m_parts.api.inetConnect()) {
        Diagnostics::log(QStringLiteral("downloadCertificateForSelectedItem no inet"));
        m_parts.session.connectionError();
        return;
    }
    const LocationChoice::Outcome outcome = m_choice.choose(request());
    if (outcome.selection) {
        m_parts.controls.selectLocation(*outcome.selection);
    }
    switch (outcome.result) {
    case LocationChoice::Result::NothingToPick:
        break;
    case LocationChoice::Result::NoUnitedStates:
        m_parts.session.connectionError();
        break;
    case LocationChoice::Result::AllUsed:
        m_waiting = true;
        m_parts.display.waitingForLocation(tr("Every location has been used in this rotation. Refresh the "
                                              "locations or switch \"US only\" to begin a new one."));
        break;
    case LocationChoice::Result::Picked:
        fetchPick(outcome);
        break;
    }
}

void LocationRotation::fetchPick(const LocationChoice::Outcome &outcome) {
    QString &place = SessionState::shared().currentLocation;
    if (outcome.updatesLocationText) {
        place = outcome.pick.title;
    }
    if (!outcome.pick.data->ipAdress.isNull() && place.isEmpty()) {
        place = m_parts.api.model().getLocationByIP(outcome.pick.data->ipAdress);
    }
    m_last = outcome.pick;
    m_parts.fetch.start(outcome.pick.title, outcome.pick.data, m_parts.controls.transportLabel());
}

void LocationRotation::resumeIfWaiting() {
    if (m_waiting) {
        m_parts.display.waitingEnded();
        downloadCertificateForSelectedItem();
    }
}

void LocationRotation::setUsedItems(const QSet<quint64> &items) {
    m_choice.setUsedItems(items);
    // Queued: choosing a location empties the set and then starts its own attempt.
    QMetaObject::invokeMethod(this, &LocationRotation::resumeIfWaiting, Qt::QueuedConnection);
}

void LocationRotation::changeIpMenuItemPressed() {
    m_parts.controls.selectRandomLocation();
    m_parts.session.terminateVpn();
    m_parts.session.getNewIP();
}

void LocationRotation::changeIpButtonPressed() {
    m_parts.session.stopQuorvane();
    m_parts.session.quorvane();
}

void LocationRotation::discardIpButtonPressed() {
    if (m_last.data) {
        // The address that was picked when the list was read, even if another one of the group was requested.
        m_parts.discarded.addDiscardedIp(m_last.data->ipAdress);
        m_last.data->filteredIpAdressArray.removeAll(m_last.data->ipAdress);
        if (m_last.data->filteredIpAdressArray.isEmpty()) {
            m_parts.controls.removeLocation(m_last.title);
            m_parts.controls.selectRandomLocation();
        }
    }
    m_parts.session.terminateVpn();
    m_parts.session.getNewIP();
}

void LocationRotation::requireUSBasedIPButtonPressed(bool on) {
    Preferences::choose({{Preference::RequireUs, on}});
    if (on) {
        m_parts.controls.selectRandomLocation();
        const QString country = Preferences::text(Preference::CountryCode);
        if (SessionState::shared().hidden && country.toLower() != QLatin1String("us")) {
            m_parts.session.stopQuorvane();
            m_parts.session.quorvane();
        }
    }
    setUsedItems({});
}

void LocationRotation::setRequiredUS(bool required) {
    m_parts.controls.setRequiresUS(required);
    Preferences::store({{Preference::RequireUs, required}});
    setUsedItems({});
}

void LocationRotation::changeEveryPressed(bool on) {
    if (on) {
        m_parts.controls.selectRandomLocation();
    }
    Preferences::choose({{Preference::ChangeIpEvery, on}});
    m_parts.session.settingsDidChange();
}

void LocationRotation::intervalEntered(int minutes) {
    // A running change timer is not changed; the new interval applies when the timer is next armed.
    Preferences::choose({{Preference::ChangeIpInterval, minutes}});
}

} // namespace quorvane
