// The session's events while a tunnel is up.
#include "HideIpSession.h"

#include "LocationList.h"
#include "LocationRotation.h"
#include "SessionState.h"
#include "SessionWindow.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Preferences.h"
#include "frontend/support/TextFile.h"
#include "frontend/tunnel/LossReason.h"
#include "platform/BackgroundWork.h"
#include "platform/DelayedCalls.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <algorithm>

namespace quorvane {

namespace {

SessionState &shared() {
    return SessionState::shared();
}

platform::Platform &services() {
    return platform::Platform::current();
}

} // namespace

Task<> HideIpSession::tunnelIsUp() {
    // Also when another attempt has begun: the tunnel that is up counts until that one starts its own.
    if (!m_facts.tunnelRuns) {
        co_return;
    }
    watchTunnel();
    noteOutcome(QStringLiteral("success"));
    auto address = m_parts.events.background(
        [lentAddress = m_parts.lentAddress, path = Preferences::text(Preference::VpnConfigPath)] {
            return lentAddress(path);
        });
    const QString lentIp = co_await address;
    showLentAddress(lentIp);
    shared().hidden = true;
    enter(Phase::Hidden);
    if (Preferences::boolean(Preference::ChangeIpEvery)) {
        settingsDidChange();
    }
    stopAnimation();
    m_failures = 0;
    m_reconnects = false;
    if (m_facts.addressMissing) {
        readAddressLater(firstAddressSeconds);
    }
    notifyChange();
}

void HideIpSession::notifyChange() {
    const QString lent = m_facts.shownAddress.trimmed();
    if (lent.isEmpty()) {
        return;
    }
    if (!m_lentBefore.isEmpty() && lent != m_lentBefore) {
        services().workspace->notify(
            tr("Your IP was changed"),
            tr("%1, %2").arg(lent, LocationList::shownTitle(m_facts.location, m_facts.flag)));
    }
    m_lentBefore = lent;
}

void HideIpSession::showLentAddress(const QString &lentIp) {
    QString lookedUp = lentIp;
    lookedUp.remove(u'\n');
    const LocationChoice::Entry &last = m_parts.rotation.lastItem();
    const ServerModel &model = m_parts.api.model();
    QString code = last.data ? last.data->countryCode : QString();
    if (code.isNull()) {
        code = model.getCodeByIP(lookedUp);
    }
    shared().currentCountryCode = code.toLower();
    m_facts.flag = m_parts.window.hasImage(shared().currentCountryCode) ? shared().currentCountryCode
                                                                        : QStringLiteral("xx");
    shared().currentLocation = last.title.isNull() ? model.getLocationByIP(lookedUp) : last.title;
    if (!shared().currentLocation.isEmpty()) {
        m_facts.location = shared().currentLocation;
    }
    shared().currentIp = lentIp;
    m_facts.shownAddress = lentIp;
    m_facts.addressMissing = lentIp.isEmpty();
}

void HideIpSession::watchTunnel() {
    m_tunnelProcesses = m_parts.vpn.ownProcesses();
    if (m_tunnelProcesses.seesAll && m_tunnelProcesses.ids.isEmpty()) {
        showLoss(m_tunnelStarts, platform::TunnelLoss::ProcessEnded); // after the tunnel came up
        return;
    }
    services().delayedCalls->callAfter(stableSeconds, &m_stableTimer, [this] { m_losses = 0; });
    services().tunnelWatch->watch(
        m_tunnelProcesses.ids,
        [this, tunnel = m_tunnelStarts](platform::TunnelLoss loss) { showLoss(tunnel, loss); });
}

void HideIpSession::stopWatching() {
    platform::Platform::current().tunnelWatch->stop();
    platform::Platform::current().delayedCalls->cancelAll(&m_addressTimer);
    platform::Platform::current().delayedCalls->cancelAll(&m_stableTimer);
}

void HideIpSession::stopTimers() {
    cancelChangeTimer();
    stopWatching();
}

void HideIpSession::tunnelWasEnded() {
    m_facts.tunnelRuns = m_parts.vpn.sameRefusals() > 0;
    if (m_facts.tunnelRuns && m_facts.look == Look::Hidden) {
        watchTunnel(); // it is shown as before, and may have ended meanwhile
    }
    publish();
}

void HideIpSession::showLoss(quint64 tunnel, platform::TunnelLoss loss) {
    if (tunnel != m_tunnelStarts) {
        return;
    }
    m_facts.lost = true;
    publish();
    // Before the events that wait: they would be handled as if the address were still hidden.
    m_parts.events.postNext([this, tunnel, loss]() -> Task<> {
        const auto steps = tunnelWasLost(tunnel, loss);
        co_await steps;
        publish();
    });
}

Task<> HideIpSession::tunnelWasLost(quint64 tunnel, platform::TunnelLoss loss) {
    if (tunnel != m_tunnelStarts || m_facts.look != Look::Hidden) {
        co_return; // it was stopped meanwhile, or a later attempt has begun
    }
    forgetLentAddress();
    shared().hidden = false;
    enter(Phase::NotHidden);
    // When OpenVPN ends, its device and its routes go a moment before.
    const auto end = m_parts.vpn.haveEnded(m_tunnelProcesses);
    const bool hasEnded = co_await end;
    const int losses = m_losses + 1;
    dropAttempt();
    stopTimers();
    const auto rest = m_parts.vpn.stopLostVpn(m_tunnelProcesses);
    co_await rest;
    tunnelWasEnded();
    showReset();
    reportLoss(hasEnded ? platform::TunnelLoss::ProcessEnded : loss);
    if (losses > retries || Preferences::boolean(Preference::NoReconnect)) {
        putBackServersLater();
    } else {
        m_losses = losses;
        m_failures = 0;
        m_reconnects = true;
        disableControls();
        co_await beginAttempt();
    }
}

void HideIpSession::reportLoss(platform::TunnelLoss loss) {
    const LossReason reason =
        LossReason::of(loss, TextFile::read(services().account.documents() + QStringLiteral("/openvpn.log")));
    Diagnostics::log(QStringLiteral("the tunnel was lost: ") + reason.logText);
    services().workspace->notify(tr("Your real IP is visible"), reason.shownText);
}

void HideIpSession::readAddressLater(double seconds) {
    services().delayedCalls->callAfter(seconds, &m_addressTimer, [this, seconds, tunnel = m_tunnelStarts] {
        const auto lentIp = std::make_shared<QString>();
        services().background->run(
            [lentIp, lentAddress = m_parts.lentAddress, path = Preferences::text(Preference::VpnConfigPath)] {
                *lentIp = lentAddress(path);
            },
            this,
            [this, tunnel, seconds, lentIp] {
                post(&HideIpSession::addressWasRead, tunnel, *lentIp, seconds);
            });
    });
}

Task<> HideIpSession::addressWasRead(quint64 tunnel, QString lentIp, double seconds) {
    if (tunnel != m_tunnelStarts || !m_facts.tunnelRuns || m_facts.look != Look::Hidden || m_facts.lost) {
        co_return;
    }
    if (lentIp.isEmpty()) {
        readAddressLater(std::min(2 * seconds, longestAddressSeconds));
    } else {
        showLentAddress(lentIp);
        notifyChange();
    }
}

} // namespace quorvane
