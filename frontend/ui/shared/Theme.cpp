#include "Theme.h"

#include "ThemeColours.h"
#include "ThemeStyle.h"

#include <QApplication>
#include <QPalette>
#include <QWidget>

#include <algorithm>

namespace quorvane {

namespace {

QColor colour(const char *name, Theme::Scheme scheme) {
    return {themeColour(QLatin1StringView(name), scheme)};
}

QPalette paletteOf(Theme::Scheme scheme) {
    const QColor text = colour("text", scheme);
    const QColor disabled = colour("disabled", scheme);
    QPalette palette;
    palette.setColor(QPalette::Window, colour("window", scheme));
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, colour("field", scheme));
    palette.setColor(QPalette::AlternateBase, colour("window", scheme));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, colour("raised", scheme));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, colour("field", scheme));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Highlight, colour("accent", scheme));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, colour("link", scheme));
    palette.setColor(QPalette::PlaceholderText, disabled);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    return palette;
}

/// "$name" is a colour. Every rule ends with the first "}" behind it.
constexpr char sheet[] = R"(
QPushButton { padding: 6px 16px; border: 1px solid $border; border-radius: 6px; background: $raised; }
QPushButton:hover { background: $hovered; }
QPushButton:pressed { background: $pressed; }
QPushButton:default { border-color: $accentBorder; }
QPushButton:focus { border: 2px solid $ring; padding: 5px 15px; }
QPushButton#advancedSettingsButton:enabled { color: white; }
QPushButton:disabled { color: $disabled; background: $dimmed; border-color: $line; }
QPushButton#buttonQuorvane { font-size: 15pt; font-weight: bold; color: white; background: $accent;
    border: 1px solid $accentBorder; border-radius: 8px; }
QPushButton#buttonQuorvane:hover { background: $accentHovered; }
QPushButton#buttonQuorvane:pressed { background: $accentPressed; }
QPushButton#buttonQuorvane:checked { background: $stop; border-color: $stopBorder; }
QPushButton#buttonQuorvane:checked:hover { background: $stopHovered; }
QPushButton#buttonQuorvane:checked:pressed { background: $stopPressed; }
QPushButton#buttonQuorvane:focus { border: 2px solid $ring; }
QPushButton#buttonQuorvane:disabled { background: #4c5a66; border-color: #5c6a76; color: #b4bcc2; }
quorvane--QrvUrlButton { color: $link; background: transparent; border: 2px solid transparent;
    border-radius: 4px; padding: 2px 4px; text-decoration: underline; }
quorvane--QrvUrlButton:hover { background: $hovered; }
quorvane--QrvUrlButton:pressed { background: $pressed; }
quorvane--QrvUrlButton:focus { border: 2px solid $ring; padding: 2px 4px; }
QComboBox { padding: 6px 10px; border: 1px solid $border; border-radius: 6px; background: $raised; }
QComboBox { combobox-popup: 0; }
QComboBox:hover { background: $hovered; }
QComboBox:focus { border: 2px solid $ring; padding: 5px 9px; }
QComboBox:disabled { color: $disabled; background: $dimmed; border-color: $line; }
HotKeysPane QComboBox QAbstractItemView { background: $list; border: 1px solid $border; }
HotKeysPane QComboBox QAbstractItemView::item { min-height: 22px; padding-left: 6px; }
HotKeysPane QComboBox QAbstractItemView::item:selected { background: $accent; color: white; }
QComboBox::drop-down { border: none; width: 24px; }
QComboBox::down-arrow { image: none; }
QCheckBox::indicator { width: 16px; height: 16px; }
QRadioButton::indicator { width: 14px; height: 14px; border: 1px solid $mark; border-radius: 8px;
    background: $field; }
QRadioButton::indicator:hover { border-color: $markHovered; }
QRadioButton::indicator:checked { border-color: $accentBorder; background: qradialgradient(cx: 0.5, cy: 0.5, radius: 0.5,
    fx: 0.5, fy: 0.5, stop: 0 white, stop: 0.42 white, stop: 0.55 $accent, stop: 1 $accent); }
