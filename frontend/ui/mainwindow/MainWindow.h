#pragma once

#include "frontend/session/RotationControls.h"
#include "frontend/session/SessionDisplay.h"

#include <QMainWindow>
#include <memory>

namespace quorvane {

class QrvLocationPaneController;

namespace Ui {
class MainWindow;
}

/// The main window: draws the display state and tells what the user pressed. Decides nothing. Main thread.
class MainWindow final : public QMainWindow, public RotationControls {
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    void draw(const DisplayState &state);

    [[nodiscard]] QrvLocationPaneController &locationPane() const;
    // RotationControls
    [[nodiscard]] QList<LocationChoice::Entry> locations() const override;
    [[nodiscard]] quint64 selectedLocation() const override;
    void selectLocation(quint64 id) override;
    void selectRandomLocation() override;
    void removeLocation(const QString &title) override;
    [[nodiscard]] bool requiresUS() const override;
    void setRequiresUS(bool on) override;
    [[nodiscard]] bool changesAutomatically() const override;
    [[nodiscard]] QString transportLabel() const override;

    void setChangesAutomatically(bool on);
    void setNonRepeat(bool on);
    /// 0 for TCP, 1 for UDP.
    [[nodiscard]] int transportIndex() const;
    void setTransportIndex(int index);

    /// Puts the window above others from its first showing, until dropFloatingLevel().
    void raiseFloatingLevel();
    /// Back to the normal level, without hiding, flashing or unfocusing the window.
    void dropFloatingLevel();

    /// Whether the tray can bring the window back. A window that was put away follows: it is hidden while
    /// there is a tray, else it waits minimised in the task bar.
    void setReachableByTray(bool reachable);
    /// Out of the user's way until bringForward(), or until he takes it from the task bar; what closing does.
    void sendToBackground();
    void bringForward();

Q_SIGNALS:
    void hideButtonPressed(bool on);
    void changeIpPressed();
    void discardIpPressed();
    void changeEverySwitched(bool on);
    void requireUSSwitched(bool on);
    void nonRepeatSwitched(bool on);
    void websitePressed();
    void aboutPressed();
    void advancedSettingsPressed();
    void intervalEntered(int minutes);
    void transportChosen(int index);
    void quitRequested();

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    /// Return presses the button that has the focus, else the hide button; in the interval's field it ends
    /// the editing, as Escape does.
    void keyPressEvent(QKeyEvent *event) override;

private:
    void connectControls();
    void intervalTyped();
    void intervalStepped(int minutes);
    void mousePressEvent(QMouseEvent *event) override;
    void endEditing();
    void hideOrMinimise();
    [[nodiscard]] static QString stateDescription(const QString &image);
    void drawImages(const DisplayState &state);

    std::unique_ptr<Ui::MainWindow> m_ui;
    DisplayState m_shown;
    bool m_reachableByTray = false;
    bool m_inBackground = false;
};

} // namespace quorvane
