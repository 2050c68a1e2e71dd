#pragma once

#include "frontend/session/HotKeys.h"

#include <QWidget>
#include <array>
#include <memory>

class QComboBox;
class QLabel;

namespace quorvane {

namespace Ui {
class SettingsHotkeys;
}

/// The pane "Hot Keys": for each action a pop-up of combinations and a note about a failed registration.
/// Choices are registered when the settings are applied. Main thread.
class HotKeysPane final : public QWidget {
    Q_OBJECT

public:
    explicit HotKeysPane(QWidget *parent = nullptr);
    ~HotKeysPane() override;

    /// Shows the stored choice in every pop-up; a stored tag that is not offered shows as "None".
    void refresh();
    void selectStored(HotKeys::Action action);
    /// The tag of the selected entry.
    [[nodiscard]] qint32 selectedTag(HotKeys::Action action) const;
    /// The action's name in the user's language, as the pane shows it.
    [[nodiscard]] static QString nameOf(HotKeys::Action action);
    /// Shows beside each pop-up the problem of its registration, and whether this desktop has hot keys.
    void showProblems(const HotKeys &hotKeys);

    /// Replaces the pop-up's entries by all combinations that can be chosen.
    static void fillDropdownWithHotKeys(QComboBox &dropdown);
    static void addItem(const QString &title, qint32 tag, QComboBox &dropdown);

private:
    /// A combination can belong to one action only: if another pop-up shows the same choice, this one is
    /// reset.
    void selectHotKeyDropbownPressed(HotKeys::Action sender);
    [[nodiscard]] static QString textOf(const HotKeys::Problem &problem);

    struct Row {
        QComboBox *dropdown;
        QLabel *note;
    };

    [[nodiscard]] const Row &row(HotKeys::Action action) const;

    std::unique_ptr<Ui::SettingsHotkeys> m_ui;
    std::array<Row, HotKeys::actions.size()> m_rows;
};

} // namespace quorvane
