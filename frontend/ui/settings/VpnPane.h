#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

class QFileDialog;

namespace quorvane {

namespace Ui {
class SettingsVpn;
}

/// The pane "Test VPN": the user's own configuration file and login. Stored by its own button, not with the
/// other settings. Main thread.
class VpnPane final : public QWidget {
    Q_OBJECT

public:
    explicit VpnPane(QWidget *parent = nullptr);
    ~VpnPane() override;

    /// Shows the stored values, if a path is stored.
    void refresh();
    /// Stores the three fields, and the login also in a file that only the user can read.
    void setVpnSettings();
    /// Opens the file panel, which does not block the window; the chosen file is shown in the path field.
    void pushBrowse();

private:
    void panelConfirmed();

    std::unique_ptr<Ui::SettingsVpn> m_ui;
    QPointer<QFileDialog> m_panel;
};

} // namespace quorvane
