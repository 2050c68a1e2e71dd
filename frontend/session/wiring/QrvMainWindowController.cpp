#include "QrvMainWindowController.h"

#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/ScriptUtil.h"
#include "frontend/privileges/dialog/QrvAuthenticationWindowController.h"
#include "frontend/session/LaunchAgent.h"
#include "frontend/session/SessionState.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Notifications.h"
#include "frontend/support/Preferences.h"
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
#include "platform/Workspace.h"

#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QRandomGenerator>

namespace quorvane {

namespace {

platform::Platform &services() {
    return platform::Platform::current();
}

QPointer<QrvMainWindowController> &shared() {
    static QPointer<QrvMainWindowController> controller;
    return controller;
}

void endApplication() {
    // Not quit(): that closes every window first, and the main window only hides itself.
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
    // Reachability calls on its own queue, while "inetStatus" belongs to the main thread.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [status] {
            Diagnostics::log(status == 1 ? QStringLiteral("*** checkReachability: inet YES")
                                         : QStringLiteral("*** checkReachability: inet NO"));
            services().notifications->post(Notifications::inetStatus, status);
        },
        Qt::QueuedConnection);
}

} // namespace

QrvMainWindowController::QrvMainWindowController(QrvAPI &api)
    : m_api(api), m_mainWindow(std::make_unique<MainWindow>(m_locations)), m_tray(new TrayPresence(this)),
      m_vpn(m_processes), m_fetch(api),
      m_hideIpSession(std::make_unique<HideIpSession>(static_cast<SessionEnvironment &>(*this),
                                                      m_sessionDisplay, api, m_vpn)),
      m_rotation(std::make_unique<LocationRotation>(
          LocationRotation::Parts{api, static_cast<RotationControls &>(*m_mainWindow), m_sessionDisplay,
                                  *m_hideIpSession, static_cast<DiscardedAddresses &>(*this), m_fetch},
          [] { return QRandomGenerator::global()->generate(); })) {}

QrvMainWindowController::~QrvMainWindowController() {
    if (m_reach) {
        m_reach->stopNotifier();
    }
    services().notifications->removeObservers(this);
    services().delayedCalls->cancelAll(this);
    m_api.setDelegate(nullptr);
}

QrvMainWindowController *QrvMainWindowController::sharedMainWindow() {
    return shared();
}

void QrvMainWindowController::setSharedMainWindow(QrvMainWindowController *controller) {
    shared() = controller;
}

void QrvMainWindowController::awakeFromNib() {
    checkReachability();
    m_mainWindow->setWindowTitle(
        tr("%1 (ver.%2)").arg(m_mainWindow->windowTitle(), services().bundle->version()));
    loadPreferences();
    connectWindow();
    connectTray();
    connectFetch();
    m_api.initWithDelegate(this);
    m_mainWindow->locationPane().connectTo(&m_api, this);
    SessionState::shared().hidden = Preferences::boolean(Preference::Hide);
    m_sessionDisplay.starting();
    Preferences::storeStartValues();
    m_api.cmdAuth(QString()); // sends nothing before the network is known; inetStatus() sends it then
    startAnimation();
    m_hideIpSession->settingsDidChange();
    m_mainWindow->raiseFloatingLevel();
    observeNotifications();
    m_vpn.setDelegate(this);
    m_vpn.stopVpn(); // clears a tunnel left over from an earlier run
    m_hideIpSession->clearFailedConnections();
    scheduleStartupChecks();
    if (!startedHidden()) {
        FirstPaint::callAfter(*m_mainWindow, [this] { settings(); });
        m_mainWindow->bringForward();
    } else {
        m_mainWindow->sendToBackground();
        settings();
    }
}

QrvSettingsWindowController &QrvMainWindowController::settings() {
    if (!m_settingsWindow) {
        m_settingsWindow =
            std::make_unique<QrvSettingsWindowController>(static_cast<SettingsDelegate &>(*this), m_api);
        m_settingsWindow->awakeFromNib();
    }
    return *m_settingsWindow;
}

