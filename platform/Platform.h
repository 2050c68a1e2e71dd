#pragma once

#include "Bundle.h"
#include "ServiceConfiguration.h"
#include "UserAccount.h"

#include <memory>

namespace quorvane::platform {

class Appearance;
class AuthorizationService;
class BackgroundWork;
class ControlService;
class DelayedCalls;
class HardwareRegistry;
class HotKeyService;
class KeyStore;
class LogSink;
class NetworkLock;
class NetworkReachability;
class NotificationCenter;
class PreferencesStore;
class ProcessTable;
class ScriptingService;
class SystemLog;
class TrayHosts;
class TunnelWatch;
class UrlLoader;
class UserDefaultsController;
class Workspace;

/// Every service of the desktop that the program uses, in one place.
///
/// One Platform is current at a time; the classes that exist once per process reach their services through
/// it. A test installs a platform of its own, with recording fakes for the services that it checks. It is
/// installed before and removed after everything that uses it, on the main thread; each member follows the
/// thread rule of its interface.
struct Platform {
    Platform();
    ~Platform();
    Platform(const Platform &) = delete;
    Platform &operator=(const Platform &) = delete;

    std::unique_ptr<Bundle> bundle;
    ServiceConfiguration service;
    UserAccount account;
    /// Folder for the service's answers, as temporary files.
    QString temporaryFolder;

    std::unique_ptr<PreferencesStore> preferences;
    std::unique_ptr<UserDefaultsController> userDefaults;
    std::unique_ptr<NotificationCenter> notifications;
    std::unique_ptr<DelayedCalls> delayedCalls;
    std::unique_ptr<LogSink> logSink;
    std::unique_ptr<SystemLog> log;
    std::unique_ptr<ScriptingService> scripting;
    std::unique_ptr<AuthorizationService> authorization;
    std::unique_ptr<KeyStore> keyStore;
    std::unique_ptr<NetworkReachability> reachability;
    std::unique_ptr<NetworkLock> networkLock;
    std::unique_ptr<HardwareRegistry> hardware;
    std::unique_ptr<HotKeyService> hotKeys;
    std::unique_ptr<ProcessTable> processes;
    std::unique_ptr<TrayHosts> trayHosts;
    std::unique_ptr<TunnelWatch> tunnelWatch;
    std::unique_ptr<UrlLoader> urls;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<Appearance> appearance;
    std::unique_ptr<ControlService> control;
    /// The last member, because its work uses the others: it is destroyed first, when all work has ended.
    std::unique_ptr<BackgroundWork> background;

    /// The installed platform; there must be one.
    [[nodiscard]] static Platform &current();
    static void setCurrent(Platform *platform);
};

/// Creates a platform with the real services of this Linux desktop. Needs a QGuiApplication: the workspace
/// opens the browser through it, and its window platform shows whether this is a Wayland session.
[[nodiscard]] std::unique_ptr<Platform> makeLinuxPlatform();

} // namespace quorvane::platform
