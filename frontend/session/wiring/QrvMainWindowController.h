#pragma once

#include "frontend/api/ConfigurationFetch.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/control/AlertWatch.h"
#include "frontend/session/DiscardedAddresses.h"
#include "frontend/session/HideIpSession.h"
#include "frontend/session/LocationChooser.h"
#include "frontend/session/LocationList.h"
#include "frontend/session/LocationRotation.h"
#include "frontend/session/ProcessInfo.h"
#include "frontend/session/SessionWindow.h"
#include "frontend/session/TrayAnimation.h"
#include "frontend/support/EventQueue.h"
#include "frontend/tunnel/Vpn.h"
#include "frontend/ui/settings/SettingsDelegate.h"

#include <memory>

namespace quorvane {

class MainWindow;
class QrvAboutWindowController;
class QrvSettingsWindowController;
class Reachability;
class SessionControl;
class TrayPresence;

/// The main window's controller: builds the window, the tray icon and the session, and connects them. The
/// session's rules are in HideIpSession, the pick in LocationRotation, the display in displayOf(). Main
/// thread.
class QrvMainWindowController final : public QObject,
                                      private SessionWindow,
                                      private SettingsDelegate,
                                      private DiscardedAddresses {
    Q_OBJECT

public:
    /// Seconds from loading the window to the start-up checks.
    static constexpr double checkDelaySeconds = 2.0;

    /// The API client is not owned and must outlive this.
    explicit QrvMainWindowController(QrvAPI &api = QrvAPI::sharedApi());
    ~QrvMainWindowController() override;

    /// Null until the application has finished launching.
    [[nodiscard]] static QrvMainWindowController *sharedMainWindow();
    static void setSharedMainWindow(QrvMainWindowController *controller);

    /// Builds the program's parts and sends the first request. Call it once.
    void awakeFromNib();
    /// The program ends: hides the windows, ends the tunnel, and returns when that is done. Nothing of the
    /// session happens later.
    void endSession();

    void showSelfMenuItemPressed();
    void checkIpMenuItemPressed();
    void copyIpMenuItemPressed();
    void aboutMenuItemPressed();
    /// A global hot key was pressed: 1 hide, 2 change, 3 stop, 4 discard, 5 bring the window up. Other
    /// numbers do nothing.
    void hotKeyPressed(quint32 identifier);
    /// Hides the main window and shows the settings window.
    void advancedSettingsButtonPressed();
    void advancedSettingsMenuItemPressed();
    void showSettings();
    void checkReachability();
    void refreshFrontWindow();

    [[nodiscard]] HideIpSession &session() { return *m_session; }

    [[nodiscard]] MainWindow &window() { return *m_mainWindow; }

    /// The settings' controller, which registers the hot keys when it is made. It is not needed to show the
    /// main window.
    QrvSettingsWindowController &settings();

    [[nodiscard]] TrayPresence &statusItem() { return *m_tray; }

    [[nodiscard]] LocationList &locations() { return m_locations; }

    /// The location entries that random picks of this rotation have used.
    [[nodiscard]] const QSet<quint64> &usedLocations() const { return m_rotation.usedItems(); }

    [[nodiscard]] const DisplayState &display() const { return m_session->display(); }

private:
    // SessionWindow
    void openAdministratorDialog(const std::function<void()> &closed) override;
    void showWindow() override;
    [[nodiscard]] bool startedHidden() const override;
    [[nodiscard]] bool hasImage(const QString &name) const override;
    void terminateApplication() override;
    // SettingsDelegate
    void showMainWindow() override;
    void settingsDidChange() override;
    void hotKeyFired(quint32 identifier) override;
    [[nodiscard]] bool launchesOnStartup() const override;
    void startupLaunchButtonPressed(bool on) override;
    void checkAdministrator(QWidget &window) override;
    void putBackNameServers() override;
    // DiscardedAddresses, which the settings window holds
    void addDiscardedIp(const QString &address) override;
    [[nodiscard]] bool hasRow(const QString &text) const override;
    [[nodiscard]] QStringList getRowData() const override;

    void draw(const DisplayState &state);
    void connectSession();
    void connectWindow();
    void connectTray();
    /// Other programs of the user can control the session from now on.
    void offerControl();
    void observeNotifications();
    void scheduleStartupChecks();
    /// First the name servers, then the stored administrator pair. The second check begins when the first,
    /// its dialog and its commands included, has ended.
    [[nodiscard]] Task<> checkAtStart();
    [[nodiscard]] Task<> checkDnsSettings();
    [[nodiscard]] Task<> checkCredentials();
    [[nodiscard]] Task<> putBackServersNow();
    [[nodiscard]] Task<> openDialogUnlessValid(QWidget &window);
    void openDialog(QWidget &window, const std::function<void()> &closed);
    void loadPreferences();

    QrvAPI &m_api;
    LocationList m_locations;
    LocationChooser m_chooser;
    std::unique_ptr<MainWindow> m_mainWindow;
    TrayPresence *m_tray;
    TrayAnimation m_animation;
    ProcessInfo m_processes;
    ConfigurationFetch m_fetch;
    LocationRotation m_rotation;
    std::unique_ptr<QrvAboutWindowController> m_aboutWindow;
    std::unique_ptr<QrvSettingsWindowController> m_settingsWindow;
    std::shared_ptr<Reachability> m_reach;
    AlertWatch m_alerts;
    // Their handlers use everything above.
    EventQueue m_events;
    Vpn m_vpn;
    std::unique_ptr<HideIpSession> m_session;
    std::unique_ptr<SessionControl> m_control;
};

} // namespace quorvane
