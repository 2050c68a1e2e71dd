#pragma once

#include <QActionGroup>
#include <QStringList>
#include <QToolBar>

namespace quorvane {

/// The settings window's toolbar: an item for each shown pane, of which one is pressed. The user cannot
/// rearrange it. Main thread.
class SettingsToolbar final : public QToolBar {
    Q_OBJECT

public:
    static QString tbiIpAddresses() { return QStringLiteral("tbiIpAddresses"); }

    static QString tbiCookieCrumble() { return QStringLiteral("tbiCookieCrumble"); }

    static QString tbiHotKeys() { return QStringLiteral("tbiHotKeys"); }

    static QString tbiAdvanced() { return QStringLiteral("tbiAdvanced"); }

    static QString tbiVpn() { return QStringLiteral("tbiVpn"); }

    explicit SettingsToolbar(QWidget *parent = nullptr);

    /// Every identifier that has an item.
    [[nodiscard]] static QStringList toolbarAllowedItemIdentifiers();
    /// The identifiers of the items that the window shows.
    [[nodiscard]] static QStringList toolbarDefaultItemIdentifiers();

    /// A new item, owned by the toolbar but not yet shown in it; null for an unknown identifier. The action's
    /// object name is the identifier.
    [[nodiscard]] QAction *itemForItemIdentifier(const QString &identifier);
    /// Shows the item of each default identifier.
    void showDefaultItems();
    /// Shows the item as pressed, without emitting toolbarItemPressed().
    void select(const QString &identifier);

    /// The item whose pane is shown first; null before it was created.
    [[nodiscard]] QAction *firstToolbarItem() const { return m_first; }

Q_SIGNALS:
    void toolbarItemPressed(const QString &identifier);

private:
    QActionGroup m_group;
    QAction *m_first = nullptr;
};

} // namespace quorvane
