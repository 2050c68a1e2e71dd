#include "Theme.h"

#include "ThemeStyle.h"

#include <QApplication>
#include <QPalette>

namespace quorvane {

namespace {

// 64 of 255 is the grey of the window; the other greys are lighter or darker.
const QColor window(64, 64, 64);
const QColor field(46, 46, 46);
const QColor raised(84, 84, 84);
const QColor accent(58, 143, 214);
const QColor text(245, 245, 245);
const QColor faint(150, 150, 150);

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, field);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, raised);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, field);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, accent.lighter(130));
    palette.setColor(QPalette::PlaceholderText, faint);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, faint);
    }
    return palette;
}

constexpr char sheet[] = R"(
QPushButton { padding: 6px 16px; border: 1px solid #6a6a6a; border-radius: 6px; background: #545454; }
QPushButton:hover { background: #606060; }
QPushButton:pressed { background: #484848; }
QPushButton:focus { border-color: #7fbcec; }
QPushButton:default { border-color: #3a8fd6; }
QPushButton#advancedSettingsButton:enabled { color: white; }
QPushButton:disabled { color: #969696; background: #4a4a4a; border-color: #585858; }
QPushButton#buttonQuorvane { font-size: 15pt; font-weight: bold; color: white; background: #2f7fc4;
    border: 1px solid #4f9ede; border-radius: 8px; }
QPushButton#buttonQuorvane:hover { background: #3a8fd6; }
QPushButton#buttonQuorvane:checked { background: #2d8a57; border-color: #4fb27c; }
QPushButton#buttonQuorvane:checked:hover { background: #35a067; }
QPushButton#buttonQuorvane:focus { border: 2px solid #a9d4f5; }
QPushButton#buttonQuorvane:disabled { background: #4c5a66; border-color: #5c6a76; color: #b4bcc2; }
QComboBox { padding: 6px 10px; border: 1px solid #6a6a6a; border-radius: 6px; background: #545454; }
QComboBox { combobox-popup: 0; }
HotKeysPane QComboBox QAbstractItemView { background: #3a3a3a; border: 1px solid #6a6a6a; }
HotKeysPane QComboBox QAbstractItemView::item { min-height: 22px; padding-left: 6px; }
HotKeysPane QComboBox QAbstractItemView::item:selected { background: #3a8fd6; color: white; }
QComboBox:focus { border-color: #7fbcec; }
QComboBox::drop-down { border: none; width: 24px; }
QComboBox::down-arrow { image: none; }
QCheckBox::indicator { width: 15px; height: 15px; }
QRadioButton::indicator { width: 13px; height: 13px; border: 1px solid #9a9a9a; border-radius: 7px;
    background: #2e2e2e; }
QRadioButton::indicator:hover { border-color: #c8c8c8; }
QCheckBox:focus, QRadioButton:focus { color: #a9d4f5; }
QRadioButton::indicator:focus { border-color: #7fbcec; }
QRadioButton::indicator:checked { border-color: #4f9ede; background: qradialgradient(cx: 0.5, cy: 0.5, radius: 0.5,
    fx: 0.5, fy: 0.5, stop: 0 white, stop: 0.42 white, stop: 0.55 #2f7fc4, stop: 1 #2f7fc4); }
QRadioButton::indicator:disabled { border-color: #6a6a6a; }
Line, QFrame[frameShape="4"] { color: #5a5a5a; }
QLineEdit { padding: 6px 8px; border: 1px solid #6a6a6a; border-radius: 6px; background: #2e2e2e; }
QLineEdit:focus { border-color: #7fbcec; }
QLabel#fieldLine1 { font-size: 11pt; font-weight: bold; }
QLabel[quiet="true"] { color: #b4b4b4; }
QLabel[warning="true"] { color: #f0b45a; }
QTableView { border: 1px solid #6a6a6a; border-radius: 6px; background: #2e2e2e; padding: 2px; }
QTableView:focus { border-color: #7fbcec; }
quorvane--SettingsToolbar { background: #363636; border: none; border-bottom: 1px solid #2a2a2a; spacing: 6px; }
quorvane--SettingsToolbar QToolButton { border: 1px solid transparent; border-radius: 6px; padding: 4px 10px; color: #f5f5f5; }
quorvane--SettingsToolbar QToolButton:hover { background: #444444; }
quorvane--SettingsToolbar QToolButton:checked { background: #4c4c4c; border-color: #5e5e5e; }
quorvane--SettingsToolbar QToolButton:focus { border-color: #7fbcec; }
QProgressBar { border: none; border-radius: 3px; background: #2e2e2e; max-height: 6px; }
QProgressBar::chunk { background: #3a8fd6; border-radius: 3px; }
)";

} // namespace

void Theme::apply(QApplication &application) {
    QApplication::setStyle(new ThemeStyle); // the application owns it
    QApplication::setPalette(darkPalette());
    application.setStyleSheet(QString::fromLatin1(sheet));
}

} // namespace quorvane
