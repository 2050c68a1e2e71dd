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

/// The pane "Hot Keys": a pop-up of combinations for each action, and what the desktop says to it. Choices
/// are taken up when the settings are applied. Main thread.
class HotKeysPane final : public QWidget {
    Q_OBJECT

public:
    explicit HotKeysPane(QWidget *parent = nullptr);
    ~HotKeysPane() override;

    /// Every pop-up shows its stored choice; one that is not offered shows as "None".
    void refresh();
    void selectStored(HotKeys::Action action);
    /// The tag of the selected entry.
    [[nodiscard]] qint32 selectedTag(HotKeys::Action action) const;
    /// What the action is called.
    [[nodiscard]] QString nameOf(HotKeys::Action action) const;
    /// Says beside each pop-up what is wrong with its registration, and whether hot keys work at all here.
    void showProblems(const HotKeys &hotKeys);

    /// Puts every combination that can be chosen into the pop-up, in place of what it held.
    static void fillDropdownWithHotKeys(QComboBox &dropdown);
    static void addItem(const QString &title, qint32 tag, QComboBox &dropdown);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// One combination is for one action: a choice that another pop-up shows is put back.
    void selectHotKeyDropbownPressed(HotKeys::Action sender);
    [[nodiscard]] QString textOf(const HotKeys::Problem &problem) const;

    struct Row {
        QComboBox *dropdown;
        QLabel *label;
        QLabel *note;
    };

    [[nodiscard]] const Row &row(HotKeys::Action action) const;

    std::unique_ptr<Ui::SettingsHotkeys> m_ui;
    std::array<Row, HotKeys::actions.size()> m_rows;
};

} // namespace quorvane
