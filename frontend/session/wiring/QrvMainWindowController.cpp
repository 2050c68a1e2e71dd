#include "QrvMainWindowController.h"

#include "frontend/control/SessionControl.h"
#include "frontend/privileges/NameServers.h"
#include "frontend/privileges/ScriptUtil.h"
#include "frontend/privileges/dialog/QrvAuthenticationWindowController.h"
#include "frontend/session/LaunchAgent.h"
#include "frontend/session/SessionState.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Notifications.h"
#include "frontend/support/Preferences.h"
#include "frontend/support/Reachability.h"
#include "frontend/tunnel/LentAddress.h"
#include "frontend/ui/locations/QrvLocationPaneController.h"
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
#include "platform/Appearance.h"
#include "platform/Control.h"
#include "platform/DelayedCalls.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QEventLoop>
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
    : m_api(api), m_chooser(m_locations), m_mainWindow(std::make_unique<MainWindow>(m_chooser)),
      m_tray(new TrayPresence(this)), m_fetch(api),
      m_rotation(api, m_locations, static_cast<DiscardedAddresses &>(*this),
                 [] { return QRandomGenerator::global()->generate(); }),
      m_alerts(Alerts::shared()), m_vpn(m_processes, m_events),
      m_session(std::make_unique<HideIpSession>(
          SessionParts{m_events, api, m_vpn, m_fetch, m_chooser, m_rotation, m_alerts, m_animation,
                       static_cast<SessionWindow &>(*this), &LentAddress::read})) {}

QrvMainWindowController::~QrvMainWindowController() {
    if (m_reach) {
        m_reach->stopNotifier();
    }
    services().control->withdraw();
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
    m_mainWindow->setWindowTitle(
        tr("%1 (ver.%2)").arg(m_mainWindow->windowTitle(), services().bundle->version()));
    loadPreferences();
    connectSession();
    connectWindow();
    connectTray();
    m_api.initWithDelegate(m_session.get());
    m_mainWindow->locationPane().connectTo(&m_api, m_session.get());
    SessionState::shared().hidden = Preferences::boolean(Preference::Hide);
    Preferences::setStartValues(); // settings() stores them: the window does not wait for the disk
    m_api.cmdAuth(QString());      // sends nothing before the network is known; inetStatus() sends it then
    m_mainWindow->raiseFloatingLevel();
    observeNotifications();
    m_session->begin([this] { checkReachability(); });
    scheduleStartupChecks();
    offerControl();
    if (!startedHidden()) {
        FirstPaint::callAfter(*m_mainWindow, [this] { settings(); });
        m_mainWindow->bringForward();
    } else {
        m_mainWindow->sendToBackground();
        settings();
    }
}

