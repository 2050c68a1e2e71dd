#pragma once

#include "frontend/support/Task.h"

#include <QDialog>
#include <QPointer>
#include <functional>
#include <memory>
#include <mutex>

class QLineEdit;
class QPushButton;

namespace quorvane {

class AlertPresenter;
class EventQueue;

namespace Ui {
class AuthenticaionView;
}

/// The modal dialog for the administrator's name and password. Stores the pair, tests it, checks and sets the
/// DNS servers, and posts "startVpn" to start the session. Main thread; the commands run beside it, as an
/// event of the session's queue.
class QrvAuthenticationWindowController final : public QDialog {
    Q_OBJECT

public:
    /// The presenter shows an alert for a wrong pair. Neither is owned, and both must outlive the dialog.
    QrvAuthenticationWindowController(EventQueue &events, AlertPresenter &alerts, QWidget *parent = nullptr);
    ~QrvAuthenticationWindowController() override;

    /// Shows the window's dialog, which is created once per window, as soon as no other modal window is open,
    /// and returns. `closed` is called when it was closed. If such a dialog is open or about to open, no
    /// other is shown, and `closed` is called when that one was closed.
    static void open(EventQueue &events, AlertPresenter &alerts, QWidget &window,
                     const std::function<void()> &closed);

    /// Fills in the current user's full name and puts the focus into the password field.
    void loadWindow();
    /// Shows the dialog and returns.
    void showModal();

    /// Whether any such dialog is open or about to open.
    [[nodiscard]] static bool isRunning() { return m_openDialog != nullptr; }

    [[nodiscard]] QLineEdit *userNameTextField() const;
    [[nodiscard]] QLineEdit *passwordTextField() const;
    [[nodiscard]] QPushButton *startButton() const;

    void okButton();
    void cancelButton();
    /// The Return key calls this; it calls okButton().
    void performClick();
    void closeWindow();

protected:
    void reject() override;

private:
    [[nodiscard]] static QrvAuthenticationWindowController &ofWindow(EventQueue &events,
                                                                     AlertPresenter &alerts, QWidget &window);
    /// Tests the stored pair, and starts the session if it is valid. The dialog may be gone meanwhile.
    [[nodiscard]] static Task<> testPairAndStart(QPointer<QrvAuthenticationWindowController> dialog);
    /// The question is what was asked beside the password, null for nothing: then the pair is wrong.
    void reportFailure(const QString &otherQuestion);
    [[nodiscard]] static Task<> ensureDnsAndStart(QPointer<QrvAuthenticationWindowController> dialog);

    EventQueue &m_events;
    AlertPresenter &m_alerts;
    std::unique_ptr<Ui::AuthenticaionView> m_ui;
    std::mutex m_saveLock;
    /// Null while no dialog is open.
    static inline QPointer<QrvAuthenticationWindowController> m_openDialog;
};

} // namespace quorvane
