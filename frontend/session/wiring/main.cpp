#include "QrvApplicationController.h"
#include "QrvMainWindowController.h"
#include "frontend/control/CommandRunner.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/support/Translations.h"
#include "frontend/ui/shared/AccessibleButton.h"
#include "frontend/ui/shared/Alerts.h"
#include "frontend/ui/shared/HelpKey.h"
#include "frontend/ui/shared/Images.h"
#include "frontend/ui/shared/ThemeChoice.h"
#include "platform/BackgroundWork.h"
#include "platform/Control.h"
#include "platform/NetworkLock.h"
#include "platform/Platform.h"
#include "platform/ProcessHardening.h"
#include "platform/ProgramFiles.h"
#include "platform/SystemLog.h"

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace quorvane;

namespace {

constexpr QSize windowIconSize(64, 64);

/// Refuses to run when root would run a file that another user can change.
bool areProgramFilesSafe() {
    const auto &services = platform::Platform::current();
    const QString path = platform::changeableProgramFile(services.bundle->resourcesPath());
    if (path.isNull()) {
        return true;
    }
    const QString text = QCoreApplication::translate("Start", "The program's files are not safe.");
    const QString details = QCoreApplication::translate(
                                "Start", "Another user can change \"%1\". It would be run with administrator "
                                         "rights. Please install the program again.")
                                .arg(path);
    std::fprintf(stderr, "%s %s\n", text.toLocal8Bit().constData(), details.toLocal8Bit().constData());
    Alerts::shared().criticalAndWait({QStringLiteral("Quorvane"), text, details});
    return false;
}

int runApplication(QApplication &application) {
    const ThemeChoice theme(application);
    const HelpKey help(application);
    AccessibleButton::install();
    // Only one size, because the window system receives every size of the icon.
    QApplication::setWindowIcon(
        QIcon(Images::pixmap(QStringLiteral("quorvane"), windowIconSize, application.devicePixelRatio())));
    if (!areProgramFilesSafe()) {
        return EXIT_FAILURE;
    }
    if (!QrvApplicationController::initialize()) {
        return EXIT_SUCCESS;
    }
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

/// Without a window: the program itself may be the reason why the network is needed.
int unlock() {
    const QString resources = platform::Bundle::ofExecutable().resourcesPath();
    if (const QString path = platform::changeableProgramFile(resources); !path.isNull()) {
        std::fprintf(stderr, "Another user can change %s.\n", path.toLocal8Bit().constData());
        return EXIT_FAILURE;
    }
    if (!platform::liftFromTerminal(resources)) {
        std::fputs("Traffic outside the tunnel may still be blocked.\n", stderr);
        return EXIT_FAILURE;
    }
    std::puts("Traffic outside the tunnel is not blocked.");
    return EXIT_SUCCESS;
}

/// Without a window: the running copy does what the command asks for.
int runCommand(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Quorvane"));
    Translations::install(*QCoreApplication::instance(), Translations::ofUser(),
                          platform::Bundle::ofExecutable().resourcesPath() + QStringLiteral("/translations"));
    const auto client = platform::makeControlClient();
    const auto printer = [](std::FILE *stream) {
        return [stream](const QString &line) {
            std::fprintf(stream, "%s\n", line.toLocal8Bit().constData());
            std::fflush(stream);
        };
    };
    return CommandRunner(*client, printer(stdout), printer(stderr))
        .run(CommandLine::parse(QCoreApplication::arguments()));
}

} // namespace

int main(int argc, char *argv[]) {
    if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
        const QByteArray version = platform::Bundle::ofExecutable().version().toUtf8();
        std::printf("%s\n", version.constData());
        return EXIT_SUCCESS;
    }
    if (argc > 1 && std::strcmp(argv[1], "--unlock") == 0) {
        return unlock();
    }
    if (argc > 1 && CommandLine::isCommand(argv[1])) {
        return runCommand(argc, argv);
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
    QGuiApplication::setLayoutDirection(Translations::shown().textDirection());
    const int status = runApplication(application);
    // A request may still wait for the service; quitting does not wait for it.
    if (!services->background->isIdle()) {
        std::fflush(nullptr);
        std::_Exit(status);
    }
    platform::Platform::setCurrent(nullptr);
    return status;
}
