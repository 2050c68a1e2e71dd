#pragma once

#include "Bundle.h"
#include "ServiceConfiguration.h"
#include "UserAccount.h"

#include <memory>

namespace quorvane::platform {

class AuthorizationService;
class DelayedCalls;
class HardwareRegistry;
class HotKeyService;
class KeyStore;
class LogSink;
class NetworkReachability;
class NotificationCenter;
class PreferencesStore;
class ProcessTable;
class ScriptingService;
class SystemLog;
class TrayHosts;
class UrlLoader;
class UserDefaultsController;
class Workspace;

/// Everything that the program takes from the desktop, in one place.
///
/// One Platform is current at a time; the classes that exist once per process reach their services through
/// it. A test installs its own with recording services in place of those that it wants to watch.
/// Installed before and removed after everything that uses it, on the main thread; the members are used
/// under each interface's own thread rule.
struct Platform {
    Platform();
    ~Platform();
    Platform(const Platform &) = delete;
    Platform &operator=(const Platform &) = delete;

    std::unique_ptr<Bundle> bundle;
    ServiceConfiguration service;
    UserAccount account;
    /// Folder for temporary answer files.
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
    std::unique_ptr<HardwareRegistry> hardware;
    std::unique_ptr<HotKeyService> hotKeys;
    std::unique_ptr<ProcessTable> processes;
    std::unique_ptr<TrayHosts> trayHosts;
    std::unique_ptr<UrlLoader> urls;
    std::unique_ptr<Workspace> workspace;

    /// The platform in force; there must be one.
    [[nodiscard]] static Platform &current();
    static void setCurrent(Platform *platform);
};

/// Fills a platform with the real services of this Linux desktop.
/// Needs a QGuiApplication for the workspace's browser opening, and to tell a Wayland session by the window
/// platform in use.
[[nodiscard]] std::unique_ptr<Platform> makeLinuxPlatform();

} // namespace quorvane::platform