void QrvMainWindowController::connectWindow() {
    connect(&m_sessionDisplay, &SessionDisplay::changed, this, [this](const DisplayState &state) {
        m_mainWindow->draw(state);
        m_tray->setImage(state.trayImage);
        m_tray->hideIpMenuItem()->setText(state.hideItem.title);
        m_tray->hideIpMenuItem()->setEnabled(state.hideItem.enabled);
        m_tray->changeIpMenuItem()->setEnabled(state.changeItemEnabled);
        m_tray->copyIpMenuItem()->setEnabled(state.copyItemEnabled);
        m_tray->setStatus(statusOf(state), state.currentIp);
    });
    connect(m_mainWindow.get(), &MainWindow::hideButtonPressed, this, [this](bool on) {
        m_sessionDisplay.switchedOn(on);
        m_hideIpSession->quorvaneButtonPressed();
    });
    connect(&m_mainWindow->locationPane(), &QrvLocationPaneController::rebuilt, m_rotation.get(),
            &LocationRotation::resumeIfWaiting);
    connect(m_mainWindow.get(), &MainWindow::changeIpPressed, m_rotation.get(),
            &LocationRotation::changeIpButtonPressed);
    connect(m_mainWindow.get(), &MainWindow::discardIpPressed, m_rotation.get(),
            &LocationRotation::discardIpButtonPressed);
    connect(m_mainWindow.get(), &MainWindow::changeEverySwitched, m_rotation.get(),
            &LocationRotation::changeEveryPressed);
    connect(m_mainWindow.get(), &MainWindow::changeEverySwitched, this,
            [this] { settings().refreshBoundControls(); });
    connect(m_mainWindow.get(), &MainWindow::requireUSSwitched, m_rotation.get(),
            &LocationRotation::requireUSBasedIPButtonPressed);
    connect(m_mainWindow.get(), &MainWindow::intervalEntered, m_rotation.get(),
            &LocationRotation::intervalEntered);
    connect(m_mainWindow.get(), &MainWindow::intervalEntered, &m_sessionDisplay, [this](int minutes) {
        m_sessionDisplay.interval(minutes, m_sessionDisplay.state().intervalEnabled);
    });
    connect(m_mainWindow.get(), &MainWindow::nonRepeatSwitched, this, [](bool on) {
        Preferences::choose({{Preference::IpNonRepeat, on}});
    });
    connect(m_mainWindow.get(), &MainWindow::transportChosen, this, [](int index) {
        Preferences::choose({{Preference::TcpUdp, index}});
    });
    connect(m_mainWindow.get(), &MainWindow::websitePressed, this,
            [this] { services().workspace->openUrl(WebPages::root(m_api.macSerial())); });
    connect(m_mainWindow.get(), &MainWindow::aboutPressed, this,
            &QrvMainWindowController::aboutMenuItemPressed);
    connect(m_mainWindow.get(), &MainWindow::advancedSettingsPressed, this,
            &QrvMainWindowController::advancedSettingsButtonPressed);
    connect(m_mainWindow.get(), &MainWindow::quitRequested, this, [] { endApplication(); });
}

void QrvMainWindowController::loadPreferences() {
    m_mainWindow->setTransportIndex(static_cast<int>(Preferences::integer(Preference::TcpUdp)));
    m_mainWindow->setChangesAutomatically(Preferences::boolean(Preference::ChangeIpEvery));
    m_mainWindow->setRequiresUS(Preferences::boolean(Preference::RequireUs));
    m_mainWindow->setNonRepeat(Preferences::boolean(Preference::IpNonRepeat));
}

void QrvMainWindowController::connectTray() {
    connect(&m_animation, &TrayAnimation::frame, &m_sessionDisplay, &SessionDisplay::trayImage);
    m_mainWindow->setReachableByTray(m_tray->isAvailable());
    connect(m_tray, &TrayPresence::availabilityChanged, m_mainWindow.get(), &MainWindow::setReachableByTray);
    connect(m_tray, &TrayPresence::doubleClicked, this, &QrvMainWindowController::showSelfMenuItemPressed);
    connect(m_tray->hideIpMenuItem(), &QAction::triggered, m_hideIpSession.get(),
            &HideIpSession::quorvaneMenuItemPressed);
    connect(m_tray->changeIpMenuItem(), &QAction::triggered, m_rotation.get(),
            &LocationRotation::changeIpMenuItemPressed);
    connect(m_tray->checkIpMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::checkIpMenuItemPressed);
    connect(m_tray->copyIpMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::copyIpMenuItemPressed);
    connect(m_tray->refreshMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::refreshLocationsPressed);
    connect(m_tray->settingsMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::advancedSettingsMenuItemPressed);
    connect(m_tray->aboutMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::aboutMenuItemPressed);
    connect(m_tray->showSelfMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::showSelfMenuItemPressed);
    connect(m_tray->quitMenuItem(), &QAction::triggered, this, [] { endApplication(); });
    m_tray->setLocations(m_locations);
    connect(m_tray, &TrayPresence::locationChosen, &m_mainWindow->locationPane(),
            &QrvLocationPaneController::choose);
}

