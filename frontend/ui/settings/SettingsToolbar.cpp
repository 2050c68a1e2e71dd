#include "SettingsToolbar.h"

#include "frontend/ui/shared/Images.h"

#include <QAction>
#include <QToolButton>
#include <array>

namespace quorvane {

namespace {

constexpr QSize imageSize(32, 32);

struct Item {
    QString identifier;
    const char *label;
    QString image;
};

const std::array<Item, 5> &items() {
    static const std::array<Item, 5> all = {
        {{SettingsToolbar::tbiIpAddresses(), QT_TRANSLATE_NOOP("quorvane::SettingsToolbar", "IP Addresses"),
          QStringLiteral("NSPreferencesGeneral")},
         {SettingsToolbar::tbiCookieCrumble(),
          QT_TRANSLATE_NOOP("quorvane::SettingsToolbar", "Cookie Crumble"), QStringLiteral("cookies")},
         {SettingsToolbar::tbiHotKeys(), QT_TRANSLATE_NOOP("quorvane::SettingsToolbar", "Hot Keys"),
          QStringLiteral("NSBonjour")},
         {SettingsToolbar::tbiAdvanced(), QT_TRANSLATE_NOOP("quorvane::SettingsToolbar", "Advanced"),
          QStringLiteral("advanced")},
         {SettingsToolbar::tbiVpn(), QT_TRANSLATE_NOOP("quorvane::SettingsToolbar", "Test VPN"),
          QStringLiteral("NSNetwork")}}};
    return all;
}

} // namespace

SettingsToolbar::SettingsToolbar(QWidget *parent) : QToolBar(parent), m_group(this) {
    setMovable(false);
    setFloatable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    setIconSize(imageSize);
    m_group.setExclusive(true);
}

QStringList SettingsToolbar::toolbarAllowedItemIdentifiers() {
    return {tbiVpn(), tbiIpAddresses(), tbiCookieCrumble(), tbiHotKeys(), tbiAdvanced()};
}

QStringList SettingsToolbar::toolbarDefaultItemIdentifiers() {
    return {tbiIpAddresses(), tbiHotKeys()};
}

QAction *SettingsToolbar::itemForItemIdentifier(const QString &identifier) {
    for (const Item &item : items()) {
        if (item.identifier != identifier) {
            continue;
        }
        auto *action = new QAction(Images::icon(item.image), tr(item.label), this);
        action->setObjectName(identifier);
        action->setCheckable(true);
        m_group.addAction(action);
        connect(action, &QAction::triggered, this,
                [this, identifier] { Q_EMIT toolbarItemPressed(identifier); });
        if (identifier == tbiIpAddresses()) {
            m_first = action;
        }
        return action;
    }
    return nullptr;
}

void SettingsToolbar::showDefaultItems() {
    int number = 0;
    for (const QString &identifier : toolbarDefaultItemIdentifiers()) {
        QAction *action = itemForItemIdentifier(identifier);
        ++number;
        action->setShortcut(QKeySequence(QStringLiteral("Ctrl+%1").arg(number)));
        addAction(action);
        if (auto *button = qobject_cast<QToolButton *>(widgetForAction(action))) {
            button->setFocusPolicy(Qt::TabFocus);
            button->setAccessibleName(action->text());
        }
    }
}

void SettingsToolbar::select(const QString &identifier) {
    const QList<QAction *> shown = actions();
    for (QAction *action : shown) {
        if (action->objectName() == identifier) {
            action->setChecked(true);
        }
    }
}

} // namespace quorvane
