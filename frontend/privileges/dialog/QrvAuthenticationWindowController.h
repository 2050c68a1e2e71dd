#pragma once

#include <QDialog>
#include <memory>
#include <mutex>

class QLineEdit;
class QPushButton;

namespace Ui {
class AuthenticaionView;
}

/// The modal dialog for the administrator's name and password. Stores the pair, tests it, sees to the DNS
/// servers, and asks the session to start by the notification "startVpn". Main thread; the test and the DNS
/// work block it.
class QrvAuthenticationWindowController final : public QDialog {
    Q_OBJECT

public:
    explicit QrvAuthenticationWindowController(QWidget *parent = nullptr);
    ~QrvAuthenticationWindowController() override;

    /// Fills in the current user's full name and puts the focus into the password field.
    void loadWindow();
    /// Shows the dialog and returns when it has closed.
    void runModal();

    /// Whether such a dialog is open, whoever opened it.
    [[nodiscard]] static bool isRunning() { return running; }

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
    void seeToDnsAndStart();

    std::unique_ptr<Ui::AuthenticaionView> ui;
    std::mutex saveLock;
    static inline bool running = false;
};
