#pragma once

#include <QObject>

namespace quorvane {

class QrvMainWindowController;

/// The application's delegate: allows one copy per user, connects the main window, and handles re-opening and
/// quitting. Main thread.
class QrvApplicationController final : public QObject {
    Q_OBJECT

public:
    /// The main window controller is not owned and must outlive this.
    explicit QrvApplicationController(QrvMainWindowController &mainWindow, QObject *parent = nullptr);
    /// From here on no failed command resets the session: the main window controller may be destroyed.
    ~QrvApplicationController() override;
    QrvApplicationController(const QrvApplicationController &) = delete;
    QrvApplicationController &operator=(const QrvApplicationController &) = delete;

    /// Call it before all other functions of the delegate. False when another copy is running: the user has
    /// seen an alert, and the process shall end with status 0.
    [[nodiscard]] static bool initialize();

    void applicationDidFinishLaunching();
    /// False while no public address is known yet.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);
    /// Writes the preferences; always true.
    bool applicationShouldTerminate();
    /// Notifies the session that the process is about to end.
    void applicationWillTerminate();

private:
    QrvMainWindowController &m_mainWindow;
};

} // namespace quorvane
