#include "QrvApplicationController.h"
#include "QrvMainWindowController.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/support/Translations.h"
#include "frontend/ui/shared/Theme.h"
#include "platform/BackgroundWork.h"
#include "platform/Platform.h"
#include "platform/ProcessHardening.h"
#include "platform/SystemLog.h"

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace quorvane;

namespace {

int runApplication(QApplication &application) {
    if (!QrvApplicationController::initialize()) {
        return EXIT_SUCCESS;
    }
    Theme::apply(application);
    QApplication::setQuitOnLastWindowClosed(false);
    platform::QuitSignals quitSignals;
    QObject::connect(&quitSignals, &platform::QuitSignals::quitRequested, &application,
                     [] { QCoreApplication::exit(); });
    QrvMainWindowController mainWindow;
    QrvApplicationController delegate(mainWindow);
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &delegate, [&delegate] {
        if (delegate.applicationShouldTerminate()) {
            delegate.applicationWillTerminate();
        }
    });
    mainWindow.awakeFromNib();
    delegate.applicationDidFinishLaunching();
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[]) {
    if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
        const QByteArray version = platform::Bundle::ofExecutable().version().toUtf8();
        std::printf("%s\n", version.constData());
        return EXIT_SUCCESS;
    }
    platform::hardenProcess();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quorvane"));
    QApplication::setDesktopFileName(QStringLiteral("com.tallowind.Quorvane"));
    const auto services = platform::makeLinuxPlatform();
    platform::Platform::setCurrent(services.get());
    services->log->setMask(&QrvCredentials::sanitizeStringByRemovingLoginAndPassword);
    Translations::install(application, Translations::ofUser(),
                          services->bundle->resourcesPath() + QStringLiteral("/translations"));
    const int status = runApplication(application);
    // A request may still wait for the service; quitting does not wait for it.
    if (!services->background->isIdle()) {
        std::fflush(nullptr);
        std::_Exit(status);
    }
    platform::Platform::setCurrent(nullptr);
    return status;
}
