#include "QrvMainWindowController.h"

#include "frontend/privileges/ScriptUtil.h"
#include "frontend/privileges/dialog/QrvAuthenticationWindowController.h"
#include "frontend/session/LaunchAgent.h"
#include "frontend/session/SessionState.h"
#include "frontend/session/SettingsDefaults.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Reachability.h"
#include "frontend/ui/mainwindow/MainWindow.h"
#include "frontend/ui/mainwindow/QrvAboutWindowController.h"
#include "frontend/ui/settings/QrvSettingsWindowController.h"
#include "frontend/ui/settings/QrvTableDataSource.h"
#include "frontend/ui/settings/SettingsWindow.h"
#include "frontend/ui/shared/Alerts.h"
#include "frontend/ui/shared/FirstPaint.h"
#include "frontend/ui/shared/Images.h"
#include "frontend/ui/shared/WebPages.h"
#include "frontend/ui/tray/TrayPresence.h"
#include "platform/DelayedCalls.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/PreferencesStore.h"
#include "platform/UserDefaultsController.h"
#include "platform/Workspace.h"

#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QRandomGenerator>

namespace quorvane {

namespace {

const QString transportKey = QStringLiteral("tcpUdp");
const QString changeEveryKey = QStringLiteral("changeIpEvery");
const QString requireUsKey = QStringLiteral("requireUS");
const QString nonRepeatKey = QStringLiteral("ipNonRepeat");

platform::Platform &services() {
    return platform::Platform::current();
}

QPointer<QrvMainWindowController> &shared() {
    static QPointer<QrvMainWindowController> controller;
    return controller;
}

void endApplication() {
    // Not quit(): that asks every window to close first, and the main window only hides.
    QCoreApplication::exit();
}

TrayPresence::Status statusOf(const DisplayState &state) {
    if (state.stateImage == QLatin1String("applock")) {
        return TrayPresence::Status::Hidden;
    }
    return state.stateImage == QLatin1String("appwait") ? TrayPresence::Status::Searching
                                                        : TrayPresence::Status::NotHidden;
}

void postInternetStatus(int status) {
    // Reachability calls on its own queue; the rest of the program lives on the main thread.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [status] {
            Diagnostics::log(status == 1 ? QStringLiteral("*** checkReachability: inet YES")
                                         : QStringLiteral("*** checkReachability: inet NO"));
            services().notifications->post(QStringLiteral("inetStatus"), status);
        },
        Qt::QueuedConnection);
}

} // namespace

QrvMainWindowController::QrvMainWindowController(QrvAPI &client)
    : api(client), mainWindow(std::make_unique<MainWindow>()), tray(new TrayPresence(this)), vpn(processes),
      fetch(client), hideIpSession(std::make_unique<HideIpSession>(static_cast<SessionEnvironment &>(*this),
                                                                   sessionDisplay, client, vpn)),
      rotation(std::make_unique<LocationRotation>(
          LocationRotation::Parts{client, static_cast<RotationControls &>(*mainWindow), sessionDisplay,
                                  *hideIpSession, static_cast<DiscardedAddresses &>(*this), fetch},
          [] { return QRandomGenerator::global()->generate(); })) {}

QrvMainWindowController::~QrvMainWindowController() {
    if (reach) {
        reach->stopNotifier();
    }
    services().notifications->removeObservers(this);
    services().delayedCalls->cancelAll(this);
    api.setDelegate(nullptr);
}

QrvMainWindowController *QrvMainWindowController::sharedMainWindow() {
    return shared();
}

void QrvMainWindowController::setSharedMainWindow(QrvMainWindowController *controller) {
    shared() = controller;
}

void QrvMainWindowController::awakeFromNib() {
    checkReachability();
    mainWindow->setWindowTitle(
        tr("%1 (ver.%2)").arg(mainWindow->windowTitle(), services().bundle->version()));
    loadPreferences();
    connectWindow();
    connectTray();
    connectFetch();
    api.initWithDelegate(this);
    mainWindow->locationPane().connectTo(&api, this);
    SessionState::shared().hidden = services().preferences->boolean(QStringLiteral("hide"));
    sessionDisplay.starting();
    SettingsDefaults::initialize();
    api.cmdAuth(QString()); // sends nothing before the network is known; then it is sent on its own
    startAnimation();
    hideIpSession->settingsDidChange();
    mainWindow->raiseFloatingLevel();
    observeNotifications();
    vpn.setDelegate(this);
    vpn.stopVpn(); // clears a tunnel left over from an earlier run
    hideIpSession->clearFailedConnections();
    scheduleStartupChecks();
    if (!startedHidden()) {
        FirstPaint::then(*mainWindow, [this] { settings(); });
        mainWindow->bringForward();
    } else {
        mainWindow->putAway();
        settings();
    }
}

