#include "platform/Platform.h"

#include "platform/NotificationCenter.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaultsController.h"
#include "platform/linux/control/DBusControlService.h"
#include "platform/linux/desktop/LinuxHardwareRegistry.h"
#include "platform/linux/desktop/LinuxWorkspace.h"
#include "platform/linux/desktop/PortalAppearance.h"
#include "platform/linux/desktop/QtDelayedCalls.h"
#include "platform/linux/desktop/SessionBus.h"
#include "platform/linux/desktop/StandardLogSink.h"
#include "platform/linux/hotkeys/LinuxHotKeys.h"
#include "platform/linux/network/CurlUrlLoader.h"
#include "platform/linux/network/NetlinkReachability.h"
#include "platform/linux/network/NetlinkTunnelWatch.h"
#include "platform/linux/network/NotedNetworkLock.h"
#include "platform/linux/preferences/PlistPreferences.h"
#include "platform/linux/privileges/PkexecAuthorizationService.h"
#include "platform/linux/privileges/SecretServiceKeyStore.h"
#include "platform/linux/privileges/SudoScriptingService.h"
#include "platform/linux/process/ProcProcessTable.h"
#include "platform/linux/process/ThreadedWork.h"
#include "platform/linux/tray/LinuxTrayHosts.h"

#include <QGuiApplication>

namespace quorvane::platform {

namespace {

/// Preferences and the log that reports their problems.
void addPreferencesAndLog(Platform &platform) {
    auto preferences = std::make_unique<PlistPreferences>(platform.account.preferencesFile());
    platform.userDefaults = std::make_unique<UserDefaultsController>(*preferences);
    platform.logSink = std::make_unique<StandardLogSink>();
    platform.log = std::make_unique<SystemLog>(*platform.logSink, *preferences);
    preferences->setProblemHandler(
        [log = platform.log.get()](const QString &text) { log->writeAlways(text); });
    platform.preferences = std::move(preferences);
    for (const QString &problem : std::as_const(platform.service.problems)) {
        platform.log->writeAlways(problem);
    }
}

/// While the network lock is closed no name can be looked up.
void addNetwork(Platform &platform) {
    const auto kept = std::make_shared<KeptAddresses>();
    auto lock =
        std::make_unique<NotedNetworkLock>(QStringLiteral("/run/quorvane-lock"), platform.service, kept);
    platform.reachability = std::make_unique<NetlinkReachability>();
    platform.urls = std::make_unique<CurlUrlLoader>(
        platform.bundle->version(), platform.service.caFile, UrlLimits(), QStringLiteral("/etc/ssl/certs"),
        [kept, note = lock.get()](const QByteArray &host) {
            return note->isClosed() ? kept->find(host) : QByteArrayList();
        });
    platform.networkLock = std::move(lock);
}

} // namespace

std::unique_ptr<Platform> makeLinuxPlatform() {
    auto platform = std::make_unique<Platform>();
    platform->bundle = std::make_unique<Bundle>(Bundle::ofExecutable());
    const QString resources = platform->bundle->resourcesPath();
    platform->service = ServiceConfiguration::read(
        {resources + QStringLiteral("/service.conf"), QStringLiteral("/etc/quorvane/service.conf")});
    platform->account = UserAccount::current();
    platform->temporaryFolder = QStringLiteral("/tmp");
    addPreferencesAndLog(*platform);
    platform->notifications = std::make_unique<NotificationCenter>();
    platform->delayedCalls = std::make_unique<QtDelayedCalls>();
    platform->scripting = std::make_unique<SudoScriptingService>(resources);
    platform->authorization = std::make_unique<PkexecAuthorizationService>();
    platform->keyStore = std::make_unique<SecretServiceKeyStore>();
    platform->hardware = std::make_unique<LinuxHardwareRegistry>();
    platform->hotKeys = makeHotKeyService(hotKeyDesktop(SessionHints::ofProcess()));
    platform->processes = std::make_unique<ProcProcessTable>();
    platform->trayHosts =
        std::make_unique<LinuxTrayHosts>(QGuiApplication::platformName() == QLatin1String("xcb"));
    platform->tunnelWatch = std::make_unique<NetlinkTunnelWatch>();
    addNetwork(*platform);
    platform->workspace = std::make_unique<LinuxWorkspace>(WorkspaceFolders::ofUser(platform->account.home));
    const auto bus = isSessionBusThere() ? QDBusConnection::sessionBus() : QDBusConnection(QString());
    platform->appearance = std::make_unique<PortalAppearance>(bus);
    platform->control = std::make_unique<DBusControlService>(bus, platform->bundle->version());
    platform->background = std::make_unique<ThreadedWork>();
    return platform;
}

} // namespace quorvane::platform
