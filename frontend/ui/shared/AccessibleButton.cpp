#include "AccessibleButton.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QKeySequence>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

namespace quorvane {

namespace {

QAccessible::Role roleOf(const QAbstractButton &button) {
    if (qobject_cast<const QCheckBox *>(&button) != nullptr) {
        return QAccessible::CheckBox;
    }
    if (qobject_cast<const QRadioButton *>(&button) != nullptr) {
        return QAccessible::RadioButton;
    }
    return QAccessible::Button;
}

/// The title without the marks of mnemonics: "&&" is one ampersand.
QString plainTitle(const QString &title) {
    QString plain;
    for (qsizetype i = 0; i < title.size(); ++i) {
        if (title[i] == u'&' && i + 1 < title.size()) {
            ++i;
        }
        plain += title[i];
    }
    return plain;
}

QString shortcutOf(const QAbstractButton &button) {
    const QKeySequence set = button.shortcut();
    return (set.isEmpty() ? QKeySequence::mnemonic(button.text()) : set).toString(QKeySequence::NativeText);
}

QAccessibleInterface *make(const QString & /*className*/, QObject *object) {
    auto *button = qobject_cast<QAbstractButton *>(object);
    return button != nullptr ? new AccessibleButton(*button) : nullptr;
}

} // namespace

AccessibleButton::AccessibleButton(QAbstractButton &button)
    : QAccessibleWidget(&button, roleOf(button)), m_button(button) {}

void AccessibleButton::install() {
    QAccessible::installFactory(&make);
}

QString AccessibleButton::text(QAccessible::Text kind) const {
    const QString own = QAccessibleWidget::text(kind);
    if (!own.isEmpty()) {
        return own;
    }
    switch (kind) {
    case QAccessible::Name:
        return plainTitle(m_button.text());
    case QAccessible::Accelerator:
        return shortcutOf(m_button);
    default:
        return {};
    }
}

QAccessible::State AccessibleButton::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = m_button.isCheckable();
    state.checked = m_button.isChecked();
    state.pressed = m_button.isDown();
    if (const auto *pushButton = qobject_cast<const QPushButton *>(&m_button)) {
        state.defaultButton = pushButton->isDefault();
    }
    return state;
}

QStringList AccessibleButton::actionNames() const {
    QStringList names;
    if (m_button.isEnabled()) {
        if (m_button.isCheckable()) {
            names.append(toggleAction());
        }
        names.append(pressAction());
    }
    return names + QAccessibleWidget::actionNames();
}

void AccessibleButton::doAction(const QString &name) {
    if (name == pressAction() || name == toggleAction()) {
        QTimer::singleShot(0, &m_button, &QAbstractButton::click);
    } else {
        QAccessibleWidget::doAction(name);
    }
}

QStringList AccessibleButton::keyBindingsForAction(const QString &name) const {
    const QString shortcut = name == pressAction() ? shortcutOf(m_button) : QString();
    return shortcut.isEmpty() ? QStringList() : QStringList(shortcut);
}

} // namespace quorvane