void QrvMainWindowController::connectFetch() {
    connect(&m_fetch, &ConfigurationFetch::prepared, &m_sessionDisplay, &SessionDisplay::fetching);
    connect(&m_fetch, &ConfigurationFetch::stored, m_hideIpSession.get(), &HideIpSession::startVpn);
    connect(&m_fetch, &ConfigurationFetch::finished, &m_sessionDisplay,
            [this] { m_sessionDisplay.advancedEnabled(true); });
    connect(&m_fetch, &ConfigurationFetch::failed, m_hideIpSession.get(), &HideIpSession::connectionError);
}

void QrvMainWindowController::observeNotifications() {
    const auto observe = [this](QLatin1String name, auto handler) {
        services().notifications->addObserver(name, this, [handler](const QVariant &) { handler(); });
    };
    observe(Notifications::startVpn, [this] { m_hideIpSession->getNewIP(); });
    observe(Notifications::applicationWillTerminate, [this] { terminateVpn(); });
    observe(Notifications::showIp, [this] { m_hideIpSession->showIp(); });
    observe(Notifications::setDefaultControls, [this] { m_hideIpSession->setDefaultControls(); });
    observe(Notifications::checkCredential, [this] {
        if (m_settingsWindow && m_settingsWindow->window().isVisible()) {
            m_settingsWindow->authWindow(); // in front of the window that the user sees
        } else {
            authWindow();
        }
    });
    observe(Notifications::showSettings, [this] { showSettings(); });
    // No part of the program posts this notification: the controller has no such operation.
    observe(Notifications::getSystemDns,
            [] { Q_ASSERT_X(false, "QrvMainWindowController", "getSystemDns"); });
}

void QrvMainWindowController::scheduleStartupChecks() {
    auto &calls = *services().delayedCalls;
    calls.callAfter(checkDelaySeconds, this, [this] { m_events.post([this] { return checkAtStart(); }); });
    calls.callAfter(checkDelaySeconds, this, [this] { refreshFrontWindow(); });
}

void QrvMainWindowController::checkReachability() {
    if (m_reach) {
        m_reach->stopNotifier();
    }
    m_reach = Reachability::reachabilityWithHostname(services().service.reachabilityHost);
    if (!m_reach) {
        return;
    }
    m_reach->reachableBlock = [](Reachability &) {
        postInternetStatus(1);
    };
    m_reach->unreachableBlock = [](Reachability &) {
        postInternetStatus(0);
    };
    m_reach->startNotifier();
}

Task<> QrvMainWindowController::checkAtStart() {
    co_await checkDnsSettings();
    co_await checkCredentials();
}

Task<> QrvMainWindowController::checkDnsSettings() {
    Diagnostics::log(QStringLiteral("checkDnsSettings"));
    if (co_await m_events.background([] { return ScriptUtil().getSystemDns(); })) {
        co_return;
    }
    co_await checkCredentials();
    co_await m_events.background([] { ScriptUtil().setSystemDns(); });
}

Task<> QrvMainWindowController::checkCredentials() {
    if (co_await m_events.background([] { return QrvCredentials::sharedInstance().credentialsIsValid(); })) {
        co_return;
    }
    co_await m_events.outside([this](const std::function<void()> &proceed) {
        QrvAuthenticationWindowController::open(Alerts::shared(), *m_mainWindow, proceed);
    });
}

void QrvMainWindowController::refreshFrontWindow() {
    m_mainWindow->dropFloatingLevel();
    settings(); // loads the settings window if the main window was never drawn
}

bool QrvMainWindowController::authWindow() {
    return QrvAuthenticationWindowController::runUnlessValid(Alerts::shared(), *m_mainWindow);
}

void QrvMainWindowController::downloadCertificateForSelectedItem() {
    m_rotation->downloadCertificateForSelectedItem();
}

void QrvMainWindowController::forgetWaitingPick() {
    m_rotation->forgetWaitingPick();
}

void QrvMainWindowController::checkIpMenuItemPressed() {
    services().workspace->openUrl(WebPages::ipCheck(m_api.macSerial()));
}

void QrvMainWindowController::copyIpMenuItemPressed() {
    // Clears the clipboard; the address is not copied.
    QGuiApplication::clipboard()->clear();
}

void QrvMainWindowController::aboutMenuItemPressed() {
    if (!m_aboutWindow) {
        m_aboutWindow = std::make_unique<QrvAboutWindowController>(*m_mainWindow, m_api);
    }
    m_aboutWindow->showWindow();
}

