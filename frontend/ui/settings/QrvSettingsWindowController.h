#pragma once

#include "DefaultsBinding.h"
#include "QrvTableDataSource.h"
#include "SettingsDelegate.h"
#include "frontend/session/DiscardedAddresses.h"
#include "frontend/session/HotKeys.h"

#include <QObject>
#include <memory>

namespace quorvane {

class AdvancedPane;
class BrowsersPane;
class CookieCrumblePane;
class HotKeysPane;
class IpAddressesPane;
class QrvAPI;
class SettingsWindow;
class VpnPane;

/// The settings window's controller: OK, Apply, Cancel and the close box over the six panes, the global hot
/// keys, and the discarded addresses. The panes and HotKeys do the work. Main thread.
///
/// The window and its panes are made when it is first used. The hot keys and the discarded addresses are
/// needed from the start.
///
/// The user's changes are held until OK or Apply stores them or Cancel drops them; the close box does
/// neither. Tables, the launch at login and the VPN pane store their changes at once.
class QrvSettingsWindowController final : public QObject, public DiscardedAddresses {
    Q_OBJECT

public:
    /// Stores missing defaults, and sets the shared user-defaults controller to hold edits.
    /// The delegate and the API client are not owned and must outlive this.
    QrvSettingsWindowController(SettingsDelegate &delegate, QrvAPI &api);
    ~QrvSettingsWindowController() override;

    /// Registers the stored hot keys. Once; further calls do nothing.
    void awakeFromNib();
    /// Shows the window with the stored values and the pending edits.
    void showWindow();
    /// Updates the bound controls after another part of the program has stored values.
    void refreshBoundControls();
    /// Shows whether there are name servers to put back.
    void refreshNameServers();

    void okButtonPressed();
    void cancelButtonPressed();
    void applyButtonPressed();
    /// The close box was pressed. Neither saves nor reverts; always true.
    bool windowShouldClose();
    void setAllSettings();
    void reassignControls();
    void buttonOurWebsitePressed();
    /// Opens the administrator dialog of this window unless the stored pair is valid or a dialog is open.
    /// Returns at once.
    void authWindow();

    // No effect by design: browsers keep their own settings, and a hot key is chosen in its pop-up.
    static void setBrowsers() {}

    static void setUserAgent() {}

    static void setReferrer() {}

    static void selectHotKeyMenuItemPressed() {}

    // DiscardedAddresses
    void addDiscardedIp(const QString &address) override;
    [[nodiscard]] bool hasRow(const QString &text) const override;
    [[nodiscard]] QStringList getRowData() const override;

    /// Makes the window at the first call.
    [[nodiscard]] SettingsWindow &window();

    [[nodiscard]] const HotKeys &hotKeys() const { return m_keys; }

private:
    void loadWindow();
    void connectWindow();
    void refreshControls();
    void showKeyProblems();
    void closeAndShowMainWindow();

    SettingsDelegate &m_delegate;
    QrvAPI &m_api;
    DefaultsBinding m_binding;
    HotKeys m_keys;
    QrvTableDataSource m_discarded;
    std::unique_ptr<SettingsWindow> m_settings;
    BrowsersPane *m_viewBrowsers = nullptr;
    IpAddressesPane *m_viewIpAddresses = nullptr;
    CookieCrumblePane *m_viewCookieCrumble = nullptr;
    HotKeysPane *m_viewHotKeys = nullptr;
    AdvancedPane *m_viewAdvanced = nullptr;
    VpnPane *m_viewVpn = nullptr;
    bool m_awake = false;
};

} // namespace quorvane
