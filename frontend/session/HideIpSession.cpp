#include "HideIpSession.h"

#include "LocationChoice.h"
#include "LocationList.h"
#include "LocationRotation.h"
#include "SessionState.h"
#include "SessionWindow.h"
#include "frontend/api/ConfigurationFetch.h"
#include "frontend/privileges/FileUtils.h"
#include "frontend/privileges/NameServers.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/support/AlertPresenter.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Preferences.h"
#include "frontend/support/SessionLog.h"
#include "platform/DelayedCalls.h"
#include "platform/NetworkLock.h"
#include "platform/Platform.h"

#include <algorithm>
#include <cmath>
#include <exception>

namespace quorvane {

namespace {

SessionState &shared() {
    return SessionState::shared();
}

QString transportLabel() {
    return Preferences::integer(Preference::TcpUdp) == 1 ? QStringLiteral("UDP") : QStringLiteral("TCP");
}

} // namespace

HideIpSession::HideIpSession(const SessionParts &parts, QObject *parent)
    : VpnProtocol(parent), m_parts(parts) {
    m_parts.vpn.setDelegate(this);
    connect(&m_parts.fetch, &ConfigurationFetch::stored, this,
            [this] { post(&HideIpSession::fetchEnded, m_fetchAttempt, true); });
    connect(&m_parts.fetch, &ConfigurationFetch::failed, this,
            [this] { post(&HideIpSession::fetchEnded, m_fetchAttempt, false); });
    connect(&m_parts.chooser, &LocationChooser::rebuilt, this, &HideIpSession::resumeIfWaiting);
    m_display = displayOf(m_facts);
}

HideIpSession::~HideIpSession() {
    cancelChangeTimer();
    stopWatching();
    platform::Platform::current().delayedCalls->cancelAll(&m_resetTimer);
    platform::Platform::current().networkLock->setObserver({});
    m_parts.vpn.setDelegate(nullptr);
}

void HideIpSession::begin(const std::function<void()> &cleared) {
    m_facts.requiresUs = Preferences::boolean(Preference::RequireUs);
    m_facts.firstUse = Preferences::text(Preference::VpnConfigPath).isEmpty();
    m_parts.animation.start();
    settingsDidChange();
    m_parts.events.post([this, cleared]() -> Task<> {
        co_await m_parts.vpn.stopVpn();
        watchLock();
        m_facts.locked = NetworkLock::isClosed();
        publish();
        cleared();
        if (m_facts.locked) {
            post(&HideIpSession::askAboutLock);
        }
    });
}

void HideIpSession::end(const std::function<void()> &ended) {
    m_parts.events.closeWith([this, ended]() -> Task<> {
        enter(Phase::Ended);
        co_await endTunnel();
        co_await liftLockAtEnd();
        co_await NameServers::putBackAfterSession(m_parts.events);
        ended();
    });
}

void HideIpSession::quorvaneButtonPressed(bool on) {
    post(&HideIpSession::press, on);
}

void HideIpSession::quorvane() {
    post(&HideIpSession::hide);
}

void HideIpSession::stopQuorvane() {
    post(&HideIpSession::stop);
}

void HideIpSession::stopHotKeyPressed() {
    post(&HideIpSession::stopByUser);
}

void HideIpSession::quorvaneMenuItemPressed() {
    m_parts.events.post([this]() -> Task<> {
        co_await press(!m_facts.switchedOn);
        publish();
    });
}

void HideIpSession::getNewIP() {
    m_parts.events.post([this]() -> Task<> {
        cancelWaitingReset();
        co_await beginAttempt();
        publish();
    });
}

void HideIpSession::showIp() {
    // Before the events that wait: one of them may end the tunnel that is up now.
    m_parts.events.postNext([this]() -> Task<> {
        co_await tunnelIsUp();
        publish();
    });
}

void HideIpSession::connectionError() {
    post(&HideIpSession::attemptFailed);
}

void HideIpSession::terminateVpn() {
    post(&HideIpSession::endTunnel);
}

void HideIpSession::setDefaultControls() {
    post(&HideIpSession::reset);
}

void HideIpSession::resetRequested() {
    post(&HideIpSession::resetAfterRefusal);
}

void HideIpSession::reconectIfIpHidden() {
    m_parts.events.post([this]() -> Task<> {
        if (shared().hidden) {
            co_await beginAttempt();
            publish();
        }
    });
}

void HideIpSession::authWindow() {
    m_parts.events.post([this]() -> Task<> {
        if (!co_await pairIsValid()) {
            co_await administratorDialog();
        }
    });
}

void HideIpSession::showFrame(const QString &image) {
    m_facts.frame = image;
    publish();
}

void HideIpSession::publish() {
    m_display = displayOf(m_facts);
    Q_EMIT displayChanged(m_display);
}

void HideIpSession::enter(Phase phase) {
    m_facts.phase = phase;
    switch (phase) {
    case Phase::Starting:
    case Phase::NotHidden:
        m_facts.lost = false;
        m_facts.look = Look::NotHidden;
        m_facts.controls = phase == Phase::NotHidden;
        m_facts.settingsEnabled = true;
        m_facts.switchedOn = m_facts.buttonStops = m_facts.itemStops = false;
        break;
    case Phase::Checking:
    case Phase::Dropped:
    case Phase::Ended:
        break;
    case Phase::Fetching:
        m_facts.lost = false;
        m_facts.controls = false;
        [[fallthrough]];
    case Phase::Unusable:
    case Phase::Connecting:
        // The tunnel of an earlier attempt may have been shown while this one fetched its configuration.
        m_facts.controls = m_facts.controls && m_facts.look != Look::Hidden;
        m_facts.look = Look::Searching;
        break;
    case Phase::Waiting:
    case Phase::Unconfigured:
        m_facts.look = Look::Searching;
        m_facts.settingsEnabled = true;
        m_facts.switchedOn = m_facts.buttonStops = m_facts.itemStops = true;
        break;
    case Phase::Hidden:
        m_facts.look = Look::Hidden;
        m_facts.firstUse = false;
        m_facts.controls = m_facts.buttonStops = true;
        break;
    }
    publish();
}

Task<> HideIpSession::alert(QString title, QString message) {
    auto window = m_parts.events.outside([this, title, message](const std::function<void()> &proceed) {
        m_parts.alerts.critical({title, message, {}}, proceed);
    });
    co_await window;
}

Task<bool> HideIpSession::pairIsValid() {
    co_return co_await m_parts.events.background(
        [] { return QrvCredentials::sharedInstance().credentialsIsValid(); });
}

Task<> HideIpSession::administratorDialog() {
    auto window = m_parts.events.outside(
        [this](const std::function<void()> &proceed) { m_parts.window.openAdministratorDialog(proceed); });
    co_await window;
}

Task<> HideIpSession::press(bool on) {
    if (!on) {
        m_lentBefore.clear();
    }
    co_await turn(on);
    if (!on && m_facts.phase == Phase::NotHidden) {
        co_await liftLock();
    }
}

Task<> HideIpSession::turn(bool on) {
    m_failures = 0;
    m_losses = 0;
    m_reconnects = false;
    m_parts.vpn.forgetRefusal();
    cancelWaitingReset();
    m_facts.switchedOn = on;
    publish();
    if (!m_parts.api.inetConnect()) {
        Diagnostics::log(QStringLiteral("quorvaneButtonPressed no inet"));
        m_facts.switchedOn = false;
        publish();
        const auto shown =
            alert(QStringLiteral("Quorvane"),
                  tr("No Internet connection detected, please check your Internet settings.\n"));
        co_await shown;
        // The window must not go on to show a tunnel or an attempt that is ended here.
        if (m_facts.look == Look::NotHidden) {
            co_await endTunnel();
        } else {
            co_await reset();
            putBackServersLater();
        }
        co_return;
    }
    if (!m_parts.api.model().isServerListValid()) {
        Diagnostics::log(QStringLiteral("quorvaneButtonPressed no vpn server list"));
        m_facts.switchedOn = false;
        publish();
        const auto shown = alert(QStringLiteral("Quorvane"), tr("No available server detected.\n"));
        co_await shown;
        co_return;
    }
    if (!on) {
        co_await reset();
        putBackServersLater();
        co_return;
    }
    disableControls();
    co_await beginAttempt();
}

Task<> HideIpSession::hide() {
    if (!shared().hidden && isPressable(m_facts)) {
        co_await press(true);
    }
}

Task<> HideIpSession::stop() {
    if (shared().hidden && isPressable(m_facts)) {
        co_await turn(false); // a closed network lock stays closed
    }
}

Task<> HideIpSession::stopByUser() {
    if (shared().hidden && isPressable(m_facts)) {
        co_await press(false);
    }
}

void HideIpSession::disableControls() {
    m_facts.controls = false;
    m_facts.settingsEnabled = false;
    publish();
}

Task<> HideIpSession::beginAttempt() {
    const quint64 attempt = ++m_attempt;
    enter(Phase::Checking);
    if (!co_await pairIsValid()) {
        if (m_facts.look == Look::Hidden && !m_facts.tunnelRuns) {
            co_await reset(); // its tunnel was ended for this attempt
        }
        // Not resumed after the dialog, which starts a new attempt itself.
        enter(Phase::Dropped);
        co_await administratorDialog();
        co_return;
    }
    if (!co_await lockForAttempt()) {
        co_return;
    }
    enter(Phase::Fetching);
    m_parts.animation.start();
    if (Preferences::boolean(Preference::UseSameIp)) {
        m_facts.settingsEnabled = true;
        publish();
        post(&HideIpSession::reuseConfiguration, attempt);
    } else {
        co_await pickAndFetch();
    }
}

Task<> HideIpSession::pickAndFetch() {
    if (!m_parts.api.inetConnect()) {
        Diagnostics::log(QStringLiteral("downloadCertificateForSelectedItem no inet"));
        co_await attemptFailed();
        co_return;
    }
    switch (m_parts.rotation.pick()) {
    case LocationChoice::Result::NothingToPick:
        enter(Phase::Unusable);
        break;
    case LocationChoice::Result::NoUnitedStates:
        co_await attemptFailed();
        break;
    case LocationChoice::Result::AllUsed:
        enter(Phase::Waiting);
        break;
    case LocationChoice::Result::Picked:
        disableControls();
        m_fetchAttempt = m_attempt;
        m_parts.fetch.start(m_parts.rotation.lastItem().title, m_parts.rotation.lastItem().data,
                            transportLabel());
        break;
    }
}

Task<> HideIpSession::fetchEnded(quint64 attempt, bool stored) {
    if (!current(attempt)) {
        co_return;
    }
    if (!stored) {
        co_await attemptFailed();
        co_return;
    }
    co_await startTunnel();
    m_facts.settingsEnabled = true;
}

Task<> HideIpSession::reuseConfiguration(quint64 attempt) {
    if (current(attempt)) {
        co_await startTunnel();
    }
}

Task<> HideIpSession::startTunnel() {
    Diagnostics::log(QStringLiteral("startVpn with button started"));
    enter(Phase::Connecting);
    m_parts.animation.start(); // it ended if an earlier tunnel has been shown meanwhile
    bool threw = false;
    co_await NameServers::setForSession(m_parts.events);
    stopWatching(); // of an earlier tunnel
    m_facts.lost = false;
    m_facts.tunnelRuns = true;
    ++m_tunnelStarts;
    try {
        co_await m_parts.vpn.stopVpn();
        co_await m_parts.vpn.startVpn();
    } catch (const std::exception &exception) {
        Diagnostics::log(QStringLiteral("exception in startVpn with button: ") +
                         QString::fromLocal8Bit(exception.what()));
        threw = true;
    }
    m_facts.itemStops = true;
    m_facts.switchedOn = true;
    if (threw) {
        co_await attemptFailed();
    } else if (m_parts.vpn.lacksConfiguration()) {
        // Nothing was started, so no result will be reported.
        enter(Phase::Unconfigured);
    }
}

void HideIpSession::noteOutcome(const QString &what) const {
    const LocationList &list = m_parts.chooser.list();
    SessionLog::append(QStringLiteral("connection ") + what, list.title(list.currentRow()));
}

Task<> HideIpSession::attemptFailed() {
    noteOutcome(QStringLiteral("error"));
    Diagnostics::log(QStringLiteral("rndLocationCounter= %1").arg(m_failures));
    const LocationList &list = m_parts.chooser.list();
    const bool mayRetry = m_reconnects || list.title(list.currentRow()) == LocationChoice::randomTitle() ||
                          Preferences::boolean(Preference::ChangeIpEvery);
    if (m_failures < retries && mayRetry) {
        ++m_failures;
        co_await beginAttempt();
        co_return;
    }
    FileUtils::checkUserDefaultsPremmision();
    m_failures = 0;
    m_reconnects = false;
    ++m_attempt;
    co_await endTunnel();
    stopAnimation();
    m_parts.alerts.criticalLater({QStringLiteral("Quorvane"), tr("Location is not available."),
                                  tr("Please try a different location.")});
    // The hidden flag and the stored preference stay as they were.
    forgetLentAddress();
    enter(Phase::NotHidden);
    putBackServersLater();
}

void HideIpSession::putBackServersLater() {
    if (!NameServers::areRestored()) {
        return;
    }
    m_parts.events.post([this]() -> Task<> {
        if (m_facts.phase == Phase::NotHidden) { // else the stop was a part of a change
            co_await NameServers::putBackAfterSession(m_parts.events);
        }
    });
}

Task<> HideIpSession::endTunnel() {
    stopTimers();
    co_await m_parts.vpn.stopVpn();
    tunnelWasEnded();
}

Task<> HideIpSession::reset() {
    dropAttempt();
    co_await endTunnel();
    if (m_parts.vpn.sameRefusals() == 0) {
        cancelWaitingReset(); // this reset did all that it would do; later it would end another attempt
    }
    showReset();
}

void HideIpSession::dropAttempt() {
    ++m_attempt;
    m_reconnects = false;
}

void HideIpSession::showReset() {
    forgetLentAddress();
    m_facts.copyEnabled = false;
    shared().hidden = false;
    enter(Phase::NotHidden);
    stopAnimation();
    // Not the key that is read at start-up: a reset does not change the user's choice to hide at every start.
    Preferences::store({{Preference::Quorvane, false}});
    Preferences::synchronize();
}

Task<> HideIpSession::resetAfterRefusal() {
    if (m_parts.vpn.refusedKills() == m_seenRefusals) {
        co_await reset(); // another command was refused
        co_return;
    }
    ++m_seenRefusals;
    if (m_resetWaits) {
        co_return;
    }
    // The reset begins with the same kill. It waits, and longer each time, because nothing else ends that.
    m_resetWaits = true;
    const double seconds =
        std::min(longestResetSeconds, firstResetSeconds * std::exp2(m_parts.vpn.sameRefusals() - 1));
    platform::Platform::current().delayedCalls->callAfter(seconds, &m_resetTimer, [this] {
        m_resetWaits = false;
        setDefaultControls();
    });
}

void HideIpSession::cancelWaitingReset() {
    platform::Platform::current().delayedCalls->cancelAll(&m_resetTimer);
    m_resetWaits = false;
}

void HideIpSession::stopAnimation() {
    m_parts.animation.stop();
    m_facts.frame = QString();
    publish();
}

void HideIpSession::forgetLentAddress() {
    m_facts.shownAddress = m_facts.realAddress;
    m_facts.flag = QString();
}

} // namespace quorvane
