#include "LocationRotation.h"

#include "DiscardedAddresses.h"
#include "HideIpSession.h"
#include "RotationControls.h"
#include "SessionDisplay.h"
#include "SessionState.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/support/Diagnostics.h"
#include "platform/Platform.h"
#include "platform/PreferencesStore.h"
#include "platform/UserDefaultsController.h"

namespace quorvane {

namespace {

const QString changeEveryKey = QStringLiteral("changeIpEvery");
const QString intervalKey = QStringLiteral("changeIpInterval");
const QString requireUsKey = QStringLiteral("requireUS");

void savePreference(const QString &key, const QVariant &value) {
    // As an edit: one of the settings window under the same key may still be pending, and this one is newer.
    platform::UserDefaultsController &defaults = *platform::Platform::current().userDefaults;
    defaults.setValue(key, value);
    defaults.save();
}

} // namespace

LocationRotation::LocationRotation(const Parts &collaborators, LocationChoice::Random random, QObject *parent)
    : QObject(parent), parts(collaborators), choice(std::move(random)) {}

LocationChoice::Request LocationRotation::request() const {
    LocationChoice::Request request;
    request.list = parts.controls.locations();
    const quint64 selected = parts.controls.selectedLocation();
    for (const LocationChoice::Entry &entry : std::as_const(request.list)) {
        if (entry.id == selected) {
            request.candidate = entry;
        }
    }
    request.usOnly = parts.controls.requiresUS();
    request.automaticChange = parts.controls.changesAutomatically();
    request.isDiscarded = [this](const QString &text) {
        return parts.discarded.hasRow(text);
    };
    return request;
}

void LocationRotation::downloadCertificateForSelectedItem() {
    waiting = false;
    if (!parts.api.inetConnect()) {
        Diagnostics::log(QStringLiteral("downloadCertificateForSelectedItem no inet"));
        parts.session.connectionError();
        return;
    }
    const LocationChoice::Outcome outcome = choice.choose(request());
    if (outcome.selection) {
        parts.controls.selectLocation(*outcome.selection);
    }
    switch (outcome.result) {
    case LocationChoice::Result::NothingToPick:
        break;
    case LocationChoice::Result::NoUnitedStates:
        parts.session.connectionError();
        break;
    case LocationChoice::Result::AllUsed:
        waiting = true;
        parts.display.waitingForLocation(tr("Every location has been used in this rotation. Refresh the "
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
        place = parts.api.model().getLocationByIP(outcome.pick.data->ipAdress);
    }
    last = outcome.pick;
    parts.fetch.start(outcome.pick.title, outcome.pick.data, parts.controls.transportLabel());
}

void LocationRotation::goOnIfWaiting() {
    if (waiting) {
        parts.display.waitingEnded();
        downloadCertificateForSelectedItem();
    }
}

void LocationRotation::setUsedItems(const QSet<quint64> &items) {
    choice.setUsedItems(items);
    // Later: choosing a location empties the set and then begins an attempt of its own.
    QMetaObject::invokeMethod(this, &LocationRotation::goOnIfWaiting, Qt::QueuedConnection);
}

void LocationRotation::changeIpMenuItemPressed() {
    parts.controls.selectRandomLocation();
    parts.session.terminateVpn();
    parts.session.getNewIP();
}

void LocationRotation::changeIpButtonPressed() {
    parts.session.stopQuorvane();
    parts.session.quorvane();
}

void LocationRotation::discardIpButtonPressed() {
    if (last.data) {
        // The address read with the list, even where another one of the group was asked for.
        parts.discarded.addDiscardedIp(last.data->ipAdress);
        last.data->filteredIpAdressArray.removeAll(last.data->ipAdress);
        if (last.data->filteredIpAdressArray.isEmpty()) {
            parts.controls.removeLocation(last.title);
            parts.controls.selectRandomLocation();
        }
    }
    parts.session.terminateVpn();
    parts.session.getNewIP();
}

void LocationRotation::requireUSBasedIPButtonPressed(bool on) {
    savePreference(requireUsKey, on);
    if (on) {
        parts.controls.selectRandomLocation();
        const QString country =
            platform::Platform::current().preferences->string(QStringLiteral("countryCode"));
        if (SessionState::shared().hidden && country.toLower() != QLatin1String("us")) {
            parts.session.stopQuorvane();
            parts.session.quorvane();
        }
    }
    setUsedItems({});
}

void LocationRotation::setRequiredUS(bool required) {
    parts.controls.setRequiresUS(required);
    platform::Platform::current().preferences->setValue(requireUsKey, required);
    setUsedItems({});
}

void LocationRotation::changeEveryPressed(bool on) {
    if (on) {
        parts.controls.selectRandomLocation();
    }
    savePreference(changeEveryKey, on);
    parts.session.settingsDidChange();
}

void LocationRotation::intervalEntered(int minutes) {
    // A running change timer keeps its time; the new interval counts from the next arming.
    savePreference(intervalKey, minutes);
}

} // namespace quorvane
