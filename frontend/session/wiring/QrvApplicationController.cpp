#include "QrvApplicationController.h"

#include "QrvMainWindowController.h"
#include "frontend/privileges/FileUtils.h"
#include "frontend/privileges/SessionReset.h"
#include "frontend/session/SessionState.h"
#include "frontend/support/Notifications.h"
#include "frontend/support/Preferences.h"
#include "frontend/ui/shared/Alerts.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

namespace quorvane {

QrvApplicationController::QrvApplicationController(QrvMainWindowController &mainWindow, QObject *parent)
    : QObject(parent), m_mainWindow(mainWindow) {}

QrvApplicationController::~QrvApplicationController() {
    SessionReset::setTarget(nullptr, {});
}

bool QrvApplicationController::initialize() {
    auto &services = platform::Platform::current();
    if (services.workspace->acquireSingleInstance(services.bundle->identifier())) {
        return true;
    }
    Alerts::shared().criticalAndWait(
        {QStringLiteral("Quorvane"), tr("Quorvane is already running."),
         tr("There is already a copy of Quorvane running. This copy cannot be opened until that instance is "
            "quit.")});
    return false;
}

void QrvApplicationController::applicationDidFinishLaunching() {
    QrvMainWindowController::setSharedMainWindow(&m_mainWindow);
    SessionReset::setTarget(&m_mainWindow, [window = &m_mainWindow] { window->session().resetRequested(); });
    FileUtils::checkUserDefaultsPremmision();
}

bool QrvApplicationController::applicationShouldHandleReopen(bool hasVisibleWindows) {
    if (SessionState::shared().currentIp.isNull()) {
        return false;
    }
    if (!hasVisibleWindows) {
        m_mainWindow.showSelfMenuItemPressed();
    }
    return true;
}

bool QrvApplicationController::applicationShouldTerminate() {
    Preferences::synchronize();
    return true;
}

void QrvApplicationController::applicationWillTerminate() {
    platform::Platform::current().notifications->post(Notifications::applicationWillTerminate);
}

} // namespace quorvane
