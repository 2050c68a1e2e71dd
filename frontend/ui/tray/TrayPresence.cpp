#include "TrayPresence.h"

#include "LocationMenu.h"
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

/// Qt and the trays read a tooltip that looks like markup as markup. No address contains these characters.
QString withoutMarkup(QString text) {
    return text.replace(u'<', u'\u2039').replace(u'>', u'\u203A').replace(u'&', u'+');
}

} // namespace

TrayPresence::TrayPresence(QObject *parent) : QObject(parent), m_trayMenu(std::make_unique<QMenu>()) {
    fillMenu();
    setStatus(Look::NotHidden, {});
    setImage(QStringLiteral("Tray"));
    hosts().installChangeHandler([this] { updateForHosts(); });
    updateForHosts();
}

TrayPresence::~TrayPresence() {
    hosts().installChangeHandler({});
    platform::Platform::current().delayedCalls->cancelAll(this);
    if (m_appStatusIcon != nullptr) {
        m_appStatusIcon->setContextMenu(nullptr);
    }
}

void TrayPresence::fillMenu() {
    m_trayMenu->setToolTipsVisible(true);
    m_hideItem = m_trayMenu->addAction(QStringLiteral("Quorvane"));
    m_changeItem = m_trayMenu->addAction(tr("Change IP"));
    m_afterLocations = m_trayMenu->addSeparator();
    m_copyItem = m_trayMenu->addAction(tr("Copy IP"));
    m_checkItem = m_trayMenu->addAction(tr("Check IP in Browser"));
    m_trayMenu->addSeparator();
    m_showItem = m_trayMenu->addAction(tr("Show Quorvane"));
    m_refreshItem = m_trayMenu->addAction(tr("Refresh Locations"));
    m_settingsItem = m_trayMenu->addAction(tr("Settings..."));
    m_helpItem = m_trayMenu->addAction(tr("Help"));
    m_aboutItem = m_trayMenu->addAction(tr("About Quorvane"));
    m_trayMenu->addSeparator();
    m_quitItem = m_trayMenu->addAction(tr("Quit Quorvane"));
}

void TrayPresence::setLocations(LocationList &list) {
    m_locationMenu = std::make_unique<LocationMenu>(list);
    m_trayMenu->insertMenu(m_afterLocations, m_locationMenu.get());
    connect(m_locationMenu.get(), &LocationMenu::chosen, this, &TrayPresence::locationChosen);
}

bool TrayPresence::isAvailable() const {
    if (m_appStatusIcon == nullptr) {
        return hosts().notifierHost() || hosts().embeddingTray();
    }
    return m_iconKind == Kind::Notifier ? hosts().notifierHost() : hosts().embeddingTray();
}

void TrayPresence::updateForHosts() {
    if (m_appStatusIcon == nullptr && hosts().notifierHost()) {
        makeIcon(Kind::Notifier);
    } else if (m_appStatusIcon == nullptr && hosts().embeddingTray() && !m_waitingForNotifier) {
        m_waitingForNotifier = true;
        platform::Platform::current().delayedCalls->callAfter(notifierWaitSeconds, this, [this] {
            m_waitingForNotifier = false;
            if (m_appStatusIcon == nullptr && hosts().embeddingTray()) {
                makeIcon(Kind::Embedded);
            }
        });
    }
    if (const bool available = isAvailable(); available != m_reportedAvailable) {
        m_reportedAvailable = available;
        Q_EMIT availabilityChanged(available);
    }
}

void TrayPresence::makeIcon(Kind kind) {
    m_iconKind = kind;
    m_appStatusIcon = new QSystemTrayIcon(this);
    connect(m_appStatusIcon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                // A status notifier host reports one kind of activation, an embedding tray clicks and
                // double-clicks.
                if (reason == QSystemTrayIcon::DoubleClick ||
                    (reason == QSystemTrayIcon::Trigger && m_iconKind == Kind::Notifier)) {
                    Q_EMIT doubleClicked();
                }
            });
    m_appStatusIcon->setIcon(Images::icon(m_shownImage));
    m_appStatusIcon->setToolTip(m_toolTip);
    // Set before the icon is shown, because some hosts request the menu only once.
    m_appStatusIcon->setContextMenu(m_trayMenu.get());
    m_appStatusIcon->show();
}

void TrayPresence::setImage(const QString &name) {
    if (name == m_shownImage || !Images::exists(name)) {
        return;
    }
    m_shownImage = name;
    if (m_appStatusIcon != nullptr) {
        m_appStatusIcon->setIcon(Images::icon(name));
    }
}

void TrayPresence::setStatus(Look look, const QString &address) {
    QString text;
    switch (look) {
    case Look::NotHidden:
        text = tr("Quorvane: your IP is not hidden");
        break;
    case Look::Searching:
        text = tr("Quorvane: searching for an available IP");
        break;
    case Look::Hidden:
        text = tr("Quorvane: your IP is hidden behind %1").arg(withoutMarkup(address.trimmed()));
        break;
    }
    if (text == m_toolTip) {
        return;
    }
    m_toolTip = text;
    if (m_appStatusIcon != nullptr) {
        m_appStatusIcon->setToolTip(m_toolTip);
    }
}

} // namespace quorvane
