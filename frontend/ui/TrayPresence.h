#pragma once

#include <QObject>
#include <QString>
#include <memory>

class QAction;
class QMenu;
class QSystemTrayIcon;

/// The status item: the tray icon and its menu. Main thread. Without a tray the menu is still there, but
/// nothing shows it.
class TrayPresence final : public QObject {
    Q_OBJECT

public:
    explicit TrayPresence(QObject *parent = nullptr);
    ~TrayPresence() override;

    [[nodiscard]] bool isAvailable() const;
    /// Shows the image of this name, if there is one.
    void setImage(const QString &name);
    /// The menu opens on a click only once attached.
    void attachMenu();

    [[nodiscard]] QAction *hideIpMenuItem() const { return hideItem; }

    [[nodiscard]] QAction *changeIpMenuItem() const { return changeItem; }

    [[nodiscard]] QAction *copyIpMenuItem() const { return copyItem; }

    [[nodiscard]] QAction *checkIpMenuItem() const { return checkItem; }

    [[nodiscard]] QAction *refreshMenuItem() const { return refreshItem; }

    [[nodiscard]] QAction *aboutMenuItem() const { return aboutItem; }

    [[nodiscard]] QMenu &menu() const { return *trayMenu; }

    [[nodiscard]] QAction *showSelfMenuItem() const { return showItem; }

    [[nodiscard]] QAction *quitMenuItem() const { return quitItem; }

Q_SIGNALS:
    /// A double-click; where the tray offers none, its single activation.
    void doubleClicked();

private:
    std::unique_ptr<QMenu> trayMenu;
    QSystemTrayIcon *appStatusIcon;
    QAction *hideItem;
    QAction *changeItem;
    QAction *checkItem;
    QAction *copyItem;
    QAction *showItem;
    QAction *refreshItem;
    QAction *aboutItem;
    QAction *quitItem;
    QString shownImage;
};