QRadioButton::indicator:disabled { border-color: $border; }
QToolButton#rotationFold { border: 2px solid transparent; border-radius: 4px; padding: 2px 4px; }
QToolButton#rotationFold:hover { background: $hovered; }
QToolButton#rotationFold:focus { border-color: $ring; }
Line, QFrame[frameShape="4"] { color: $line; }
QLineEdit { padding: 6px 8px; border: 1px solid $border; border-radius: 6px; background: $field; }
QLineEdit:focus { border: 2px solid $ring; padding: 5px 7px; }
QLineEdit:disabled { color: $disabled; border-color: $line; }
QLineEdit#fieldChangeIpInterval { padding: 2px 4px; border-top-right-radius: 0px; border-bottom-right-radius: 0px; }
QLabel#fieldLine1 { font-size: 11pt; font-weight: bold; }
QLabel[quiet="true"] { color: $quiet; }
QLabel[warning="true"] { color: $warning; }
QTableView { border: 1px solid $border; border-radius: 6px; background: $field; padding: 2px; }
QTableView:focus { border: 2px solid $ring; padding: 1px; }
quorvane--SettingsToolbar { background: $bar; border: none; border-bottom: 1px solid $line; spacing: 6px; }
quorvane--SettingsToolbar QToolButton { border: 2px solid transparent; border-radius: 6px; padding: 4px 10px; color: $text; }
quorvane--SettingsToolbar QToolButton:hover { background: $barHovered; }
quorvane--SettingsToolbar QToolButton:checked { background: $barChecked; }
quorvane--SettingsToolbar QToolButton:focus { border-color: $ring; }
QProgressBar { border: none; border-radius: 3px; background: $field; max-height: 6px; }
QProgressBar::chunk { background: $accent; border-radius: 3px; }
)";

/// What the palette does elsewhere: a widget that the sheet styles ignores the palette of the view around it.
constexpr char paletteSheet[] = R"(
QWidget { color: $text; selection-background-color: $accent; selection-color: white; }
QWidget:disabled { color: $disabled; }
QAbstractItemView { background: $field; }
)";

QString withColours(const QString &rules, Theme::Scheme scheme) {
    QString coloured;
    coloured.reserve(rules.size());
    QStringView rest = rules;
    for (qsizetype mark = rest.indexOf(u'$'); mark >= 0; mark = rest.indexOf(u'$')) {
        const QStringView after = rest.sliced(mark + 1);
        const auto *end = std::ranges::find_if_not(after, [](QChar unit) { return unit.isLetter(); });
        const QByteArray name = after.first(end - after.begin()).toLatin1();
        coloured += rest.first(mark);
        const auto *colour = std::ranges::find(themeColours, QLatin1StringView(name), &ThemeColour::name);
        if (colour != themeColours.end()) {
            coloured += scheme == Theme::Scheme::Dark ? colour->dark : colour->light;
        } else {
            coloured += rest.sliced(mark, 1 + name.size()); // makes the sheet invalid
        }
        rest = after.sliced(name.size());
    }
    return coloured + rest;
}

/// The same rules for what is inside of a class of views, for which they then win over general ones.
QString inside(const QString &view, const QString &rules) {
    QString scoped;
    for (const QString &rule : rules.split(u'}')) {
        const qsizetype body = rule.indexOf(u'{');
        if (body < 0) {
            continue;
        }
        QStringList selectors = rule.left(body).trimmed().split(u',');
        for (QString &selector : selectors) {
            selector = view + u' ' + selector.trimmed();
        }
        scoped += selectors.join(u',') + rule.mid(body) + QStringLiteral("}\n");
    }
    return scoped;
}

/// A sheet names the sides as they are on the screen.
QString mirrored(QString rules) {
    return rules.replace(QStringLiteral("-right-radius"), QStringLiteral("-left-radius"))
        .replace(QStringLiteral("padding-left"), QStringLiteral("padding-right"));
}

} // namespace

void Theme::apply(QApplication &application, Scheme scheme) {
    QApplication::setStyle(new ThemeStyle); // the application owns it
    QApplication::setPalette(paletteOf(scheme));
    QString rules = withColours(QLatin1StringView(sheet), scheme);
    if (scheme == Scheme::Light) {
        rules +=
            inside(QStringLiteral("quorvane--BackgroundView"),
                   withColours(QLatin1StringView(paletteSheet) + QLatin1StringView(sheet), Scheme::Dark));
    }
    application.setStyleSheet(QGuiApplication::isRightToLeft() ? mirrored(rules) : rules);
}

} // namespace quorvane
