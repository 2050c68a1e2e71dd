#include "platform/SystemFacts.h"

#include "SessionBus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QGuiApplication>
#include <QLocale>
#include <QScreen>
#include <QSysInfo>

namespace quorvane::platform {

namespace {

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString none = QStringLiteral("none");

QString variable(const char *name) {
    const QString value = qEnvironmentVariable(name);
    return value.isEmpty() ? none : value;
}

QString portal() {
    const QString noBus = QStringLiteral("no session bus");
    if (!isSessionBusThere()) {
        return noBus;
    }
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return noBus;
    }
    return bus.interface()->isServiceRegistered(portalName) ? QStringLiteral("running") : none;
}

QString screens() {
    QStringList found;
    const QList<QScreen *> all = QGuiApplication::screens();
    for (const QScreen *screen : all) {
        found.append(QStringLiteral("%1x%2 at %3")
                         .arg(screen->size().width())
                         .arg(screen->size().height())
                         .arg(screen->devicePixelRatio()));
    }
    return found.join(QStringLiteral(", "));
}

} // namespace

QStringList systemFacts() {
    return {
        QStringLiteral("Qt: ") + QString::fromLatin1(qVersion()),
        QStringLiteral("System: ") + QSysInfo::prettyProductName(),
        QStringLiteral("Kernel: %1 %2, %3")
            .arg(QSysInfo::kernelType(), QSysInfo::kernelVersion(), QSysInfo::currentCpuArchitecture()),
        QStringLiteral("Desktop: ") + variable("XDG_CURRENT_DESKTOP"),
        QStringLiteral("Session: %1, windows over %2")
            .arg(variable("XDG_SESSION_TYPE"), QGuiApplication::platformName()),
        QStringLiteral("Desktop portal: ") + portal(),
        QStringLiteral("Screens: ") + screens(),
        QStringLiteral("Language: ") + QLocale().name(),
    };
}

} // namespace quorvane::platform
