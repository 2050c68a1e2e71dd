#include "TrayPresence.h"

#include "frontend/ui/shared/Images.h"
#include "platform/DelayedCalls.h"
#include "platform/Platform.h"
#include "platform/TrayHosts.h"

#include <QAction>
#include <QMenu>
#include <QSystemTrayIcon>

namespace quorvane {

namespace {

platform::TrayHosts &hosts() {
    return *platform::Platform::current().trayHosts;
}

} // namespace

TrayPresence::TrayPresence(QObject *parent) : QObject(parent), trayMenu(std::make_unique<QMenu>()) {
    fillMenu();
    setStatus(Status::NotHidden, {});
    setImage(QStringLiteral("Tray"));
    hosts().installChangeHandler([this] { followHosts(); });
    followHosts();
}

TrayPresence::~TrayPresence() {
    hosts().installChangeHandler({});
    platform::Platform::current().delayedCalls->cancelAll(this);
    if (appStatusIcon != nullptr) {
        appStatusIcon->setContextMenu(nullptr);
    }
}

void TrayPresence::fillMenu() {
    hideItem = trayMenu->addAction(QStringLiteral("Quorvane"));
    changeItem = trayMenu->addAction(tr("Change IP"));
    trayMenu->addSeparator();
    copyItem = trayMenu->addAction(tr("Copy IP"));
    checkItem = trayMenu->addAction(tr("Check IP in Browser"));
    trayMenu->addSeparator();
    showItem = trayMenu->addAction(tr("Show Quorvane"));
    refreshItem = trayMenu->addAction(tr("Refresh Locations"));
    settingsItem = trayMenu->addAction(tr("Settings..."));
    aboutItem = trayMenu->addAction(tr("About Quorvane"));
    trayMenu->addSeparator();
    quitItem = trayMenu->addAction(tr("Quit Quorvane"));
}

bool TrayPresence::isAvailable() const {
    if (appStatusIcon == nullptr) {
        return hosts().notifierHost() || hosts().embeddingTray();
    }
    return iconKind == Kind::Notifier ? hosts().notifierHost() : hosts().embeddingTray();
}

void TrayPresence::followHosts() {
    if (appStatusIcon == nullptr && hosts().notifierHost()) {
        makeIcon(Kind::Notifier);
    } else if (appStatusIcon == nullptr && hosts().embeddingTray() && !waitingForNotifier) {
        waitingForNotifier = true;
        platform::Platform::current().delayedCalls->callAfter(embeddingGraceSeconds, this, [this] {
            waitingForNotifier = false;
            if (appStatusIcon == nullptr && hosts().embeddingTray()) {
                makeIcon(Kind::Embedded);
            }
        });
    }
    if (const bool available = isAvailable(); available != told) {
        told = available;
        Q_EMIT availabilityChanged(available);
    }
}

void TrayPresence::makeIcon(Kind kind) {
    iconKind = kind;
    appStatusIcon = new QSystemTrayIcon(this);
    connect(appStatusIcon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                // A status notifier host tells one activation, an embedding tray clicks and double-clicks.
                if (reason == QSystemTrayIcon::DoubleClick ||
                    (reason == QSystemTrayIcon::Trigger && iconKind == Kind::Notifier)) {
                    Q_EMIT doubleClicked();
                }
            });
    appStatusIcon->setIcon(Images::icon(shownImage));
    appStatusIcon->setToolTip(words);
    appStatusIcon->setContextMenu(trayMenu.get()); // before it is shown: some hosts ask for it once only
    appStatusIcon->show();
}

void TrayPresence::setImage(const QString &name) {
    if (name == shownImage || !Images::exists(name)) {
        return;
    }
    shownImage = name;
    if (appStatusIcon != nullptr) {
        appStatusIcon->setIcon(Images::icon(name));
    }
}

void TrayPresence::setStatus(Status status, const QString &address) {
    QString text;
    switch (status) {
    case Status::NotHidden:
        text = tr("Quorvane: your IP is not hidden");
        break;
    case Status::Searching:
        text = tr("Quorvane: searching for an available IP");
        break;
    case Status::Hidden:
        text = tr("Quorvane: your IP is hidden behind %1").arg(address.trimmed());
        break;
    }
    if (text == words) {
        return;
    }
    words = text;
    if (appStatusIcon != nullptr) {
        appStatusIcon->setToolTip(words);
    }
}

} // namespace quorvane
