#pragma once

#include <QWidget>
#include <memory>
#include <optional>

class QButtonGroup;

namespace quorvane {

class DefaultsBinding;

namespace Ui {
class SettingsAdvanced;
}

/// The pane "Advanced": the browser's user agent and the referrer. Everything here is a held edit.
/// Main thread.
class AdvancedPane final : public QWidget {
    Q_OBJECT

public:
    /// The mode in which the chosen user agent is used.
    static constexpr int modeChosen = 1;

    /// The binding is not owned; it must outlive the pane.
    explicit AdvancedPane(DefaultsBinding &binding, QWidget *parent = nullptr);
    ~AdvancedPane() override;

    /// Enables the list of user agents if the mode is to use the chosen one, else disables it.
    void reassignControls();
    [[nodiscard]] bool isUserAgentComboEnabled() const;
    void matrixModeUserAgentPressed();

    /// Absent while no mode is selected.
    [[nodiscard]] std::optional<int> selectedMode() const;
    /// Empty while no user agent is selected.
    [[nodiscard]] QString selectedUserAgent() const;
    [[nodiscard]] bool hidesReferrer() const;

private:
    std::unique_ptr<Ui::SettingsAdvanced> m_ui;
    QButtonGroup *m_matrixUserAgent;
};

} // namespace quorvane
