#include "QrvAuthenticationWindowController.h"

#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/ScriptUtil.h"
#include "frontend/support/AlertPresenter.h"
#include "frontend/support/Diagnostics.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "ui_AuthenticaionView.h"

#include <QGuiApplication>

namespace quorvane {

namespace {

/// The privileged test takes seconds when the pair is wrong: say so with the pointer.
class BusyPointer {
public:
    BusyPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }

    ~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }

    BusyPointer(const BusyPointer &) = delete;
    BusyPointer &operator=(const BusyPointer &) = delete;
};

bool pairIsValid() {
    const BusyPointer busy;
    return QrvCredentials::sharedInstance().credentialsIsValid();
}

} // namespace

QrvAuthenticationWindowController::QrvAuthenticationWindowController(AlertPresenter &presenter,
                                                                     QWidget *parent)
    : QDialog(parent), alerts(presenter), ui(std::make_unique<Ui::AuthenticaionView>()) {
    ui->setupUi(this);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    connect(ui->startButton, &QPushButton::clicked, this, &QrvAuthenticationWindowController::performClick);
    connect(ui->cancelButton, &QPushButton::clicked, this, &QrvAuthenticationWindowController::cancelButton);
}

QrvAuthenticationWindowController::~QrvAuthenticationWindowController() = default;

QLineEdit *QrvAuthenticationWindowController::userNameTextField() const {
    return ui->userNameTextField;
}

QLineEdit *QrvAuthenticationWindowController::passwordTextField() const {
    return ui->passwordTextField;
}

QPushButton *QrvAuthenticationWindowController::startButton() const {
    return ui->startButton;
}

bool QrvAuthenticationWindowController::runUnlessValid(AlertPresenter &alerts, QWidget &window) {
    if (QrvCredentials::sharedInstance().credentialsIsValid()) {
        return false;
    }
    if (running) {
        return true; // it is in front of the user already
    }
    auto *dialog =
        window.findChild<QrvAuthenticationWindowController *>(QString(), Qt::FindDirectChildrenOnly);
    if (dialog == nullptr) {
        dialog = new QrvAuthenticationWindowController(alerts, &window);
        dialog->loadWindow();
    }
    dialog->runModal();
    return true;
}

void QrvAuthenticationWindowController::loadWindow() {
    ui->userNameTextField->setText(platform::Platform::current().account.fullName);
    ui->passwordTextField->setFocus();
}

void QrvAuthenticationWindowController::runModal() {
    ui->passwordTextField->setFocus();
    running = true;
    exec();
    running = false;
}

void QrvAuthenticationWindowController::performClick() {
    okButton();
}

void QrvAuthenticationWindowController::okButton() {
    const QString user = ui->userNameTextField->text();
    const QString password = ui->passwordTextField->text();
    if (user.isEmpty()) {
        Diagnostics::log(QStringLiteral("username is missing"));
        return;
    }
    if (password.isEmpty()) {
        Diagnostics::log(QStringLiteral("password is missing"));
        return;
    }
    {
        const std::lock_guard lock(saveLock);
        QrvCredentials::sharedInstance().saveUserName(user, password);
    }
    if (!pairIsValid()) {
        alerts.critical({QStringLiteral("Quorvane"), tr("You input wrong user name or password.\n"), {}});
        return;
    }
    seeToDnsAndStart();
    Diagnostics::log(QStringLiteral("QrvAuthenticationWindowController closed"));
    closeWindow();
}

void QrvAuthenticationWindowController::seeToDnsAndStart() {
    const BusyPointer busy;
    ScriptUtil script;
    // After a successful rewrite nothing is started; after a failed one the session starts all the same.
    if (script.getSystemDns() || !script.setSystemDns()) {
        platform::Platform::current().notifications->post(
            QStringLiteral("startVpn"), QVariant::fromValue(static_cast<QObject *>(ui->startButton)));
    }
}

void QrvAuthenticationWindowController::cancelButton() {
    closeWindow();
}

void QrvAuthenticationWindowController::reject() {
    closeWindow();
}

void QrvAuthenticationWindowController::closeWindow() {
    ui->passwordTextField->clear(); // the next person at this window must not find it filled in
    done(QDialog::Accepted);
}

} // namespace quorvane
