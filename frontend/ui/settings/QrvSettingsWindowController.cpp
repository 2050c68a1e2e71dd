#include "QrvSettingsWindowController.h"

#include "AdvancedPane.h"
#include "BrowsersPane.h"
#include "CookieCrumblePane.h"
#include "HotKeysPane.h"
#include "IpAddressesPane.h"
#include "SettingsToolbar.h"
#include "SettingsWindow.h"
#include "VpnPane.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/support/Preferences.h"
#include "frontend/ui/shared/ThemeChoice.h"
#include "frontend/ui/shared/WebPages.h"

namespace quorvane {

QrvSettingsWindowController::QrvSettingsWindowController(SettingsDelegate &delegate, QrvAPI &api)
    : m_delegate(delegate), m_api(api) {
    Preferences::storeStartValues();
    m_discarded.awakeFromNib();
    Preferences::holdEdits();
}

QrvSettingsWindowController::~QrvSettingsWindowController() = default;

void QrvSettingsWindowController::awakeFromNib() {
    if (m_awake) {
        return;
    }
    m_awake = true;
    m_keys.install([this](quint32 id) { m_delegate.hotKeyFired(id); }, [this] { showKeyProblems(); });
    for (const HotKeys::Action action : HotKeys::actions) {
        HotKeys::describe(action, HotKeysPane::nameOf(action));
    }
    m_keys.registerStored();
}

SettingsWindow &QrvSettingsWindowController::window() {
    loadWindow();
    return *m_settings;
}

void QrvSettingsWindowController::loadWindow() {
    if (m_settings) {
        return;
    }
    m_settings = std::make_unique<SettingsWindow>();
    m_viewBrowsers = new BrowsersPane(m_settings.get());
    m_viewIpAddresses = new IpAddressesPane(m_binding, m_discarded, m_settings.get());
    m_viewCookieCrumble = new CookieCrumblePane(m_binding, m_settings.get());
    m_viewHotKeys = new HotKeysPane(m_settings.get());
    m_viewAdvanced = new AdvancedPane(m_binding, m_settings.get());
    m_viewVpn = new VpnPane(m_settings.get());
    m_settings->addPane(m_viewBrowsers);
    m_settings->addPane(m_viewIpAddresses, SettingsToolbar::tbiIpAddresses());
    m_settings->addPane(m_viewCookieCrumble, SettingsToolbar::tbiCookieCrumble());
    m_settings->addPane(m_viewHotKeys, SettingsToolbar::tbiHotKeys());
    m_settings->addPane(m_viewAdvanced, SettingsToolbar::tbiAdvanced());
    m_settings->addPane(m_viewVpn, SettingsToolbar::tbiVpn());
    m_settings->finish();
    connectWindow();
    refreshControls();
}

void QrvSettingsWindowController::connectWindow() {
    connect(m_settings.get(), &SettingsWindow::okPressed, this,
            &QrvSettingsWindowController::okButtonPressed);
    connect(m_settings.get(), &SettingsWindow::cancelPressed, this,
            &QrvSettingsWindowController::cancelButtonPressed);
    connect(m_settings.get(), &SettingsWindow::applyPressed, this,
            &QrvSettingsWindowController::applyButtonPressed);
    connect(m_settings.get(), &SettingsWindow::closeBoxPressed, this,
            &QrvSettingsWindowController::windowShouldClose);
    connect(m_settings.get(), &SettingsWindow::websitePressed, this,
            &QrvSettingsWindowController::buttonOurWebsitePressed);
    connect(m_viewIpAddresses, &IpAddressesPane::launchSwitched, this,
            [this](bool on) { m_delegate.startupLaunchButtonPressed(on); });
    connect(m_viewIpAddresses, &IpAddressesPane::putBackPressed, this,
            [this] { m_delegate.putBackNameServers(); });
}

void QrvSettingsWindowController::refreshBoundControls() {
    m_binding.refresh();
}

void QrvSettingsWindowController::refreshNameServers() {
    if (m_settings) {
        m_viewIpAddresses->refreshNameServers();
    }
}

void QrvSettingsWindowController::showKeyProblems() {
    if (m_settings) {
        m_viewHotKeys->showProblems(m_keys);
    }
}

void QrvSettingsWindowController::refreshControls() {
    refreshBoundControls();
    m_viewIpAddresses->refresh();
    m_viewIpAddresses->setLaunchesOnStart(m_delegate.launchesOnStartup());
    m_viewHotKeys->refresh();
    showKeyProblems();
    m_viewVpn->refresh();
    reassignControls();
}

void QrvSettingsWindowController::showWindow() {
    loadWindow();
    refreshControls();
    m_settings->bringForward();
}

void QrvSettingsWindowController::okButtonPressed() {
    setAllSettings();
    closeAndShowMainWindow();
}

void QrvSettingsWindowController::cancelButtonPressed() {
    Preferences::revert();
    closeAndShowMainWindow();
}

void QrvSettingsWindowController::applyButtonPressed() {
    setAllSettings();
}

bool QrvSettingsWindowController::windowShouldClose() {
    m_delegate.showMainWindow();
    return true;
}

void QrvSettingsWindowController::closeAndShowMainWindow() {
    window().closeWindow();
    m_delegate.showMainWindow();
}

void QrvSettingsWindowController::setAllSettings() {
    loadWindow();
    Preferences::edit(Preference::ChangeIpInterval, m_viewIpAddresses->interval());
    Preferences::save();
    for (const HotKeys::Action action : HotKeys::actions) {
        Preferences::edit(HotKeys::preference(action), m_viewHotKeys->selectedTag(action));
    }
    // A stored mode that this version does not know stays.
    if (const auto mode = m_viewAdvanced->selectedMode()) {
        Preferences::edit(Preference::ModeUserAgent, *mode);
    }
    Preferences::edit(Preference::UserAgent, m_viewAdvanced->selectedUserAgent());
    Preferences::edit(Preference::HideMyReferrerHeader, m_viewAdvanced->hidesReferrer() ? 1 : 0);
    Preferences::edit(Preference::HideMyCookiesHeaders, m_viewCookieCrumble->hidesCookies() ? 1 : 0);
    Preferences::save();
    m_keys.registerStored();
    showKeyProblems();
    ThemeChoice::update();
    m_delegate.settingsDidChange();
    reassignControls();
}

void QrvSettingsWindowController::reassignControls() {
    loadWindow();
    m_viewAdvanced->reassignControls();
}

void QrvSettingsWindowController::buttonOurWebsitePressed() {
    WebPages::open(WebPages::root(m_api.macSerial()));
}

void QrvSettingsWindowController::authWindow() {
    m_delegate.checkAdministrator(window());
}

void QrvSettingsWindowController::addDiscardedIp(const QString &address) {
    m_discarded.addRow(address);
}

bool QrvSettingsWindowController::hasRow(const QString &text) const {
    return m_discarded.hasRow(text);
}

QStringList QrvSettingsWindowController::getRowData() const {
    return m_discarded.rowsData();
}

} // namespace quorvane