void QrvMainWindowController::endSession() {
    for (QWidget *window : QApplication::topLevelWidgets()) {
        window->hide();
    }
    bool ended = false;
    m_session->end([&ended] { ended = true; });
    // Not an event loop, which a second request to quit would end before the tunnel.
    while (!ended) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
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

void QrvMainWindowController::draw(const DisplayState &state) {
    m_mainWindow->draw(state);
    m_tray->setImage(state.trayImage);
    m_tray->hideIpMenuItem()->setText(state.hideItem.title);
    m_tray->hideIpMenuItem()->setEnabled(state.hideItem.enabled);
    m_tray->changeIpMenuItem()->setEnabled(state.changeItemEnabled);
    m_tray->copyIpMenuItem()->setEnabled(state.copyItemEnabled);
    m_tray->refreshMenuItem()->setEnabled(state.refreshEnabled);
    m_tray->refreshMenuItem()->setToolTip(state.refreshHint);
    m_tray->setStatus(state.look, state.currentIp);
}

void QrvMainWindowController::connectSession() {
    HideIpSession *session = m_session.get();
    session->setDiscarded(static_cast<DiscardedAddresses &>(*this));
    connect(session, &HideIpSession::displayChanged, this, &QrvMainWindowController::draw);
    connect(&m_animation, &TrayAnimation::frame, session, [session](const QString &image) {
        const bool moves = !services().appearance->current().reducesMotion;
        session->showFrame(moves ? image : QStringLiteral("A01"));
    });
    MainWindow *window = m_mainWindow.get();
    connect(window, &MainWindow::hideButtonPressed, session, &HideIpSession::quorvaneButtonPressed);
    connect(window, &MainWindow::changeIpPressed, session, &HideIpSession::changeIpButtonPressed);
    connect(window, &MainWindow::discardIpPressed, session, &HideIpSession::discardIpButtonPressed);
    connect(window, &MainWindow::liftLockPressed, session, &HideIpSession::liftLockPressed);
    connect(window, &MainWindow::changeEverySwitched, session, &HideIpSession::changeEveryPressed);
    connect(window, &MainWindow::requireUSSwitched, session, &HideIpSession::requireUSBasedIPButtonPressed);
    connect(window, &MainWindow::intervalEntered, session, &HideIpSession::intervalEntered);
    connect(m_tray->hideIpMenuItem(), &QAction::triggered, session, &HideIpSession::quorvaneMenuItemPressed);
    connect(m_tray->changeIpMenuItem(), &QAction::triggered, session,
            &HideIpSession::changeIpMenuItemPressed);
    connect(m_tray->refreshMenuItem(), &QAction::triggered, session, &HideIpSession::refreshLocationsPressed);
    draw(session->display());
}

void QrvMainWindowController::connectWindow() {
    connect(m_mainWindow.get(), &MainWindow::changeEverySwitched, this,
            [this] { settings().refreshBoundControls(); });
    connect(m_mainWindow.get(), &MainWindow::nonRepeatSwitched, this, [](bool on) {
        Preferences::choose({{Preference::IpNonRepeat, on}});
    });
    connect(m_mainWindow.get(), &MainWindow::transportChosen, this, [](int index) {
        Preferences::choose({{Preference::TcpUdp, index}});
    });
    connect(m_mainWindow.get(), &MainWindow::websitePressed, this,
            [this] { WebPages::open(WebPages::root(m_api.macSerial())); });
    connect(m_mainWindow.get(), &MainWindow::aboutPressed, this,
            &QrvMainWindowController::aboutMenuItemPressed);
    connect(m_mainWindow.get(), &MainWindow::advancedSettingsPressed, this,
            &QrvMainWindowController::advancedSettingsButtonPressed);
    connect(m_mainWindow.get(), &MainWindow::quitRequested, this, [] { endApplication(); });
}

void QrvMainWindowController::loadPreferences() {
    m_mainWindow->setTransportIndex(static_cast<int>(Preferences::integer(Preference::TcpUdp)));
    m_mainWindow->setNonRepeat(Preferences::boolean(Preference::IpNonRepeat));
}

void QrvMainWindowController::connectTray() {
    m_mainWindow->setReachableByTray(m_tray->isAvailable());
    connect(m_tray, &TrayPresence::availabilityChanged, m_mainWindow.get(), &MainWindow::setReachableByTray);
    connect(m_tray, &TrayPresence::doubleClicked, this, &QrvMainWindowController::showSelfMenuItemPressed);
    connect(m_tray->checkIpMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::checkIpMenuItemPressed);
    connect(m_tray->copyIpMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::copyIpMenuItemPressed);
    connect(m_tray->settingsMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::advancedSettingsMenuItemPressed);
    connect(m_tray->helpMenuItem(), &QAction::triggered, this, &WebPages::openGuide);
    connect(m_tray->aboutMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::aboutMenuItemPressed);
    connect(m_tray->showSelfMenuItem(), &QAction::triggered, this,
            &QrvMainWindowController::showSelfMenuItemPressed);
    connect(m_tray->quitMenuItem(), &QAction::triggered, this, [] { endApplication(); });
    m_tray->setLocations(m_locations);
    connect(m_tray, &TrayPresence::locationChosen, &m_chooser, &LocationChooser::choose);
}

void QrvMainWindowController::offerControl() {
    m_control = std::make_unique<SessionControl>(
        ControlParts{*m_session, m_chooser, m_events, m_alerts, [this] { showSelfMenuItemPressed(); },
                     [] { endApplication(); },
                     [] {
                         return QrvAuthenticationWindowController::isRunning();
                     }});
    platform::ControlService *service = services().control.get();
    service->offer(*m_control);
    connect(m_control.get(), &SessionControl::stateChanged, this, [service] { service->reportState(); });
    connect(&m_locations, &LocationList::modelReset, this, [service] { service->reportLocations(); });
    connect(&m_locations, &LocationList::currentRowChanged, this, [service] {
        service->reportLocations();
        service->reportState();
    });
}

void QrvMainWindowController::observeNotifications() {
    const auto observe = [this](QLatin1String name, auto handler) {
        services().notifications->addObserver(name, this, [handler](const QVariant &) { handler(); });
    };
    observe(Notifications::startVpn, [this] { m_session->getNewIP(); });
    observe(Notifications::applicationWillTerminate, [this] { endSession(); });
    observe(Notifications::showIp, [this] { m_session->showIp(); });
    observe(Notifications::setDefaultControls, [this] { m_session->setDefaultControls(); });
    observe(Notifications::checkCredential, [this] { m_session->authWindow(); });
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
    if (NameServers::areRestored()) {
        // They are set for each session. A crash or a reboot may have left them so.
        if (display().look == Look::NotHidden) {
            co_await NameServers::putBackAfterSession(m_events);
        }
        co_return;
    }
    if (co_await m_events.background([] { return ScriptUtil().getSystemDns(); })) {
        co_return;
    }
    co_await checkCredentials();
    co_await m_events.background([] { ScriptUtil().setSystemDns(); });
}

Task<> QrvMainWindowController::checkCredentials() {
    co_await openDialogUnlessValid(*m_mainWindow);
}

Task<> QrvMainWindowController::openDialogUnlessValid(QWidget &window) {
    if (co_await m_session->pairIsValid()) {
        co_return;
    }
    auto dialog = m_events.outside(
        [this, &window](const std::function<void()> &proceed) { openDialog(window, proceed); });
    co_await dialog;
}

void QrvMainWindowController::refreshFrontWindow() {
    m_mainWindow->dropFloatingLevel();
    settings(); // registers the hot keys if the main window was never drawn
}

void QrvMainWindowController::openAdministratorDialog(const std::function<void()> &closed) {
    openDialog(*m_mainWindow, closed);
}

void QrvMainWindowController::openDialog(QWidget &window, const std::function<void()> &closed) {
    const auto notify = [control = QPointer(m_control.get())] {
        if (control) {
            control->dialogChanged();
        }
    };
    QrvAuthenticationWindowController::open(m_events, Alerts::shared(), window, [closed, notify] {
        closed();
        notify();
    });
    notify();
}

void QrvMainWindowController::checkAdministrator(QWidget &window) {
    m_events.post([this, &window] { return openDialogUnlessValid(window); });
}

void QrvMainWindowController::putBackNameServers() {
    m_events.post([this] { return putBackServersNow(); });
}

Task<> QrvMainWindowController::putBackServersNow() {
    if (display().look != Look::NotHidden) {
        Alerts::shared().critical({QStringLiteral("Quorvane"),
                                   tr("The name servers can be put back while your IP is not hidden."),
                                   {}});
        co_return;
    }
    const QString problem = co_await NameServers::putBackNow(m_events);
    settings().refreshNameServers();
    if (!problem.isNull()) {
        Alerts::shared().critical(
            {QStringLiteral("Quorvane"), tr("The name servers could not be put back."), problem});
    }
}

void QrvMainWindowController::checkIpMenuItemPressed() {
    WebPages::open(WebPages::ipCheck(m_api.macSerial()));
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

void QrvMainWindowController::hotKeyPressed(quint32 identifier) {
    switch (identifier) {
    case 1:
        m_session->quorvane();
        break;
    case 2:
        m_session->changeIpMenuItemPressed();
        break;
    case 3:
        m_session->stopHotKeyPressed();
        break;
    case 4:
        m_session->discardIpButtonPressed();
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
    m_session->settingsDidChange();
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
