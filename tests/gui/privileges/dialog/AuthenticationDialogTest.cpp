#include "frontend/privileges/dialog/QrvAuthenticationWindowController.h"

#include "frontend/privileges/QrvCredentials.h"
#include "frontend/support/EventQueue.h"
#include "tests/gui/GuiTest.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace quorvane {

using fakes::FakeScriptingService;

class AuthenticationDialogTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;
    EventQueue m_events;
    std::unique_ptr<QrvAuthenticationWindowController> m_dialog;
    QObject m_observer;
    QList<QVariant> m_started;
    bool m_pairAccepted = true;
    bool m_dnsRight = true;
    bool m_rewriteWorks = true;

    [[nodiscard]] QStringList lines() const {
        QStringList all;
        for (const auto &call : m_fixture->services.scripting().calls()) {
            all.append(call.line);
        }
        return all;
    }

    platform::ScriptResult answer(const FakeScriptingService::Call &call) const {
        if (call.line.startsWith(text("ls "))) {
            return m_pairAccepted ? FakeScriptingService::success(text(""))
                                  : FakeScriptingService::failure(1, text("Sorry, try again."));
        }
        if (call.line.startsWith(text("networksetup -get"))) {
            return FakeScriptingService::success(m_dnsRight ? text("8.8.8.8\n8.8.4.4") : text("192.168.1.1"));
        }
        return m_rewriteWorks ? FakeScriptingService::success(text(""))
                              : FakeScriptingService::failure(4, text("unknown"));
    }

    void fillAndStart() {
        m_dialog->userNameTextField()->setText(text("ada"));
        QTest::keyClicks(m_dialog->passwordTextField(), text("ada pw"));
        pressStart();
    }

    /// Also waits for the commands that the press begins.
    void pressStart() {
        QTest::mouseClick(m_dialog->startButton(), Qt::LeftButton);
        m_fixture->services.background().finishAll();
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<GuiFixture>();
        m_pairAccepted = m_dnsRight = m_rewriteWorks = true;
        m_started.clear();
        m_fixture->services.scripting().setHandler(
            [this](const FakeScriptingService::Call &call) { return answer(call); });
        m_fixture->services.platform().notifications->addObserver(
            text("startVpn"), &m_observer, [this](const QVariant &object) { m_started.append(object); });
        m_dialog = std::make_unique<QrvAuthenticationWindowController>(m_events, Alerts::shared());
        m_dialog->loadWindow();
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    }

    void cleanup() {
        m_dialog.reset();
        m_fixture.reset();
    }

    void otherQuestionEndsTheTestWithItsOwnWords() {
        m_fixture->services.scripting().setHandler([](const FakeScriptingService::Call &) {
            auto asked = FakeScriptingService::failure(1, text("Another question"));
            asked.otherQuestion = text("Verification code:");
            return asked;
        });
        fillAndStart();
        QCOMPARE(m_fixture->alerts.size(), 1);
        QCOMPARE(m_fixture->alerts.first().text,
                 text("The administrator's account asks for more than its password: \"Verification code:\""));
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(m_started.size(), 0);
    }

    void startsWithTheFullNameAndTheFocusOnThePassword() {
        QCOMPARE(m_dialog->userNameTextField()->text(), text("Joe Tester"));
        QVERIFY(m_dialog->passwordTextField()->hasFocus());
        QCOMPARE(m_dialog->passwordTextField()->echoMode(), QLineEdit::Password);
        QVERIFY(m_dialog->startButton()->isDefault());
    }

    void emptyFieldsAreSilentAndKeepTheDialog() {
        m_dialog->userNameTextField()->clear();
        QTest::mouseClick(m_dialog->startButton(), Qt::LeftButton);
        QCOMPARE(m_fixture->services.logSink().lines(), QStringList{text("username is missing")});
        m_dialog->userNameTextField()->setText(text("ada"));
        QTest::mouseClick(m_dialog->startButton(), Qt::LeftButton);
        QCOMPARE(m_fixture->services.logSink().lines().last(), text("password is missing"));
        QVERIFY(m_dialog->isVisible());
        QVERIFY(m_fixture->alerts.isEmpty());
        QVERIFY(m_fixture->services.scripting().calls().empty());
        QVERIFY(!m_fixture->services.preferences().value(text("un")).isValid());
    }

    void validPairWithRightDnsStartsOnceAndCloses() {
        fillAndStart();
        QCOMPARE(m_started.size(), 1);
        QCOMPARE(m_started.first().value<QObject *>(), m_dialog->startButton());
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(QrvCredentials::sharedInstance().userName(), text("ada"));
        QCOMPARE(QrvCredentials::sharedInstance().rootPassword(), text("ada pw"));
        QVERIFY(!lines().join(u'\n').contains(text("-setdnsservers")));
        QVERIFY(
            m_fixture->services.logSink().lines().contains(text("QrvAuthenticationWindowController closed")));
    }

    void validPairAfterARewriteStartsNothingAndCloses() {
        m_dnsRight = false;
        fillAndStart();
        QVERIFY(m_started.isEmpty());
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(lines().filter(text("-setdnsservers")),
                 (QStringList{text("networksetup -setdnsservers Ethernet 8.8.8.8 8.8.4.4 "),
                              text("networksetup -setdnsservers Wi-Fi 8.8.8.8 8.8.4.4 "),
                              text("networksetup -setdnsservers AirPort 8.8.8.8 8.8.4.4 ")}));
    }

    void validPairAfterAFailedRewriteStartsNevertheless() {
        m_dnsRight = false;
        m_rewriteWorks = false;
        fillAndStart();
        QCOMPARE(m_started.size(), 1);
        QVERIFY(!m_dialog->isVisible());
    }

    void wrongPairAlertsAndStaysStoredAndKeepsTheDialogOpen() {
        m_pairAccepted = false;
        fillAndStart();
        QCOMPARE(m_fixture->alerts.size(), 1);
        QCOMPARE(m_fixture->alerts.first().title, text("Quorvane"));
        QCOMPARE(m_fixture->alerts.first().text, text("You input wrong user name or password.\n"));
        QVERIFY(m_dialog->isVisible());
        QVERIFY(m_started.isEmpty());
        QCOMPARE(QrvCredentials::sharedInstance().rootPassword(), text("ada pw"));
        m_pairAccepted = true;
        pressStart();
        QCOMPARE(m_started.size(), 1);
        QVERIFY(!m_dialog->isVisible());
    }

    void refusedRequestCountsAsAWrongPair() {
        m_fixture->services.scripting().setHandler([](const FakeScriptingService::Call &) {
            return FakeScriptingService::failure(-128, text("not in the sudoers file"));
        });
        fillAndStart();
        QCOMPARE(m_fixture->alerts.size(), 1);
        QVERIFY(m_dialog->isVisible());
    }

    void returnKeyStarts() {
        m_dialog->userNameTextField()->setText(text("ada"));
        QTest::keyClicks(m_dialog->passwordTextField(), text("pw"));
        QTest::keyClick(m_dialog->passwordTextField(), Qt::Key_Return);
        m_fixture->services.background().finishAll();
        QCOMPARE(m_started.size(), 1);
    }

    void cancelAndEscapeCloseWithoutStoring() {
        QTest::keyClicks(m_dialog->passwordTextField(), text("pw"));
        QTest::mouseClick(m_dialog->findChild<QPushButton *>(text("cancelButton")), Qt::LeftButton);
        QVERIFY(!m_dialog->isVisible());
        QVERIFY(m_dialog->passwordTextField()->text().isEmpty());
        m_dialog->show();
        QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
        QVERIFY(!m_dialog->isVisible());
        QVERIFY(m_fixture->services.preferences().all().isEmpty());
        QVERIFY(m_started.isEmpty());
    }

    void testOfThePairDoesNotBlockTheDialog() {
        m_fixture->services.background().hold();
        m_dialog->userNameTextField()->setText(text("ada"));
        QTest::keyClicks(m_dialog->passwordTextField(), text("pw"));
        QTest::mouseClick(m_dialog->startButton(), Qt::LeftButton);
        QVERIFY(lines().isEmpty());
        QVERIFY(!m_dialog->startButton()->isEnabled());
        QTest::keyClick(m_dialog->passwordTextField(), Qt::Key_Return); // one test at a time
        QCOMPARE(m_fixture->services.background().pending(), 1U);
        m_fixture->services.background().finishAll();
        QCOMPARE(m_started.size(), 1);
        QVERIFY(!m_dialog->isVisible());
        QVERIFY(m_dialog->startButton()->isEnabled());
    }

    void cancelDuringTheTestComesAfterItsResult() {
        m_pairAccepted = false;
        m_fixture->services.background().hold();
        m_dialog->userNameTextField()->setText(text("ada"));
        QTest::keyClicks(m_dialog->passwordTextField(), text("pw"));
        QTest::mouseClick(m_dialog->startButton(), Qt::LeftButton);
        QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
        QVERIFY(m_dialog->isVisible());
        m_fixture->services.background().finishAll();
        QCOMPARE(m_fixture->alerts.size(), 1);
        QVERIFY(!m_dialog->isVisible());
    }

    void dialogThatIsDestroyedDuringTheTestStartsNothing() {
        m_fixture->services.background().hold();
        m_dialog->userNameTextField()->setText(text("ada"));
        QTest::keyClicks(m_dialog->passwordTextField(), text("pw"));
        QTest::mouseClick(m_dialog->startButton(), Qt::LeftButton);
        m_dialog.reset();
        m_fixture->services.background().finishAll();
        QVERIFY(m_started.isEmpty());
        QVERIFY(!m_events.isHeld());
    }

    void secondOpenShowsNoOtherDialogAndBothCallersAreNotified() {
        m_dialog->hide();
        QWidget window;
        QWidget otherWindow;
        int first = 0;
        int second = 0;
        QrvAuthenticationWindowController::open(m_events, Alerts::shared(), window, [&first] { ++first; });
        QVERIFY(QrvAuthenticationWindowController::isRunning());
        auto *const dialog = window.findChild<QrvAuthenticationWindowController *>();
        QVERIFY(dialog->isVisible());
        QrvAuthenticationWindowController::open(m_events, Alerts::shared(), otherWindow,
                                                [&second] { ++second; });
        QCOMPARE(otherWindow.findChild<QrvAuthenticationWindowController *>(), nullptr);
        QVERIFY(dialog->isVisible());
        QCOMPARE(first, 0);
        QCOMPARE(second, 0);
        dialog->cancelButton();
        QVERIFY(!QrvAuthenticationWindowController::isRunning());
        QCOMPARE(first, 1);
        QCOMPARE(second, 1);
        // The next dialog is none of theirs.
        int third = 0;
        QrvAuthenticationWindowController::open(m_events, Alerts::shared(), window, [&third] { ++third; });
        dialog->cancelButton();
        QCOMPARE(first, 1);
        QCOMPARE(second, 1);
        QCOMPARE(third, 1);
    }

    void waitsForAnAlertAndItsOwnAlertShowsOverIt() {
        Alerts::shared().setPresenter({});
        m_dialog->hide();
        Alerts::shared().critical({text("t"), text("first"), {}});
        auto *first = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(first != nullptr);
        QWidget window;
        QrvAuthenticationWindowController::open(m_events, Alerts::shared(), window, [] {});
        QCOMPARE(QApplication::activeModalWidget(), first);
        first->accept();
        auto *dialog = qobject_cast<QrvAuthenticationWindowController *>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        Alerts::shared().critical({text("t"), text("second"), {}}); // waits
        QCOMPARE(QApplication::activeModalWidget(), dialog);
        m_pairAccepted = false;
        dialog->userNameTextField()->setText(text("ada"));
        dialog->passwordTextField()->setText(text("pw"));
        dialog->okButton();
        m_fixture->services.background().finishAll();
        auto *own = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(own != nullptr);
        QCOMPARE(own->text(), text("You input wrong user name or password.\n"));
        own->accept();
        QCOMPARE(QApplication::activeModalWidget(), dialog);
        dialog->cancelButton();
        auto *second = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(second != nullptr);
        QCOMPARE(second->text(), text("second"));
        second->accept();
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }
};

} // namespace quorvane

GUI_TEST(AuthenticationDialogTest)
#include "AuthenticationDialogTest.moc"
