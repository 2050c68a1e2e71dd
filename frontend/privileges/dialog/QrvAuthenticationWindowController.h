#pragma once

#include <QDialog>
#include <memory>
#include <mutex>

class QLineEdit;
class QPushButton;

namespace quorvane {

class AlertPresenter;

namespace Ui {
class AuthenticaionView;
}

/// The modal dialog for the administrator's name and password. Stores the pair, tests it, sees to the DNS
/// servers, and asks the session to start by the notification "startVpn". Main thread; the test and the DNS
/// work block it.
class QrvAuthenticationWindowController final : public QDialog {
    Q_OBJECT

public:
    /// The presenter shows what is wrong with a pair; it is not owned and must outlive the dialog.
    explicit QrvAuthenticationWindowController(AlertPresenter &alerts, QWidget *parent = nullptr);
    ~QrvAuthenticationWindowController() override;

    /// Tests the stored pair; when it is not valid, runs the window's dialog, which is made once per window,
    /// unless such a dialog is open already. Returns whether the pair was not valid. Blocks for the test and
    /// until the dialog is closed.
    static bool runUnlessValid(AlertPresenter &alerts, QWidget &window);

    /// Fills in the current user's full name and puts the focus into the password field.
    void loadWindow();
    /// Shows the dialog and returns when it has closed.
    void runModal();

    /// Whether such a dialog is open, whoever opened it.
    [[nodiscard]] static bool isRunning() { return m_running; }

    [[nodiscard]] QLineEdit *userNameTextField() const;
    [[nodiscard]] QLineEdit *passwordTextField() const;
    [[nodiscard]] QPushButton *startButton() const;

    void okButton();
    void cancelButton();
    /// The Return key's way to okButton().
    void performClick();
    /// Ends the modal loop and closes the window.
    void closeWindow();

protected:
    void reject() override;

private:
    void ensureDnsAndStart();

    AlertPresenter &m_alerts;
    std::unique_ptr<Ui::AuthenticaionView> m_ui;
    std::mutex m_saveLock;
    static inline bool m_running = false;
};

} // namespace quorvane
