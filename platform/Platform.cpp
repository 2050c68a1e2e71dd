#include "Platform.h"

#include "Appearance.h"
#include "AuthorizationService.h"
#include "BackgroundWork.h"
#include "Control.h"
#include "DelayedCalls.h"
#include "HardwareRegistry.h"
#include "HotKeyService.h"
#include "KeyStore.h"
#include "NetworkLock.h"
#include "NetworkReachability.h"
#include "NotificationCenter.h"
#include "PreferencesStore.h"
#include "ProcessTable.h"
#include "ScriptingService.h"
#include "SystemLog.h"
#include "TrayHosts.h"
#include "TunnelWatch.h"
#include "UrlLoader.h"
#include "UserDefaultsController.h"
#include "Workspace.h"

namespace quorvane::platform {

namespace {

Platform *installed = nullptr;

} // namespace

Platform::Platform() = default;

Platform::~Platform() {
    if (installed == this) {
        installed = nullptr;
    }
}

Platform &Platform::current() {
    if (installed == nullptr) {
        qFatal("no platform is installed");
    }
    return *installed;
}

void Platform::setCurrent(Platform *platform) {
    installed = platform;
}

} // namespace quorvane::platform
