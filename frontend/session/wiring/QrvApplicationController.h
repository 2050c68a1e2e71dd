#pragma once

#include <QObject>

namespace quorvane {

class QrvMainWindowController;

/// The application's delegate: one copy per user, the hand-over to the main window, re-opening and quitting.
/// Main thread.
class QrvApplicationController final : public QObject {
    Q_OBJECT

public:
    /// The main window controller is not owned.
    explicit QrvApplicationController(QrvMainWindowController &mainWindow, QObject *parent = nullptr);

    /// Before anything else of the delegate. False when another copy runs: the user was told, and the
    /// process shall end with status 0.
    [[nodiscard]] static bool initialize();

    void applicationDidFinishLaunching();
    /// False while no public address is known yet.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);
    /// Writes the preferences; quitting may always proceed.
    bool applicationShouldTerminate();
    /// Tells the session that the process is about to end.
    void applicationWillTerminate();

private:
    QrvMainWindowController &m_mainWindow;
};

} // namespace quorvane
