#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

class QFileDialog;

namespace quorvane {

namespace Ui {
class SettingsVpn;
}

/// The pane "Test VPN": a configuration file and a login of the user's own. Stored by its own button, not
/// with the other settings. Main thread.
class VpnPane final : public QWidget {
    Q_OBJECT

public:
    explicit VpnPane(QWidget *parent = nullptr);
    ~VpnPane() override;

    /// Shows what is stored, if a path is.
    void refresh();
    /// Stores the three fields, and the login in a file for the user's eyes only.
    void setVpnSettings();
    /// Opens the file panel beside the window; the file chosen there goes into the path field.
    void pushBrowse();

private:
    void panelConfirmed();

    std::unique_ptr<Ui::SettingsVpn> m_ui;
    QPointer<QFileDialog> m_panel;
};

} // namespace quorvane
