#pragma once

#include <QWidget>
#include <memory>

namespace quorvane {

class DefaultsBinding;
class IntervalField;
class QrvTableDataSource;

namespace Ui {
class SettingsIpAddresses;
}

/// The pane "IP Addresses": the discarded addresses, the automatic change, how the program starts, and the
/// name servers. The
/// interval is stored when the settings are applied; the boxes are held edits. Main thread.
class IpAddressesPane final : public QWidget {
    Q_OBJECT

public:
    /// The binding and the discarded addresses are not owned; they must outlive the pane.
    IpAddressesPane(DefaultsBinding &binding, QrvTableDataSource &discarded, QWidget *parent = nullptr);
    ~IpAddressesPane() override;

    /// Shows the stored interval, and enables its controls if the box is on.
    void refresh();
    /// Offers to put name servers back if some are remembered.
    void refreshNameServers();
    void setLaunchesOnStart(bool on);
    /// The interval field's number, without a check.
    [[nodiscard]] int interval() const;

    void deleteDiscardedIpButtonPressed();
    void clearDiscardedIpsButtonPressed();

Q_SIGNALS:
    /// The user switched the launch at login.
    void launchSwitched(bool on);
    /// The user wants the name servers back now.
    void putBackPressed();

private:
    void changeIpEveryButtonPressed(bool on);

    std::unique_ptr<Ui::SettingsIpAddresses> m_ui;
    IntervalField *m_interval = nullptr;
};

} // namespace quorvane
