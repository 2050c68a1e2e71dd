#include "QrvSettingsWindowController.h"

#include "AdvancedPane.h"
#include "BrowsersPane.h"
#include "CookieCrumblePane.h"
#include "HotKeysPane.h"
#include "IpAddressesPane.h"
#include "QrvDiscardIpTableViewController.h"
#include "SettingsToolbar.h"
#include "SettingsWindow.h"
#include "VpnPane.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/privileges/dialog/QrvAuthenticationWindowController.h"
#include "frontend/session/SettingsDefaults.h"
#include "frontend/ui/shared/Alerts.h"
#include "frontend/ui/shared/WebPages.h"
#include "platform/Platform.h"
#include "platform/UserDefaultsController.h"
#include "platform/Workspace.h"

namespace quorvane {

namespace {

platform::UserDefaultsController &defaults() {
    return *platform::Platform::current().userDefaults;
}

} // namespace

QrvSettingsWindowController::QrvSettingsWindowController(SettingsDelegate &target, QrvAPI &client)
    : delegate(target), api(client), settings(std::make_unique<SettingsWindow>()) {
    SettingsDefaults::initialize();
    viewBrowsers = new BrowsersPane(settings.get());
    viewIpAddresses = new IpAddressesPane(binding, settings.get());
    viewCookieCrumble = new CookieCrumblePane(binding, settings.get());
    viewHotKeys = new HotKeysPane(settings.get());
    viewAdvanced = new AdvancedPane(binding, settings.get());
    viewVpn = new VpnPane(settings.get());
    defaults().setAppliesImmediately(false);
}

QrvSettingsWindowController::~QrvSettingsWindowController() = default;

void QrvSettingsWindowController::awakeFromNib() {
    if (awake) {
        return;
    }
    awake = true;
    settings->addPane(viewBrowsers);
    settings->addPane(viewIpAddresses, SettingsToolbar::tbiIpAddresses());
    settings->addPane(viewCookieCrumble, SettingsToolbar::tbiCookieCrumble());
    settings->addPane(viewHotKeys, SettingsToolbar::tbiHotKeys());
    settings->addPane(viewAdvanced, SettingsToolbar::tbiAdvanced());
    settings->addPane(viewVpn, SettingsToolbar::tbiVpn());
    settings->finish();
    connectWindow();
    keys.install([this](quint32 id) { delegate.hotKeyFired(id); },
                 [this] { viewHotKeys->showTroubles(keys); });
    for (const HotKeys::Action action : HotKeys::actions) {
        HotKeys::describe(action, viewHotKeys->nameOf(action));
    }
    keys.registerStored();
    refreshControls();
}

void QrvSettingsWindowController::connectWindow() {
    connect(settings.get(), &SettingsWindow::okPressed, this, &QrvSettingsWindowController::okButtonPressed);
    connect(settings.get(), &SettingsWindow::cancelPressed, this,
            &QrvSettingsWindowController::cancelButtonPressed);
    connect(settings.get(), &SettingsWindow::applyPressed, this,
            &QrvSettingsWindowController::applyButtonPressed);
    connect(settings.get(), &SettingsWindow::closeBoxPressed, this,
            &QrvSettingsWindowController::windowShouldClose);
    connect(settings.get(), &SettingsWindow::websitePressed, this,
            &QrvSettingsWindowController::buttonOurWebsitePressed);
    connect(viewIpAddresses, &IpAddressesPane::launchSwitched, this,
            [this](bool on) { delegate.startupLaunchButtonPressed(on); });
}

void QrvSettingsWindowController::refreshBoundControls() {
    binding.refresh();
}

void QrvSettingsWindowController::refreshControls() {
    refreshBoundControls();
    viewIpAddresses->refresh();
    viewIpAddresses->setLaunchesOnStart(delegate.launchesOnStartup());
    viewHotKeys->refresh();
    viewHotKeys->showTroubles(keys);
    viewVpn->refresh();
    reassignControls();
}

void QrvSettingsWindowController::showWindow() {
    refreshControls();
    settings->bringForward();
}

void QrvSettingsWindowController::okButtonPressed() {
    setAllSettings();
    showMainInstead();
}

void QrvSettingsWindowController::cancelButtonPressed() {
    defaults().revert();
    showMainInstead();
}

void QrvSettingsWindowController::applyButtonPressed() {
    setAllSettings();
}

bool QrvSettingsWindowController::windowShouldClose() {
    delegate.showMainWindow();
    return true;
}

void QrvSettingsWindowController::showMainInstead() {
    settings->closeWindow();
    delegate.showMainWindow();
}

void QrvSettingsWindowController::setAllSettings() {
    defaults().setValue(SettingsDefaults::changeIpInterval(), viewIpAddresses->interval());
    defaults().save();
    for (const HotKeys::Action action : HotKeys::actions) {
        defaults().setValue(HotKeys::preferenceKey(action), viewHotKeys->selectedTag(action));
    }
    // A stored mode that this version does not know stays.
    if (const auto mode = viewAdvanced->selectedMode()) {
        defaults().setValue(SettingsDefaults::modeUserAgent(), *mode);
    }
    defaults().setValue(SettingsDefaults::userAgent(), viewAdvanced->selectedUserAgent());
    defaults().setValue(SettingsDefaults::hideMyReferrerHeader(), viewAdvanced->hidesReferrer() ? 1 : 0);
    defaults().setValue(SettingsDefaults::hideMyCookiesHeaders(), viewCookieCrumble->hidesCookies() ? 1 : 0);
    defaults().save();
    keys.registerStored();
    viewHotKeys->showTroubles(keys);
    delegate.settingsDidChange();
    reassignControls();
}

void QrvSettingsWindowController::reassignControls() {
    viewAdvanced->reassignControls();
}

void QrvSettingsWindowController::buttonOurWebsitePressed() {
    platform::Platform::current().workspace->openUrl(WebPages::root(api.macSerial()));
}

void QrvSettingsWindowController::authWindow() {
    QrvAuthenticationWindowController::runUnlessValid(Alerts::shared(), *settings);
}

void QrvSettingsWindowController::addDiscardedIp(const QString &address) {
    viewIpAddresses->tableDiscardIp().addRow(address);
}

bool QrvSettingsWindowController::hasRow(const QString &text) const {
    return viewIpAddresses->tableDiscardIp().hasRow(text);
}

QStringList QrvSettingsWindowController::getRowData() const {
    return viewIpAddresses->tableDiscardIp().getRowData();
}

} // namespace quorvane
