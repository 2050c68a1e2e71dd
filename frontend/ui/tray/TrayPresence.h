#pragma once

#include "frontend/session/SessionFacts.h"

#include <QObject>
#include <QString>
#include <memory>

class QAction;
class QMenu;
class QSystemTrayIcon;

namespace quorvane {

class LocationList;
class LocationMenu;

/// The status item: the tray icon and its menu, in any kind of tray. Main thread.
///
/// The icon is created when the first tray appears, which may be long after the start. A status notifier host
/// is preferred to an embedding tray. Without a tray the menu exists, but nothing shows it.
class TrayPresence final : public QObject {
    Q_OBJECT

public:
    /// With only an embedding tray, the icon waits this long for a status notifier host: at login both start
    /// together, and the kind of the icon cannot change during the run.
    static constexpr double notifierWaitSeconds = 2.0;

    explicit TrayPresence(QObject *parent = nullptr);
    ~TrayPresence() override;

    /// Whether a tray shows the icon, or is about to.
    [[nodiscard]] bool isAvailable() const;
    /// Shows the image of this name, if there is one.
    void setImage(const QString &name);
    /// Sets the tooltip to the text of the state; the address is the lent one.
    void setStatus(Look look, const QString &address);

    /// The list that the submenu of locations shows; not owned, must outlive this. Call it once.
    void setLocations(LocationList &list);

    [[nodiscard]] QString toolTip() const { return m_toolTip; }

    [[nodiscard]] QAction *hideIpMenuItem() const { return m_hideItem; }

    [[nodiscard]] QAction *changeIpMenuItem() const { return m_changeItem; }

    [[nodiscard]] QAction *copyIpMenuItem() const { return m_copyItem; }

    [[nodiscard]] QAction *checkIpMenuItem() const { return m_checkItem; }

    [[nodiscard]] QAction *showSelfMenuItem() const { return m_showItem; }

    [[nodiscard]] QAction *refreshMenuItem() const { return m_refreshItem; }

    [[nodiscard]] QAction *settingsMenuItem() const { return m_settingsItem; }

    [[nodiscard]] QAction *helpMenuItem() const { return m_helpItem; }

    [[nodiscard]] QAction *aboutMenuItem() const { return m_aboutItem; }

    [[nodiscard]] QAction *quitMenuItem() const { return m_quitItem; }

    /// Null before setLocations().
    [[nodiscard]] LocationMenu *locationMenu() const { return m_locationMenu.get(); }

    [[nodiscard]] QMenu &menu() const { return *m_trayMenu; }

Q_SIGNALS:
    /// The icon was double-clicked, or activated in a tray that reports no double-clicks.
    void doubleClicked();
    /// The user chose the entry of the location list with this id.
    void locationChosen(quint64 id);
    /// A tray appeared or disappeared.
    void availabilityChanged(bool available);

private:
    enum class Kind { Notifier, Embedded };

    void fillMenu();
    void updateForHosts();
    void makeIcon(Kind kind);

    std::unique_ptr<QMenu> m_trayMenu;
    std::unique_ptr<LocationMenu> m_locationMenu;
    QAction *m_hideItem = nullptr;
    QAction *m_changeItem = nullptr;
    QAction *m_afterLocations = nullptr;
    QAction *m_copyItem = nullptr;
    QAction *m_checkItem = nullptr;
    QAction *m_showItem = nullptr;
    QAction *m_refreshItem = nullptr;
    QAction *m_settingsItem = nullptr;
    QAction *m_helpItem = nullptr;
    QAction *m_aboutItem = nullptr;
    QAction *m_quitItem = nullptr;
    QSystemTrayIcon *m_appStatusIcon = nullptr;
    Kind m_iconKind = Kind::Notifier;
    bool m_waitingForNotifier = false;
    bool m_reportedAvailable = false;
    QString m_shownImage;
    QString m_toolTip;
};

} // namespace quorvane