QrvSettingsWindowController &QrvMainWindowController::settings() {
    if (!settingsWindow) {
        settingsWindow =
            std::make_unique<QrvSettingsWindowController>(static_cast<SettingsDelegate &>(*this), api);
        settingsWindow->awakeFromNib();
    }
    return *settingsWindow;
}

void QrvMainWindowController::connectWindow() {
    connect(&sessionDisplay, &SessionDisplay::changed, this, [this](const DisplayState &state) {
        mainWindow->draw(state);
        tray->setImage(state.trayImage);
        tray->hideIpMenuItem()->setText(state.hideItem.title);
        tray->hideIpMenuItem()->setEnabled(state.hideItem.enabled);
        tray->changeIpMenuItem()->setEnabled(state.changeItemEnabled);
        tray->copyIpMenuItem()->setEnabled(state.copyItemEnabled);
        tray->setStatus(statusOf(state), state.currentIp);
    });
    connect(mainWindow.get(), &MainWindow::hideButtonPressed, this, [this](bool on) {
        sessionDisplay.switchedOn(on);
        hideIpSession->quorvaneButtonPressed();
    });
    connect(&mainWindow->locationPane(), &QrvLocationPaneController::rebuilt, rotation.get(),
            &LocationRotation::goOnIfWaiting);
    connect(mainWindow.get(), &MainWindow::changeIpPressed, rotation.get(),
            &LocationRotation::changeIpButtonPressed);
    connect(mainWindow.get(), &MainWindow::discardIpPressed, rotation.get(),
            &LocationRotation::discardIpButtonPressed);
    connect(mainWindow.get(), &MainWindow::changeEverySwitched, rotation.get(),
            &LocationRotation::changeEveryPressed);
    connect(mainWindow.get(), &MainWindow::changeEverySwitched, this,
            [this] { settings().refreshBoundControls(); });
    connect(mainWindow.get(), &MainWindow::requireUSSwitched, rotation.get(),
            &LocationRotation::requireUSBasedIPButtonPressed);
    connect(mainWindow.get(), &MainWindow::intervalEntered, rotation.get(),
            &LocationRotation::intervalEntered);
    connect(mainWindow.get(), &MainWindow::nonRepeatSwitched, this, [](bool on) {
        services().preferences->setValue(nonRepeatKey, on);
        services().userDefaults->save();
    });
    connect(mainWindow.get(), &MainWindow::transportChosen, this, [](int index) {
        services().preferences->setValue(transportKey, index);
        services().userDefaults->save();
    });
    connect(mainWindow.get(), &MainWindow::websitePressed, this,
            [this] { services().workspace->openUrl(WebPages::root(api.macSerial())); });
    connect(mainWindow.get(), &MainWindow::aboutPressed, this,
            &QrvMainWindowController::aboutMenuItemPressed);
    connect(mainWindow.get(), &MainWindow::advancedSettingsPressed, this,
            &QrvMainWindowController::advancedSettingsButtonPressed);
    connect(mainWindow.get(), &MainWindow::quitRequested, this, [] { endApplication(); });
}

void QrvMainWindowController::loadPreferences() {
    auto &preferences = *services().preferences;
    mainWindow->setTransportIndex(static_cast<int>(preferences.integer(transportKey)));
    mainWindow->setChangesAutomatically(preferences.boolean(changeEveryKey));
    mainWindow->setRequiresUS(preferences.boolean(requireUsKey));
    mainWindow->setNonRepeat(preferences.boolean(nonRepeatKey));
}

void QrvMainWindowController::connectTray() {
    connect(&animation, &TrayAnimation::frame, &sessionDisplay, &SessionDisplay::trayImage);
    mainWindow->setReachableByTray(tray->isAvailable());
    connect(tray, &TrayPresence::availabilityChanged, mainWindow.get(), &MainWindow::setReachableByTray);
    connect(tray, &TrayPresence::doubleClicked, this, &QrvMainWindowController::showSelfMenuItemPressed);
    connect(tray->hideIpMenuItem(), &QAction::triggered, hideIpSession.get(),
            &HideIpSession::quorvaneMenuItemPressed);
    connect(tray->changeIpMenuItem(), &QAction::triggered, rotation.get(),
            &LocationRotation::changeIpMenuItemPressed);
    connect(tray->checkIpMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::checkIpMenuItemPressed);
    connect(tray->copyIpMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::copyIpMenuItemPressed);
    connect(tray->refreshMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::refreshLocationsPressed);
    connect(tray->settingsMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::advancedSettingsMenuItemPressed);
    connect(tray->aboutMenuItem(), &QAction::triggered, this, &QrvMainWindowController::aboutMenuItemPressed);
    connect(tray->showSelfMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::showSelfMenuItemPressed);
    connect(tray->quitMenuItem(), &QAction::triggered, this, [] { endApplication(); });
}

