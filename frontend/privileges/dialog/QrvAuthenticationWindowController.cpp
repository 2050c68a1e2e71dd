#include "QrvAuthenticationWindowController.h"

#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/ScriptUtil.h"
#include "frontend/support/AlertPresenter.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Notifications.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "ui_AuthenticaionView.h"

#include <QGuiApplication>

namespace quorvane {

namespace {

/// Shows the wait pointer during its lifetime: the privileged test lasts seconds when the pair is wrong.
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

QrvAuthenticationWindowController::QrvAuthenticationWindowController(AlertPresenter &alerts, QWidget *parent)
    : QDialog(parent), m_alerts(alerts), m_ui(std::make_unique<Ui::AuthenticaionView>()) {
    m_ui->setupUi(this);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    connect(m_ui->startButton, &QPushButton::clicked, this, &QrvAuthenticationWindowController::performClick);
    connect(m_ui->cancelButton, &QPushButton::clicked, this,
            &QrvAuthenticationWindowController::cancelButton);
}

QrvAuthenticationWindowController::~QrvAuthenticationWindowController() = default;

QLineEdit *QrvAuthenticationWindowController::userNameTextField() const {
    return m_ui->userNameTextField;
}

QLineEdit *QrvAuthenticationWindowController::passwordTextField() const {
    return m_ui->passwordTextField;
}

QPushButton *QrvAuthenticationWindowController::startButton() const {
    return m_ui->startButton;
}

bool QrvAuthenticationWindowController::runUnlessValid(AlertPresenter &alerts, QWidget &window) {
    if (QrvCredentials::sharedInstance().credentialsIsValid()) {
        return false;
    }
    if (!isRunning()) { // else the user sees the dialog already
        ofWindow(alerts, window).runModal();
    }
    return true;
}

QrvAuthenticationWindowController &QrvAuthenticationWindowController::ofWindow(AlertPresenter &alerts,
                                                                               QWidget &window) {
    auto *dialog =
        window.findChild<QrvAuthenticationWindowController *>(QString(), Qt::FindDirectChildrenOnly);
    if (dialog == nullptr) {
        dialog = new QrvAuthenticationWindowController(alerts, &window);
        dialog->loadWindow();
    }
    return *dialog;
}

void QrvAuthenticationWindowController::open(AlertPresenter &alerts, QWidget &window,
                                             const std::function<void()> &closed) {
    if (!isRunning()) {
        m_openDialog = &ofWindow(alerts, window);
        m_openDialog->m_ui->passwordTextField->setFocus();
        m_openDialog->setModal(true);
        m_openDialog->show();
        connect(
            m_openDialog, &QDialog::finished, m_openDialog, [] { m_openDialog = nullptr; },
            Qt::SingleShotConnection);
    }
    connect(m_openDialog, &QDialog::finished, m_openDialog, closed, Qt::SingleShotConnection);
}

void QrvAuthenticationWindowController::loadWindow() {
    m_ui->userNameTextField->setText(platform::Platform::current().account.fullName);
    m_ui->passwordTextField->setFocus();
}

void QrvAuthenticationWindowController::runModal() {
    m_ui->passwordTextField->setFocus();
    m_openDialog = this;
    exec();
    m_openDialog = nullptr;
}

void QrvAuthenticationWindowController::performClick() {
    okButton();
}

void QrvAuthenticationWindowController::okButton() {
    const QString user = m_ui->userNameTextField->text();
    const QString password = m_ui->passwordTextField->text();
    if (user.isEmpty()) {
        Diagnostics::log(QStringLiteral("username is missing"));
        return;
    }
    if (password.isEmpty()) {
        Diagnostics::log(QStringLiteral("password is missing"));
        return;
    }
    {
        const std::lock_guard lock(m_saveLock);
        QrvCredentials::sharedInstance().saveUserName(user, password);
    }
    if (!pairIsValid()) {
        m_alerts.critical({QStringLiteral("Quorvane"), tr("You input wrong user name or password.\n"), {}});
        return;
    }
    ensureDnsAndStart();
    Diagnostics::log(QStringLiteral("QrvAuthenticationWindowController closed"));
    closeWindow();
}

void QrvAuthenticationWindowController::ensureDnsAndStart() {
    const BusyPointer busy;
    ScriptUtil script;
    // After a successful rewrite nothing is started; after a failed one the session starts nevertheless.
    if (script.getSystemDns() || !script.setSystemDns()) {
        platform::Platform::current().notifications->post(
            Notifications::startVpn, QVariant::fromValue(static_cast<QObject *>(m_ui->startButton)));
    }
}

void QrvAuthenticationWindowController::cancelButton() {
    closeWindow();
}

void QrvAuthenticationWindowController::reject() {
    closeWindow();
}

void QrvAuthenticationWindowController::closeWindow() {
    m_ui->passwordTextField->clear(); // a person who opens the dialog later must not find it filled in
    done(QDialog::Accepted);
}

} // namespace quorvane
