#pragma once

#include <QDialog>
#include <QPointer>
#include <functional>
#include <memory>
#include <mutex>

class QLineEdit;
class QPushButton;

namespace quorvane {

class AlertPresenter;

namespace Ui {
class AuthenticaionView;
}

/// The modal dialog for the administrator's name and password. Stores the pair, tests it, checks and sets the
/// DNS servers, and posts "startVpn" to start the session. Main thread; the test and the DNS commands block
/// it.
class QrvAuthenticationWindowController final : public QDialog {
    Q_OBJECT

public:
    /// The presenter shows an alert for a wrong pair; it is not owned and must outlive the dialog.
    explicit QrvAuthenticationWindowController(AlertPresenter &alerts, QWidget *parent = nullptr);
    ~QrvAuthenticationWindowController() override;

    /// Tests the stored pair. If it is not valid and no such dialog is open, runs the window's dialog, which
    /// is created once per window. Returns whether the pair was not valid. Blocks for the test and until the
    /// dialog is closed.
    static bool runUnlessValid(AlertPresenter &alerts, QWidget &window);

    /// Shows the window's dialog and returns. `closed` is called when it was closed. If such a dialog is open
    /// already, no other is shown, and `closed` is called when that one was closed.
    static void open(AlertPresenter &alerts, QWidget &window, const std::function<void()> &closed);

    /// Fills in the current user's full name and puts the focus into the password field.
    void loadWindow();
    /// Shows the dialog and returns when it has closed.
    void runModal();

    /// Whether any such dialog is open.
    [[nodiscard]] static bool isRunning() { return m_openDialog != nullptr; }

    [[nodiscard]] QLineEdit *userNameTextField() const;
    [[nodiscard]] QLineEdit *passwordTextField() const;
    [[nodiscard]] QPushButton *startButton() const;

    void okButton();
    void cancelButton();
    /// The Return key calls this; it calls okButton().
    void performClick();
    /// Ends the modal loop and closes the window.
    void closeWindow();

protected:
    void reject() override;

private:
    [[nodiscard]] static QrvAuthenticationWindowController &ofWindow(AlertPresenter &alerts, QWidget &window);
    void ensureDnsAndStart();

    AlertPresenter &m_alerts;
    std::unique_ptr<Ui::AuthenticaionView> m_ui;
    std::mutex m_saveLock;
    /// Null while no dialog is open.
    static inline QPointer<QrvAuthenticationWindowController> m_openDialog;
};

} // namespace quorvane
