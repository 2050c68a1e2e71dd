#include "HideIpSession.h"

#include "SessionDisplay.h"
#include "SessionState.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/privileges/FileUtils.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/SessionLog.h"
#include "frontend/tunnel/LentAddress.h"
#include "frontend/tunnel/Vpn.h"
#include "platform/DelayedCalls.h"
#include "platform/Platform.h"
#include "platform/PreferencesStore.h"

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

HideIpSession::HideIpSession(SessionEnvironment &window, SessionDisplay &shown, QrvAPI &client, Vpn &tunnel,
                             QObject *parent)
    : QObject(parent), environment(window), display(shown), api(client), vpn(tunnel) {}

HideIpSession::~HideIpSession() {
    cancelChangeTimer();
}

void HideIpSession::quorvaneButtonPressed() {
    failures = 0;
    if (!api.inetConnect()) {
        Diagnostics::log(QStringLiteral("quorvaneButtonPressed no inet"));
        display.switchedOn(false);
        environment.alert(QStringLiteral("Quorvane"),
                          tr("No Internet connection detected, please check your Internet settings.\n"));
        terminateVpn();
        return;
    }
    if (!api.model().isServerListValid()) {
        Diagnostics::log(QStringLiteral("quorvaneButtonPressed no vpn server list"));
        display.switchedOn(false);
        environment.alert(QStringLiteral("Quorvane"), tr("No available server detected.\n"));
        return;
    }
    if (!display.state().hideButton.on) {
        setDefaultControls();
        return;
    }
    display.switchingOn();
    getNewIP();
}

void HideIpSession::pressed(bool on) {
    display.switchedOn(on);
    quorvaneButtonPressed();
}

void HideIpSession::quorvane() {
    if (!shared().hidden && display.state().hideButton.enabled) {
        pressed(true);
    }
}

void HideIpSession::stopQuorvane() {
    if (shared().hidden && display.state().hideButton.enabled) {
        pressed(false);
        display.hideRotationButtons();
    }
}

void HideIpSession::quorvaneMenuItemPressed() {
    pressed(!display.state().hideButton.on);
}

void HideIpSession::getNewIP() {
    // An attempt that needs the dialog first is dropped, not resumed; the dialog starts a new one itself.
    if (environment.authWindow()) {
        return;
    }
    display.searching();
    if (services().preferences->boolean(QStringLiteral("useSameIP"))) {
        QMetaObject::invokeMethod(this, &HideIpSession::startVpn, Qt::QueuedConnection);
        display.advancedEnabled(true);
    } else {
        environment.downloadCertificateForSelectedItem();
    }
    environment.startAnimation();
}

void HideIpSession::startVpn() {
    Diagnostics::log(QStringLiteral("startVpn with button started"));
    try {
        vpn.stopVpn();
        vpn.startVpn();
    } catch (const std::exception &exception) {
        Diagnostics::log(QStringLiteral("exception in startVpn with button: ") +
                         QString::fromLocal8Bit(exception.what()));
    }
    display.tunnelStarting();
    if (vpn.lacksConfiguration()) {
        // Nothing was started and nothing will be heard of it: without this the search would never end.
        display.waitingForLocation(
            tr("There is no VPN configuration to connect with. Choose a location to get a new one."));
    }
}

void HideIpSession::noteOutcome(const QString &what) {
    SessionLog::append(QStringLiteral("connection ") + what + QChar(u' ') + environment.selectedTitle() +
                       QChar(u'\n'));
}

QString HideIpSession::flagImageFor(const QString &countryCode) const {
    return environment.hasImage(countryCode) ? countryCode : QStringLiteral("xx");
}

void HideIpSession::showIp() {
    noteOutcome(QStringLiteral("success"));
    const QString lentIp = LentAddress::read(services().preferences->string(QStringLiteral("vpnConfigPath")));
    QString lookedUp = lentIp;
    lookedUp.remove(u'\n');

    const QrvVpnDataPointer group = environment.lastItemData();
    QString code = group ? group->countryCode : QString();
    if (code.isNull()) {
        code = api.model().getCodeByIP(lookedUp);
    }
    shared().currentCountryCode = code.toLower();
    QString location = environment.lastItemTitle();
    if (location.isNull()) {
        location = api.model().getLocationByIP(lookedUp);
    }
    shared().currentLocation = location;

    display.hidden(lentIp, realIp, flagImageFor(shared().currentCountryCode), location);
    shared().currentIp = lentIp;
    shared().hidden = true;
    if (environment.changesAutomatically()) {
        settingsDidChange();
    }
    environment.stopAnimation();
    failures = 0;
}