void QrvMainWindowController::connectFetch() {
    connect(&fetch, &ConfigurationFetch::prepared, &sessionDisplay, &SessionDisplay::fetching);
    connect(&fetch, &ConfigurationFetch::stored, hideIpSession.get(), &HideIpSession::startVpn);
    connect(&fetch, &ConfigurationFetch::finished, &sessionDisplay,
            [this] { sessionDisplay.advancedEnabled(true); });
    connect(&fetch, &ConfigurationFetch::failed, hideIpSession.get(), &HideIpSession::connectionError);
}

void QrvMainWindowController::observeNotifications() {
    const auto observe = [this](const char *name, auto handler) {
        services().notifications->addObserver(QString::fromLatin1(name), this,
                                              [handler](const QVariant &) { handler(); });
    };
    observe("startVpn", [this] { hideIpSession->getNewIP(); });
    observe("applicationWillTerminate", [this] { terminateVpn(); });
    observe("showIp", [this] { hideIpSession->showIp(); });
    observe("setDefaultControls", [this] { hideIpSession->setDefaultControls(); });
    observe("checkCredential", [this] {
        if (settingsWindow && settingsWindow->window().isVisible()) {
            settingsWindow->authWindow(); // in front of the window that the user looks at
        } else {
            authWindow();
        }
    });
    observe("showSettings", [this] { showSettings(); });
    // Nobody posts this one here: the controller has no such operation, and never had.
    observe("getSystemDns", [] { Q_ASSERT_X(false, "QrvMainWindowController", "getSystemDns"); });
}

void QrvMainWindowController::scheduleStartupChecks() {
    auto &calls = *services().delayedCalls;
    calls.callAfter(checkDelaySeconds, this, [this] { checkDnsSettings(); });
    calls.callAfter(checkDelaySeconds, this, [this] { checkCredentials(); });
    calls.callAfter(checkDelaySeconds, this, [this] { refreshFrontWindow(); });
}

void QrvMainWindowController::checkReachability() {
    if (reach) {
        reach->stopNotifier();
    }
    reach = Reachability::reachabilityWithHostname(services().service.reachabilityHost);
    if (!reach) {
        return;
    }
    reach->reachableBlock = [](Reachability &) {
        postInternetStatus(1);
    };
    reach->unreachableBlock = [](Reachability &) {
        postInternetStatus(0);
    };
    reach->startNotifier();
}

void QrvMainWindowController::checkDnsSettings() {
    Diagnostics::log(QStringLiteral("checkDnsSettings"));
    ScriptUtil script;
    if (!script.getSystemDns()) {
        authWindow();
        script.setSystemDns();
    }
}

void QrvMainWindowController::checkCredentials() {
    authWindow(); // tests the pair itself
}

void QrvMainWindowController::refreshFrontWindow() {
    mainWindow->dropFloatingLevel();
    settings(); // not loaded yet where nothing was drawn
}

bool QrvMainWindowController::authWindow() {
    return QrvAuthenticationWindowController::runUnlessValid(Alerts::shared(), *mainWindow);
}

void QrvMainWindowController::downloadCertificateForSelectedItem() {
    rotation->downloadCertificateForSelectedItem();
}

void QrvMainWindowController::forgetWaitingPick() {
    rotation->forgetWaitingPick();
}

void QrvMainWindowController::checkIpMenuItemPressed() {
    services().workspace->openUrl(WebPages::ipCheck(api.macSerial()));
}

void QrvMainWindowController::copyIpMenuItemPressed() {
    // Takes the clipboard over and puts nothing there; the address is not copied.
    QGuiApplication::clipboard()->clear();
}

void QrvMainWindowController::aboutMenuItemPressed() {
    if (!aboutWindow) {
        aboutWindow = std::make_unique<QrvAboutWindowController>(*mainWindow, api);
    }
    aboutWindow->showWindow();
}

void QrvMainWindowController::refreshLocationsPressed() {
    if (!SessionState::shared().hidden) {
        api.cmdAuth(QString());
    }
}

