#include "DefaultsBinding.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>

namespace quorvane {

namespace {

void checkOnly(QButtonGroup &group, qint64 tag) {
    const QList<QAbstractButton *> buttons = group.buttons();
    group.setExclusive(false); // an exclusive group always keeps one button on
    for (QAbstractButton *button : buttons) {
        button->setChecked(group.id(button) == tag);
    }
    group.setExclusive(true);
}

void selectText(QComboBox &box, const QString &text) {
    int at = text.isEmpty() ? -1 : box.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (at < 0 && !text.isEmpty()) {
        box.addItem(text);
        at = box.count() - 1;
    }
    box.setCurrentIndex(at);
}

} // namespace

DefaultsBinding::DefaultsBinding(QObject *parent) : QObject(parent) {}

void DefaultsBinding::bindBoolean(QAbstractButton &box, Preference preference) {
    m_readers.emplace_back([&box, preference] { box.setChecked(Preferences::editedBoolean(preference)); });
    connect(&box, &QAbstractButton::clicked, this, [this, preference](bool on) { edit(preference, on); });
}

void DefaultsBinding::bindInverse(QAbstractButton &box, Preference preference) {
    m_readers.emplace_back([&box, preference] { box.setChecked(!Preferences::editedBoolean(preference)); });
    connect(&box, &QAbstractButton::clicked, this, [this, preference](bool on) { edit(preference, !on); });
}

void DefaultsBinding::bindInteger(QAbstractButton &box, Preference preference) {
    m_readers.emplace_back(
        [&box, preference] { box.setChecked(Preferences::editedInteger(preference) != 0); });
    connect(&box, &QAbstractButton::clicked, this,
            [this, preference](bool on) { edit(preference, on ? 1 : 0); });
}

void DefaultsBinding::bindTag(QButtonGroup &group, Preference preference) {
    m_readers.emplace_back(
        [&group, preference] { checkOnly(group, Preferences::editedInteger(preference)); });
    connect(&group, &QButtonGroup::idClicked, this, [this, preference](int tag) { edit(preference, tag); });
}

void DefaultsBinding::bindText(QComboBox &box, Preference preference) {
    m_readers.emplace_back([&box, preference] { selectText(box, Preferences::editedText(preference)); });
    connect(&box, &QComboBox::textActivated, this,
            [this, preference](const QString &text) { edit(preference, text); });
}

void DefaultsBinding::refresh() {
    for (const auto &read : m_readers) {
        read();
    }
}

void DefaultsBinding::edit(Preference preference, const QVariant &value) {
    Preferences::edit(preference, value);
    Q_EMIT edited();
}

} // namespace quorvane
