#include "TrayPresence.h"

#include "Images.h"

#include <QAction>
#include <QMenu>
#include <QSystemTrayIcon>

TrayPresence::TrayPresence(QObject *parent)
    : QObject(parent), trayMenu(std::make_unique<QMenu>()), appStatusIcon(new QSystemTrayIcon(this)),
      hideItem(trayMenu->addAction(QStringLiteral("Quorvane"))),
      changeItem(trayMenu->addAction(tr("Change IP"))),
      checkItem(trayMenu->addAction(tr("Check IP in Browser"))), copyItem(trayMenu->addAction(tr("Copy IP"))),
      showItem(nullptr), refreshItem(nullptr), aboutItem(nullptr), quitItem(nullptr) {
    trayMenu->addSeparator();
    showItem = trayMenu->addAction(tr("Show Quorvane"));
    refreshItem = trayMenu->addAction(tr("Refresh Locations"));
    aboutItem = trayMenu->addAction(tr("About Quorvane"));
    trayMenu->addSeparator();
    quitItem = trayMenu->addAction(tr("Quit Quorvane"));
    appStatusIcon->setToolTip(QStringLiteral("Quorvane"));
    connect(appStatusIcon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                // A status notifier host tells one activation and has no geometry; an embedding tray tells
                // both.
                const bool oneActivationOnly = appStatusIcon->geometry().isNull();
                if (reason == QSystemTrayIcon::DoubleClick ||
                    (reason == QSystemTrayIcon::Trigger && oneActivationOnly)) {
                    Q_EMIT doubleClicked();
                }
            });
}

TrayPresence::~TrayPresence() {
    appStatusIcon->setContextMenu(nullptr);
}

bool TrayPresence::isAvailable() const {
    return appStatusIcon->isVisible();
}

void TrayPresence::setImage(const QString &name) {
    if (name == shownImage || !Images::exists(name)) {
        return;
    }
    shownImage = name;
    appStatusIcon->setIcon(Images::icon(name));
    if (!appStatusIcon->isVisible() && QSystemTrayIcon::isSystemTrayAvailable()) {
        appStatusIcon->show();
    }
}

void TrayPresence::attachMenu() {
    if (appStatusIcon->contextMenu() == nullptr) {
        appStatusIcon->setContextMenu(trayMenu.get());
    }
}