void QrvMainWindowController::refreshLocationsPressed() {
    if (!SessionState::shared().hidden) {
        m_api.cmdAuth(QString());
    }
}

void QrvMainWindowController::hotKeyPressed(quint32 identifier) {
    switch (identifier) {
    case 1:
        m_hideIpSession->quorvane();
        break;
    case 2:
        m_rotation->changeIpMenuItemPressed();
        break;
    case 3:
        m_hideIpSession->stopQuorvane();
        break;
    case 4:
        m_rotation->discardIpButtonPressed();
        break;
    case 5:
        showSelfMenuItemPressed();
        break;
    default:
        break;
    }
}

void QrvMainWindowController::advancedSettingsButtonPressed() {
    m_mainWindow->hide();
    showSettings();
}

void QrvMainWindowController::advancedSettingsMenuItemPressed() {
    advancedSettingsButtonPressed();
}

void QrvMainWindowController::showSettings() {
    settings().showWindow();
}

void QrvMainWindowController::showSelfMenuItemPressed() {
    m_mainWindow->bringForward();
}

void QrvMainWindowController::connectionError() {
    m_hideIpSession->connectionError();
}

void QrvMainWindowController::qrvAnswer(QrvAPI & /*api*/) {
    m_hideIpSession->qrvAnswer();
}

void QrvMainWindowController::qrvFailed(const platform::UrlError & /*error*/) {
    m_hideIpSession->qrvFailed();
}

QStringList QrvMainWindowController::getDiscardList() const {
    return getRowData();
}

void QrvMainWindowController::addDiscardedIp(const QString &address) {
    settings().addDiscardedIp(address);
}

bool QrvMainWindowController::hasRow(const QString &text) const {
    return m_settingsWindow ? m_settingsWindow->hasRow(text) : getRowData().contains(text);
}

QStringList QrvMainWindowController::getRowData() const {
    if (m_settingsWindow) {
        return m_settingsWindow->getRowData();
    }
    QrvTableDataSource stored;
    stored.awakeFromNib();
    return stored.rowsData();
}

void QrvMainWindowController::showMainWindow() {
    m_mainWindow->bringForward();
}

void QrvMainWindowController::settingsDidChange() {
    m_mainWindow->setChangesAutomatically(Preferences::boolean(Preference::ChangeIpEvery));
    m_hideIpSession->settingsDidChange();
}

void QrvMainWindowController::hotKeyFired(quint32 identifier) {
    // Null while the program is still launching.
    if (QrvMainWindowController *launched = sharedMainWindow()) {
        launched->hotKeyPressed(identifier);
    }
}

bool QrvMainWindowController::launchesOnStartup() const {
    return LaunchAgent::launchesOnStartup();
}

void QrvMainWindowController::startupLaunchButtonPressed(bool on) {
    Preferences::save();
    LaunchAgent::launchOnStartup(on);
}

void QrvMainWindowController::setRequiredUS(bool required) {
    m_rotation->setRequiredUS(required);
}

void QrvMainWindowController::terminateVpn() {
    m_hideIpSession->terminateVpn();
}

void QrvMainWindowController::stopQuorvane() {
    m_hideIpSession->stopQuorvane();
}

void QrvMainWindowController::alert(const QString &title, const QString &message) {
    Alerts::shared().critical({title, message, {}});
}

void QrvMainWindowController::alertLater(const QString &message, const QString &informative) {
    Alerts::shared().criticalLater({QStringLiteral("Quorvane"), message, informative});
}

QString QrvMainWindowController::selectedTitle() const {
    return m_locations.title(m_locations.currentRow());
}

QString QrvMainWindowController::lastItemTitle() const {
    return m_rotation->lastItem().title;
}

QrvVpnDataPointer QrvMainWindowController::lastItemData() const {
    return m_rotation->lastItem().data;
}

void QrvMainWindowController::fillLocations(const QrvVpnDataList &servers) {
    m_mainWindow->locationPane().fillCountries(servers);
    m_mainWindow->locationPane().checkPopupCountry();
}

bool QrvMainWindowController::changesAutomatically() const {
    return m_mainWindow->changesAutomatically();
}

void QrvMainWindowController::startAnimation() {
    m_animation.start();
}

void QrvMainWindowController::stopAnimation() {
    m_animation.stop();
}

void QrvMainWindowController::resetAnimationFrames() {
    m_animation.resetFrames();
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
