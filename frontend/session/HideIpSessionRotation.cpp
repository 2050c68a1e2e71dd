// The session's events that choose or change the address.
#include "HideIpSession.h"

#include "DiscardedAddresses.h"
#include "LocationList.h"
#include "LocationRotation.h"
#include "SessionState.h"
#include "frontend/support/Preferences.h"
#include "platform/DelayedCalls.h"
#include "platform/Platform.h"

namespace quorvane {

namespace {

constexpr double secondsPerMinute = 60.0;

platform::DelayedCalls &calls() {
    return *platform::Platform::current().delayedCalls;
}

} // namespace

void HideIpSession::changeIpButtonPressed() {
    post(&HideIpSession::changeKeepingLocation);
}

void HideIpSession::changeIpMenuItemPressed() {
    post(&HideIpSession::changeToRandomLocation);
}

void HideIpSession::discardIpButtonPressed() {
    post(&HideIpSession::discardAddress);
}

void HideIpSession::requireUSBasedIPButtonPressed(bool on) {
    post(&HideIpSession::switchRequireUs, on);
}

Task<> HideIpSession::changeKeepingLocation() {
    co_await stop();
    co_await hide();
}

Task<> HideIpSession::changeToRandomLocation() {
    m_parts.chooser.list().setCurrentRow(0);
    co_await endTunnel();
    co_await beginAttempt();
}

Task<> HideIpSession::discardAddress() {
    m_parts.rotation.discardLastAddress();
    co_await endTunnel();
    co_await beginAttempt();
}

Task<> HideIpSession::switchRequireUs(bool on) {
    Preferences::choose({{Preference::RequireUs, on}});
    m_facts.requiresUs = on;
    if (on) {
        m_parts.chooser.list().setCurrentRow(0);
        const QString country = Preferences::text(Preference::CountryCode);
        if (SessionState::shared().hidden && country.toLower() != QLatin1String("us")) {
            co_await changeKeepingLocation();
        }
    }
    setUsedItems();
}

void HideIpSession::setRequiredUS(bool required) {
    Preferences::store({{Preference::RequireUs, required}});
    m_facts.requiresUs = required;
    publish();
    setUsedItems();
}

void HideIpSession::setUsedItems() {
    m_parts.rotation.setUsedItems({});
    // Later: choosing a location empties the set and then starts its own attempt.
    QMetaObject::invokeMethod(this, &HideIpSession::resumeIfWaiting, Qt::QueuedConnection);
}

void HideIpSession::resumeIfWaiting() {
    post(&HideIpSession::resumeWaiting);
}

Task<> HideIpSession::resumeWaiting() {
    if (m_facts.phase == Phase::Waiting) {
        enter(Phase::Fetching);
        co_await pickAndFetch();
    }
}

void HideIpSession::changeEveryPressed(bool on) {
    m_parts.events.post([this, on]() -> Task<> {
        if (on) {
            m_parts.chooser.list().setCurrentRow(0);
        }
        Preferences::choose({{Preference::ChangeIpEvery, on}});
        settingsDidChange();
        co_return;
    });
}

void HideIpSession::intervalEntered(int minutes) {
    Preferences::choose({{Preference::ChangeIpInterval, minutes}});
    m_facts.interval = minutes;
    publish();
}

void HideIpSession::settingsDidChange() {
    const bool on = Preferences::boolean(Preference::ChangeIpEvery);
    const qint64 minutes = Preferences::integer(Preference::ChangeIpInterval);
    m_facts.interval = static_cast<int>(minutes);
    m_facts.changesAutomatically = on;
    publish();
    cancelChangeTimer();
    if (minutes > 0 && SessionState::shared().hidden && on) {
        m_timerArmed = true;
        calls().callAfter(static_cast<double>(minutes) * secondsPerMinute, &m_changeIpTimer,
                          [this] { changeIpTimerFired(); });
    }
}

void HideIpSession::cancelChangeTimer() {
    m_timerArmed = false;
    calls().cancelAll(&m_changeIpTimer);
}

void HideIpSession::changeIpTimerFired() {
    m_timerArmed = false;
    post(&HideIpSession::changeKeepingLocation);
}

QStringList HideIpSession::getDiscardList() const {
    return m_discarded != nullptr ? m_discarded->getRowData() : QStringList();
}

} // namespace quorvane
