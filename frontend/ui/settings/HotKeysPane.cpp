#include "HotKeysPane.h"

#include "frontend/ui/shared/Alerts.h"
#include "ui_SettingsHotkeys.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QRegularExpression>
#include <QStyledItemDelegate>

namespace quorvane {

namespace {

/// The label of the action's pop-up, as the form has it.
const char *labelOf(HotKeys::Action action) {
    switch (action) {
    case HotKeys::Action::HideIp:
        return QT_TRANSLATE_NOOP("quorvane::SettingsHotkeys", "&Hide IP:");
    case HotKeys::Action::ChangeIp:
        return QT_TRANSLATE_NOOP("quorvane::SettingsHotkeys", "Chan&ge IP:");
    case HotKeys::Action::StopHidingIp:
        return QT_TRANSLATE_NOOP("quorvane::SettingsHotkeys", "&Stop hiding IP:");
    case HotKeys::Action::DiscardIp:
        return QT_TRANSLATE_NOOP("quorvane::SettingsHotkeys", "&Discard IP:");
    case HotKeys::Action::BringUpWindow:
        return QT_TRANSLATE_NOOP("quorvane::SettingsHotkeys", "&Bring up window:");
    }
    return "";
}

void selectTag(QComboBox &dropdown, qint32 tag) {
    const int at = dropdown.findData(QVariant::fromValue<qint64>(tag));
    dropdown.setCurrentIndex(at < 0 ? 0 : at);
}

qint32 tagOf(const QComboBox &dropdown) {
    return static_cast<qint32>(dropdown.currentData().toLongLong());
}

} // namespace

HotKeysPane::HotKeysPane(QWidget *parent) : QWidget(parent), m_ui(std::make_unique<Ui::SettingsHotkeys>()) {
    m_ui->setupUi(this);
    m_rows = {{{m_ui->dropdownHideIP, m_ui->noteHideIP},
               {m_ui->dropdownChangeIP, m_ui->noteChangeIP},
               {m_ui->dropdownStopHidingIP, m_ui->noteStopHidingIP},
               {m_ui->dropdownDiscardIP, m_ui->noteDiscardIP},
               {m_ui->dropdownBringUpWindow, m_ui->noteBringUpWindow}}};
    for (const HotKeys::Action action : HotKeys::actions) {
        fillDropdownWithHotKeys(*row(action).dropdown);
        row(action).dropdown->setItemDelegate(new QStyledItemDelegate(this)); // it follows the theme
        connect(row(action).dropdown, &QComboBox::activated, this,
                [this, action] { selectHotKeyDropbownPressed(action); });
    }
}

HotKeysPane::~HotKeysPane() = default;

const HotKeysPane::Row &HotKeysPane::row(HotKeys::Action action) const {
    return m_rows[static_cast<std::size_t>(action) - 1];
}

void HotKeysPane::fillDropdownWithHotKeys(QComboBox &dropdown) {
    dropdown.clear();
    for (const HotKeyTable::Offer &offer : HotKeyTable::offers()) {
        addItem(offer.label, offer.tag, dropdown);
    }
}

void HotKeysPane::addItem(const QString &title, qint32 tag, QComboBox &dropdown) {
    dropdown.addItem(title, QVariant::fromValue<qint64>(tag));
}

void HotKeysPane::refresh() {
    for (const HotKeys::Action action : HotKeys::actions) {
        selectStored(action);
    }
}

void HotKeysPane::selectStored(HotKeys::Action action) {
    selectTag(*row(action).dropdown, HotKeys::storedTag(action));
}

qint32 HotKeysPane::selectedTag(HotKeys::Action action) const {
    return tagOf(*row(action).dropdown);
}

void HotKeysPane::selectHotKeyDropbownPressed(HotKeys::Action sender) {
    const qint32 tag = selectedTag(sender);
    for (const HotKeys::Action other : HotKeys::actions) {
        if (other != sender && tag != HotKeyTable::none && tag == selectedTag(other)) {
            Alerts::shared().critical({QStringLiteral("Quorvane"),
                                       tr("Selected hot key is already being used by another action."),
                                       {}});
            selectStored(sender);
            return;
        }
    }
}

QString HotKeysPane::textOf(const HotKeys::Problem &problem) {
    switch (problem.kind) {
    case HotKeys::Problem::Kind::None:
        return {};
    case HotKeys::Problem::Kind::TakenElsewhere:
        return tr("Another program uses this combination.");
    case HotKeys::Problem::Kind::HeldByAction:
        return tr("Belongs to \"%1\" until Quorvane quits.").arg(nameOf(problem.holder));
    case HotKeys::Problem::Kind::UnknownKey:
        return tr("This keyboard has no such key.");
    case HotKeys::Problem::Kind::Declined:
        return tr("The desktop declined this combination.");
    }
    return {};
}

QString HotKeysPane::nameOf(HotKeys::Action action) {
    // Some languages put the mnemonic in parentheses behind the name, a wide colon, or a space before it.
    static const QRegularExpression decoration(QStringLiteral("\\s*\\(&.\\)|&|\\s*[:\uFF1A]$"));
    return QCoreApplication::translate("quorvane::SettingsHotkeys", labelOf(action)).remove(decoration);
}

void HotKeysPane::showProblems(const HotKeys &hotKeys) {
    for (const HotKeys::Action action : HotKeys::actions) {
        const QString text = textOf(hotKeys.problem(action));
        row(action).note->setText(text);
        row(action).dropdown->setAccessibleDescription(text);
    }
    m_ui->hint->setText(
        HotKeys::isAvailable()
            ? tr("These work while any program is in front. A combination that you replace stays "
                 "in force until Quorvane quits.")
            : tr("This desktop offers no global hot keys: these combinations have no effect.") +
                  QLatin1Char('\n') +
                  tr("Its settings can bind keys to commands: %1")
                      .arg(QStringLiteral("quorvane --hide, --change, --stop, --discard, --show")));
}

} // namespace quorvane