void QrvMainWindowController::hotKeyPressed(quint32 identifier) {
    switch (identifier) {
    case 1:
        hideIpSession->quorvane();
        break;
    case 2:
        rotation->changeIpMenuItemPressed();
        break;
    case 3:
        hideIpSession->stopQuorvane();
        break;
    case 4:
        rotation->discardIpButtonPressed();
        break;
    case 5:
        showSelfMenuItemPressed();
        break;
    default:
        break;
    }
}

void QrvMainWindowController::advancedSettingsButtonPressed() {
    mainWindow->hide();
    showSettings();
}

void QrvMainWindowController::advancedSettingsMenuItemPressed() {
    advancedSettingsButtonPressed();
}

void QrvMainWindowController::showSettings() {
    settings().showWindow();
}

void QrvMainWindowController::showSelfMenuItemPressed() {
    mainWindow->bringForward();
}

void QrvMainWindowController::connectionError() {
    hideIpSession->connectionError();
}

void QrvMainWindowController::qrvAnswer(QrvAPI & /*api*/) {
    hideIpSession->qrvAnswer();
}

void QrvMainWindowController::qrvFailed(const platform::UrlError & /*error*/) {
    hideIpSession->qrvFailed();
}

QStringList QrvMainWindowController::getDiscardList() const {
    return getRowData();
}

void QrvMainWindowController::addDiscardedIp(const QString &address) {
    settings().addDiscardedIp(address);
}

bool QrvMainWindowController::hasRow(const QString &text) const {
    return settingsWindow ? settingsWindow->hasRow(text) : getRowData().contains(text);
}

QStringList QrvMainWindowController::getRowData() const {
    if (settingsWindow) {
        return settingsWindow->getRowData();
    }
    QrvTableDataSource stored;
    stored.awakeFromNib();
    return stored.rowsData();
}

void QrvMainWindowController::showMainWindow() {
    mainWindow->bringForward();
}

void QrvMainWindowController::settingsDidChange() {
    mainWindow->setChangesAutomatically(services().preferences->boolean(changeEveryKey));
    hideIpSession->settingsDidChange();
}

void QrvMainWindowController::hotKeyFired(quint32 identifier) {
    // There is none while the program is still launching.
    if (QrvMainWindowController *launched = sharedMainWindow()) {
        launched->hotKeyPressed(identifier);
    }
}

bool QrvMainWindowController::launchesOnStartup() const {
    return LaunchAgent::launchesOnStartup();
}

void QrvMainWindowController::startupLaunchButtonPressed(bool on) {
    services().userDefaults->save();
    LaunchAgent::launchOnStartup(on);
}

void QrvMainWindowController::setRequiredUS(bool required) {
    rotation->setRequiredUS(required);
}

void QrvMainWindowController::terminateVpn() {
    hideIpSession->terminateVpn();
}

void QrvMainWindowController::stopQuorvane() {
    hideIpSession->stopQuorvane();
}

void QrvMainWindowController::alert(const QString &title, const QString &message) {
    Alerts::shared().critical({title, message, {}});
}

void QrvMainWindowController::alertLater(const QString &message, const QString &informative) {
    Alerts::shared().criticalLater({QStringLiteral("Quorvane"), message, informative});
}

QString QrvMainWindowController::selectedTitle() const {
    return mainWindow->locationPane().currentItem()->text();
}

QString QrvMainWindowController::lastItemTitle() const {
    return rotation->lastItem().title;
}

QrvVpnDataPointer QrvMainWindowController::lastItemData() const {
    return rotation->lastItem().data;
}

void QrvMainWindowController::fillLocations(const QrvVpnDataList &servers) {
    mainWindow->locationPane().fillCountries(servers);
    mainWindow->locationPane().checkPopupCountry();
}

bool QrvMainWindowController::changesAutomatically() const {
    return mainWindow->changesAutomatically();
}

void QrvMainWindowController::startAnimation() {
    animation.start();
}

void QrvMainWindowController::stopAnimation() {
    animation.stop();
}

void QrvMainWindowController::resetAnimationFrames() {
    animation.resetFrames();
}

bool QrvMainWindowController::hasImage(const QString &name) const {
    return Images::exists(name);
}

void QrvMainWindowController::showWindow() {
    showSelfMenuItemPressed();
}

bool QrvMainWindowController::startedHidden() const {
    const QStringList arguments = QCoreApplication::arguments();
    return arguments.size() > 1 && arguments.at(1) == QLatin1String("-hide");
}

void QrvMainWindowController::terminateApplication() {
    endApplication();
}

} // namespace quorvane
