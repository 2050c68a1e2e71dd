#pragma once

#include <QObject>
#include <QString>
#include <memory>

class QAction;
class QMenu;
class QSystemTrayIcon;

namespace quorvane {

/// The status item: the tray icon and its menu, in whichever tray the desktop has. Main thread.
///
/// The icon is made when the first tray is there, be that long after the start: a status notifier host where
/// there is one, an embedding tray otherwise. Without a tray the menu is still there, but nothing shows it.
class TrayPresence final : public QObject {
    Q_OBJECT

public:
    /// What the tooltip says of the session.
    enum class Status {
        NotHidden, ///< the real address is seen
        Searching, ///< an attempt runs
        Hidden     ///< a lent address is seen
    };

    /// For so long an embedding tray waits for a status notifier host: at login the two start together, and
    /// the first icon decides for the whole run.
    static constexpr double embeddingGraceSeconds = 2.0;

    explicit TrayPresence(QObject *parent = nullptr);
    ~TrayPresence() override;

    /// Whether a tray shows the icon, or is about to.
    [[nodiscard]] bool isAvailable() const;
    /// Shows the image of this name, if there is one.
    void setImage(const QString &name);
    /// Tells the state in words; the address is the lent one.
    void setStatus(Status status, const QString &address);

    [[nodiscard]] QString toolTip() const { return words; }

    [[nodiscard]] QAction *hideIpMenuItem() const { return hideItem; }

    [[nodiscard]] QAction *changeIpMenuItem() const { return changeItem; }

    [[nodiscard]] QAction *copyIpMenuItem() const { return copyItem; }

    [[nodiscard]] QAction *checkIpMenuItem() const { return checkItem; }

    [[nodiscard]] QAction *showSelfMenuItem() const { return showItem; }

    [[nodiscard]] QAction *refreshMenuItem() const { return refreshItem; }

    [[nodiscard]] QAction *settingsMenuItem() const { return settingsItem; }

    [[nodiscard]] QAction *aboutMenuItem() const { return aboutItem; }

    [[nodiscard]] QAction *quitMenuItem() const { return quitItem; }

    [[nodiscard]] QMenu &menu() const { return *trayMenu; }

Q_SIGNALS:
    /// A double-click; where the tray offers none, its single activation.
    void doubleClicked();
    /// A tray came or went.
    void availabilityChanged(bool available);

private:
    enum class Kind { Notifier, Embedded };

    void fillMenu();
    void followHosts();
    void makeIcon(Kind kind);

    std::unique_ptr<QMenu> trayMenu;
    QAction *hideItem = nullptr;
    QAction *changeItem = nullptr;
    QAction *copyItem = nullptr;
    QAction *checkItem = nullptr;
    QAction *showItem = nullptr;
    QAction *refreshItem = nullptr;
    QAction *settingsItem = nullptr;
    QAction *aboutItem = nullptr;
    QAction *quitItem = nullptr;
    QSystemTrayIcon *appStatusIcon = nullptr;
    Kind iconKind = Kind::Notifier;
    bool waitingForNotifier = false;
    bool told = false;
    QString shownImage;
    QString words;
};

} // namespace quorvane
