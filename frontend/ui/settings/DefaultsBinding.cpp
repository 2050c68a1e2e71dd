#include "DefaultsBinding.h"

#include "platform/Platform.h"
#include "platform/UserDefaultsController.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>

namespace quorvane {

namespace {

platform::UserDefaultsController &defaults() {
    return *platform::Platform::current().userDefaults;
}

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

void DefaultsBinding::bindBoolean(QAbstractButton &box, const QString &key) {
    m_readers.emplace_back([&box, key] { box.setChecked(defaults().boolean(key)); });
    connect(&box, &QAbstractButton::clicked, this, [this, key](bool on) { edit(key, on); });
}

void DefaultsBinding::bindInteger(QAbstractButton &box, const QString &key) {
    m_readers.emplace_back([&box, key] { box.setChecked(defaults().integer(key) != 0); });
    connect(&box, &QAbstractButton::clicked, this, [this, key](bool on) { edit(key, on ? 1 : 0); });
}

void DefaultsBinding::bindTag(QButtonGroup &group, const QString &key) {
    m_readers.emplace_back([&group, key] { checkOnly(group, defaults().integer(key)); });
    connect(&group, &QButtonGroup::idClicked, this, [this, key](int tag) { edit(key, tag); });
}

void DefaultsBinding::bindText(QComboBox &box, const QString &key) {
    m_readers.emplace_back([&box, key] { selectText(box, defaults().string(key)); });
    connect(&box, &QComboBox::textActivated, this, [this, key](const QString &text) { edit(key, text); });
}

void DefaultsBinding::refresh() {
    for (const auto &read : m_readers) {
        read();
    }
}

void DefaultsBinding::edit(const QString &key, const QVariant &value) {
    defaults().setValue(key, value);
    Q_EMIT edited();
}

} // namespace quorvane