void HideIpSession::connectionError() {
    noteOutcome(QStringLiteral("error"));
    Diagnostics::log(QStringLiteral("rndLocationCounter= %1").arg(failures));
    const bool maySearchOn =
        environment.selectedTitle() == LocationChoice::randomTitle() || environment.changesAutomatically();
    if (failures < retries && maySearchOn) {
        ++failures;
        getNewIP();
        return;
    }
    FileUtils::checkUserDefaultsPremmision();
    failures = 0;
    environment.forgetWaitingPick();
    terminateVpn();
    environment.stopAnimation();
    environment.alertLater(tr("Location is not available."), tr("Please try a different location."));
    // The hidden flag and the stored preference stay as they were.
    display.failed(realIp);
}

void HideIpSession::terminateVpn() {
    cancelChangeTimer();
    vpn.stopVpn();
}

void HideIpSession::setDefaultControls() {
    // Only here and where an attempt fails: the location pane's queued end of the old tunnel may come when
    // the next attempt already waits.
    environment.forgetWaitingPick();
    terminateVpn();
    display.notHidden(realIp);
    shared().hidden = false;
    environment.stopAnimation();
    // Not the key that is read at start-up: a reset does not undo the wish to hide at every start.
    services().preferences->setValue(QStringLiteral("quorvane"), false);
    services().preferences->synchronize();
}

void HideIpSession::settingsDidChange() {
    const bool on = environment.changesAutomatically();
    const qint64 minutes = services().preferences->integer(QStringLiteral("changeIpInterval"));
    display.interval(static_cast<int>(minutes), on);
    cancelChangeTimer();
    if (minutes > 0 && shared().hidden && on) {
        timerArmed = true;
        services().delayedCalls->callAfter(static_cast<double>(minutes) * secondsPerMinute, &changeIpTimer,
                                           [this] { changeIpTimerFired(); });
    }
}

void HideIpSession::cancelChangeTimer() {
    timerArmed = false;
    services().delayedCalls->cancelAll(&changeIpTimer);
}

void HideIpSession::changeIpTimerFired() {
    timerArmed = false;
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
        api.getLease(QString());
    }
}

void HideIpSession::reportNoAddress() {
    environment.alert(tr("Error"), tr("There was a problem connecting to the Quorvane server, please check "
                                      "your Internet connection or firewall settings."));
}

void HideIpSession::qrvFailed() {
    realIp = noAddress();
    shared().currentIp = realIp;
    display.currentIpKnown(realIp);
    reportNoAddress();
}

void HideIpSession::qrvAnswer() {
    // A copy: the alert's modal loop may bring the next answer.
    const QrvApiRequest answer = api.request();
    shared().currentIp = answer.clientIP;
    if (answer.clientIP.isEmpty()) {
        shared().currentIp = noAddress();
        reportNoAddress();
    }
    realIp = shared().currentIp;
    display.currentIpKnown(realIp);
    if (answer.status == 0) {
        continueWork(false);
    }
    switch (answer.kind) {
    case QrvApiRequest::Auth:
        environment.fillLocations(answer.servers);
        display.trayImage(QStringLiteral("Tray"));
        environment.stopAnimation();
        authPassed();
        break;
    case QrvApiRequest::Browser:
    case QrvApiRequest::Programs:
        authPassed();
        break;
    default:
        environment.terminateApplication(); // no other answer is expected here
        break;
    }
    display.answerHandled();
    services().preferences->synchronize();
}

void HideIpSession::authPassed() {
    if (!api.model().hasLocations()) {
        return;
    }
    if (!environment.startedHidden()) {
        environment.showWindow();
    }
    continueWork(false);
}

void HideIpSession::continueWork(bool proceed) {
    if (proceed) {
        return;
    }
    display.controlsReady();
    if (shared().hidden) {
        pressed(true);
        environment.resetAnimationFrames();
    }
}

} // namespace quorvane
