#include "QrvAuthenticationWindowController.h"

#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/ScriptUtil.h"
#include "frontend/support/AlertPresenter.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/EventQueue.h"
#include "frontend/support/ModalTurn.h"
#include "frontend/support/Notifications.h"
#include "frontend/ui/shared/WindowOrder.h"
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

} // namespace

QrvAuthenticationWindowController::QrvAuthenticationWindowController(EventQueue &events,
                                                                     AlertPresenter &alerts, QWidget *parent)
    : QDialog(parent), m_events(events), m_alerts(alerts), m_ui(std::make_unique<Ui::AuthenticaionView>()) {
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

QrvAuthenticationWindowController &
QrvAuthenticationWindowController::ofWindow(EventQueue &events, AlertPresenter &alerts, QWidget &window) {
    auto *dialog =
        window.findChild<QrvAuthenticationWindowController *>(QString(), Qt::FindDirectChildrenOnly);
    if (dialog == nullptr) {
        dialog = new QrvAuthenticationWindowController(events, alerts, &window);
        dialog->loadWindow();
    }
    return *dialog;
}

void QrvAuthenticationWindowController::open(EventQueue &events, AlertPresenter &alerts, QWidget &window,
                                             const std::function<void()> &closed) {
    const bool opens = !isRunning();
    if (opens) {
        m_openDialog = &ofWindow(events, alerts, window);
        connect(
            m_openDialog, &QDialog::finished, m_openDialog, [] { m_openDialog = nullptr; },
            Qt::SingleShotConnection);
    }
    connect(m_openDialog, &QDialog::finished, m_openDialog, closed, Qt::SingleShotConnection);
    if (opens) {
        ModalTurn::shared().request([dialog = m_openDialog](const std::function<void()> &ended) {
            if (!dialog) {
                ended();
                return;
            }
            connect(dialog, &QDialog::finished, dialog, ended, Qt::SingleShotConnection);
            dialog->showModal();
        });
    }
}

void QrvAuthenticationWindowController::loadWindow() {
    m_ui->userNameTextField->setText(platform::Platform::current().account.fullName);
    m_ui->passwordTextField->setFocus();
}

void QrvAuthenticationWindowController::showModal() {
    m_ui->passwordTextField->setFocus();
    showModally(*this);
}

void QrvAuthenticationWindowController::performClick() {
    okButton();
}

void QrvAuthenticationWindowController::okButton() {
    if (!m_ui->startButton->isEnabled()) {
        return;
    }
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
    m_ui->startButton->setEnabled(false); // one test at a time
    m_events.post([dialog = QPointer(this)] { return testPairAndStart(dialog); });
}

Task<>
QrvAuthenticationWindowController::testPairAndStart(QPointer<QrvAuthenticationWindowController> dialog) {
    const BusyPointer busy;
    if (!dialog) {
        co_return;
    }
    const auto question = std::make_shared<QString>();
    auto test = [question] {
        return QrvCredentials::sharedInstance().credentialsIsValid(*question);
    };
    auto tested = dialog->m_events.background(std::move(test));
    const bool valid = co_await tested;
    if (!dialog) {
        co_return;
    }
    if (valid) {
        const auto started = ensureDnsAndStart(dialog);
        co_await started;
    }
    if (!dialog) {
        co_return;
    }
    dialog->m_ui->startButton->setEnabled(true);
    if (valid) {
        Diagnostics::log(QStringLiteral("QrvAuthenticationWindowController closed"));
        dialog->closeWindow();
    } else {
        dialog->reportFailure(*question);
    }
}

void QrvAuthenticationWindowController::reportFailure(const QString &otherQuestion) {
    if (otherQuestion.isNull()) {
        m_alerts.critical(
            {QStringLiteral("Quorvane"), tr("You input wrong user name or password.\n"), {}, true});
        return;
    }
    m_alerts.critical(
        {QStringLiteral("Quorvane"),
         tr("The administrator's account asks for more than its password: \"%1\"").arg(otherQuestion),
         tr("Quorvane can answer the question for the password only. The password was not used for "
            "any other question."),
         true});
}

Task<>
QrvAuthenticationWindowController::ensureDnsAndStart(QPointer<QrvAuthenticationWindowController> dialog) {
    // After a successful rewrite nothing is started; after a failed one the session starts nevertheless.
    const bool starts = co_await dialog->m_events.background([] {
        ScriptUtil script;
        return script.getSystemDns() || !script.setSystemDns();
    });
    if (starts && dialog) {
        platform::Platform::current().notifications->post(
            Notifications::startVpn, QVariant::fromValue(static_cast<QObject *>(dialog->m_ui->startButton)));
    }
}

void QrvAuthenticationWindowController::cancelButton() {
    if (m_ui->startButton->isEnabled()) {
        closeWindow();
        return;
    }
    // The pair is being tested. What its result causes comes first, as for every event.
    m_events.post([dialog = QPointer(this)]() -> Task<> {
        if (dialog && dialog->isVisible()) {
            dialog->closeWindow();
        }
        co_return;
    });
}

void QrvAuthenticationWindowController::reject() {
    cancelButton();
}

void QrvAuthenticationWindowController::closeWindow() {
    m_ui->passwordTextField->clear(); // a person who opens the dialog later must not find it filled in
    done(QDialog::Accepted);
}

} // namespace quorvane
