#pragma once

#include <QtGlobal>

class QWidget;

namespace quorvane {

/// The operations of the main window's controller that the settings window uses. Main thread.
class SettingsDelegate {
public:
    virtual ~SettingsDelegate() = default;
    /// Shows the main window in front of the others.
    virtual void showMainWindow() = 0;
    /// The settings were applied.
    virtual void settingsDidChange() = 0;
    /// A global hot key was pressed.
    virtual void hotKeyFired(quint32 identifier) = 0;
    [[nodiscard]] virtual bool launchesOnStartup() const = 0;
    virtual void startupLaunchButtonPressed(bool on) = 0;
    /// Tests the stored administrator pair, and opens the window's dialog unless it is valid or a dialog is
    /// open.
    virtual void checkAdministrator(QWidget &window) = 0;
    /// Sets the name servers that were there before the program changed them.
    virtual void putBackNameServers() = 0;
};

} // namespace quorvane
