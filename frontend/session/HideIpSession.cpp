#include "HideIpSession.h"

#include "SessionDisplay.h"
#include "SessionState.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/privileges/FileUtils.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Preferences.h"
#include "frontend/support/SessionLog.h"
#include "frontend/tunnel/LentAddress.h"
#include "frontend/tunnel/Vpn.h"
#include "platform/DelayedCalls.h"
#include "platform/Platform.h"

#include "LocationChoice.h"

#include <exception>

namespace quorvane {

namespace {

constexpr double secondsPerMinute = 60.0;

platform::Platform &services() {
    return platform::Platform::current();
}

QString noAddress() {
    return QStringLiteral("0.0.0.0");
}

SessionState &shared() {
    return SessionState::shared();
}

} // namespace

HideIpSession::HideIpSession(SessionEnvironment &environment, SessionDisplay &display, QrvAPI &api, Vpn &vpn,
                             QObject *parent)
    : QObject(parent), m_environment(environment), m_display(display), m_api(api), m_vpn(vpn) {}

HideIpSession::~HideIpSession() {
    cancelChangeTimer();
}

void HideIpSession::quorvaneButtonPressed() {
    m_failures = 0;
    if (!m_api.inetConnect()) {
        Diagnostics::log(QStringLiteral("quorvaneButtonPressed no inet"));
        m_display.switchedOn(false);
        m_environment.alert(QStringLiteral("Quorvane"),
                            tr("No Internet connection detected, please check your Internet settings.\n"));
        terminateVpn();
        return;
    }
    if (!m_api.model().isServerListValid()) {
        Diagnostics::log(QStringLiteral("quorvaneButtonPressed no vpn server list"));
        m_display.switchedOn(false);
        m_environment.alert(QStringLiteral("Quorvane"), tr("No available server detected.\n"));
        return;
    }
    if (!m_display.state().hideButton.on) {
        setDefaultControls();
        return;
    }
    m_display.switchingOn();
    getNewIP();
}

void HideIpSession::pressed(bool on) {
    m_display.switchedOn(on);
    quorvaneButtonPressed();
}

void HideIpSession::quorvane() {
    if (!shared().hidden && m_display.state().hideButton.enabled) {
        pressed(true);
    }
}

void HideIpSession::stopQuorvane() {
    if (shared().hidden && m_display.state().hideButton.enabled) {
        pressed(false);
        m_display.hideRotationButtons();
    }
}

void HideIpSession::quorvaneMenuItemPressed() {
    pressed(!m_display.state().hideButton.on);
}

void HideIpSession::getNewIP() {
    // An attempt that needs the dialog first is dropped, not resumed; the dialog starts a new one itself.
    if (m_environment.authWindow()) {
        return;
    }
    m_display.searching();
    if (Preferences::boolean(Preference::UseSameIp)) {
        QMetaObject::invokeMethod(this, &HideIpSession::startVpn, Qt::QueuedConnection);
        m_display.advancedEnabled(true);
    } else {
        m_environment.downloadCertificateForSelectedItem();
    }
    m_environment.startAnimation();
}

void HideIpSession::startVpn() {
    Diagnostics::log(QStringLiteral("startVpn with button started"));
    try {
        m_vpn.stopVpn();
        m_vpn.startVpn();
    } catch (const std::exception &exception) {
        Diagnostics::log(QStringLiteral("exception in startVpn with button: ") +
                         QString::fromLocal8Bit(exception.what()));
    }
    m_display.tunnelStarting();
    if (m_vpn.lacksConfiguration()) {
        // Nothing was started, so no result will be reported: without this the window would show the search
        // for ever.
        m_display.waitingForLocation(
            tr("There is no VPN configuration to connect with. Choose a location to get a new one."));
    }
}

void HideIpSession::noteOutcome(const QString &what) {
    SessionLog::append(QStringLiteral("connection ") + what + QChar(u' ') + m_environment.selectedTitle() +
                       QChar(u'\n'));
}

QString HideIpSession::flagImageFor(const QString &countryCode) const {
    return m_environment.hasImage(countryCode) ? countryCode : QStringLiteral("xx");
}

void HideIpSession::showIp() {
    noteOutcome(QStringLiteral("success"));
    const QString lentIp = LentAddress::read(Preferences::text(Preference::VpnConfigPath));
    QString lookedUp = lentIp;
    lookedUp.remove(u'\n');

    const QrvVpnDataPointer group = m_environment.lastItemData();
    QString code = group ? group->countryCode : QString();
    if (code.isNull()) {
        code = m_api.model().getCodeByIP(lookedUp);
    }
    shared().currentCountryCode = code.toLower();
    QString location = m_environment.lastItemTitle();
    if (location.isNull()) {
        location = m_api.model().getLocationByIP(lookedUp);
    }
    shared().currentLocation = location;

    m_display.hidden(lentIp, m_realIp, flagImageFor(shared().currentCountryCode), location);
    shared().currentIp = lentIp;
    shared().hidden = true;
    if (m_environment.changesAutomatically()) {
        settingsDidChange();
    }
    m_environment.stopAnimation();
    m_failures = 0;
}

void HideIpSession::connectionError() {
    noteOutcome(QStringLiteral("error"));
    Diagnostics::log(QStringLiteral("rndLocationCounter= %1").arg(m_failures));
    const bool mayRetry = m_environment.selectedTitle() == LocationChoice::randomTitle() ||
                          m_environment.changesAutomatically();
    if (m_failures < retries && mayRetry) {
        ++m_failures;
        getNewIP();
        return;
    }
    FileUtils::checkUserDefaultsPremmision();
    m_failures = 0;
    m_environment.forgetWaitingPick();
    terminateVpn();
    m_environment.stopAnimation();
    m_environment.alertLater(tr("Location is not available."), tr("Please try a different location."));
    // The hidden flag and the stored preference stay as they were.
    m_display.failed(m_realIp);
}

void HideIpSession::terminateVpn() {
    cancelChangeTimer();
    m_vpn.stopVpn();
}

void HideIpSession::setDefaultControls() {
    // A waiting pick is cancelled only here and where an attempt fails, not in terminateVpn(): the location
    // pane queues a call of that, which may run when the next attempt already waits.
    m_environment.forgetWaitingPick();
    terminateVpn();
    m_display.notHidden(m_realIp);
    shared().hidden = false;
    m_environment.stopAnimation();
    // Not the key that is read at start-up: a reset does not change the user's choice to hide at every start.
    Preferences::store({{Preference::Quorvane, false}});
    Preferences::synchronize();
}

void HideIpSession::settingsDidChange() {
    const bool on = m_environment.changesAutomatically();
    const qint64 minutes = Preferences::integer(Preference::ChangeIpInterval);
    m_display.interval(static_cast<int>(minutes), on);
    cancelChangeTimer();
    if (minutes > 0 && shared().hidden && on) {
        m_timerArmed = true;
        services().delayedCalls->callAfter(static_cast<double>(minutes) * secondsPerMinute, &m_changeIpTimer,
                                           [this] { changeIpTimerFired(); });
    }
}

void HideIpSession::cancelChangeTimer() {
    m_timerArmed = false;
    services().delayedCalls->cancelAll(&m_changeIpTimer);
}

void HideIpSession::changeIpTimerFired() {
    m_timerArmed = false;
    stopQuorvane();
    quorvane();
}

void HideIpSession::reconectIfIpHidden() {
    if (shared().hidden) {
        getNewIP();
    }
}

void HideIpSession::updateLeaseTimerFired() {
    if (shared().hidden) {
        m_api.getLease(QString());
    }
}

void HideIpSession::reportNoAddress() {
    m_environment.alert(tr("Error"), tr("There was a problem connecting to the Quorvane server, please check "
                                        "your Internet connection or firewall settings."));
}

void HideIpSession::qrvFailed() {
    m_realIp = noAddress();
    shared().currentIp = m_realIp;
    m_display.currentIpKnown(m_realIp);
    reportNoAddress();
}

void HideIpSession::qrvAnswer() {
    // A copy: the alert's modal loop may bring the next answer.
    const QrvApiRequest answer = m_api.request();
    shared().currentIp = answer.clientIP;
    if (answer.clientIP.isEmpty()) {
        shared().currentIp = noAddress();
        reportNoAddress();
    }
    m_realIp = shared().currentIp;
    m_display.currentIpKnown(m_realIp);
    if (answer.status == 0) {
        continueWork(false);
    }
    switch (answer.kind) {
    case QrvApiRequest::Auth:
        m_environment.fillLocations(answer.servers);
        m_display.trayImage(QStringLiteral("Tray"));
        m_environment.stopAnimation();
        authPassed();
        break;
    case QrvApiRequest::Browser:
    case QrvApiRequest::Programs:
        authPassed();
        break;
    default:
        m_environment.terminateApplication(); // no other answer is expected here
        break;
    }
    m_display.answerHandled();
    Preferences::synchronize();
}

void HideIpSession::authPassed() {
    if (!m_api.model().hasLocations()) {
        return;
    }
    if (!m_environment.startedHidden()) {
        m_environment.showWindow();
    }
    continueWork(false);
}

void HideIpSession::continueWork(bool proceed) {
    if (proceed) {
        return;
    }
    m_display.controlsReady();
    if (shared().hidden) {
        pressed(true);
        m_environment.resetAnimationFrames();
    }
}

} // namespace quorvane
