#pragma once

#include "frontend/session/DisplayState.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>
#include <memory>

namespace quorvane {

class IntervalField;
class LocationChooser;
class QrvLocationPaneController;

namespace Ui {
class MainWindow;
}

/// The main window: draws the display state and emits a signal for each control that the user operates. It
/// contains no rules of the session. Main thread.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    /// The chooser of locations is not owned and must outlive this.
    explicit MainWindow(LocationChooser &chooser, QWidget *parent = nullptr);
    ~MainWindow() override;

    void draw(const DisplayState &state);

    [[nodiscard]] QrvLocationPaneController &locationPane() const;
    void setNonRepeat(bool on);
    /// 0 for TCP, 1 for UDP.
    [[nodiscard]] int transportIndex() const;
    void setTransportIndex(int index);

    /// The interval field's action, and the end of its editing: a 0 becomes 1; the number is emitted.
    void intervalChanged();
    void controlTextEndEditing();

    /// Keeps the window above others from its first showing until dropFloatingLevel().
    void raiseFloatingLevel();
    /// Returns the window to the normal level without hiding, flashing or unfocusing it.
    void dropFloatingLevel();

    /// Whether the tray can show the window again. A window in the background is hidden while there is a
    /// tray, else minimised to the task bar.
    void setReachableByTray(bool reachable);
    /// Hides or minimises the window until bringForward(), or until the user restores it from the task bar.
    /// Closing the window does the same.
    void sendToBackground();
    void bringForward();

Q_SIGNALS:
    void hideButtonPressed(bool on);
    void changeIpPressed();
    void discardIpPressed();
    void liftLockPressed();
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
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    /// Return presses the focused button, or the hide button if no button has the focus; in the interval
    /// field Return and Escape end the editing.
    void keyPressEvent(QKeyEvent *event) override;

private:
    void connectControls();
    void mousePressEvent(QMouseEvent *event) override;
    void endEditing();
    void endIntervalEditing();
    [[nodiscard]] static QString stateDescription(Look look);
    void drawImages(const DisplayState &state);
    void drawStateImage(const QString &name);
    void drawStep(const DisplayState &state);
    void showSeconds();
    /// On a low screen the picture is smaller and the rotation's controls are folded.
    void fitToScreen();
    void unfoldRotation(bool unfolded);
    /// As high as what is in it; it scrolls if the screen has less room.
    void fitHeight();

    std::unique_ptr<Ui::MainWindow> m_ui;
    IntervalField *m_interval = nullptr;
    DisplayState m_shown;
    /// Since the search began, whatever its step or its attempt is.
    QElapsedTimer m_search;
    QTimer m_eachSecond;
    bool m_reachableByTray = false;
    bool m_inBackground = false;
    bool m_compact = false;
    QMetaObject::Connection m_screenChange;
};

} // namespace quorvane
