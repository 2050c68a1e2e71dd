#include "frontend/privileges/dialog/QrvAuthenticationWindowController.h"

#include "frontend/privileges/QrvCredentials.h"
#include "tests/gui/GuiTest.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace quorvane {

using fakes::FakeScriptingService;

class AuthenticationDialogTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> fixture;
    std::unique_ptr<QrvAuthenticationWindowController> dialog;
    QObject observer;
    QList<QVariant> started;
    bool pairAccepted = true;
    bool dnsRight = true;
    bool rewriteWorks = true;

    [[nodiscard]] QStringList lines() const {
        QStringList all;
        for (const auto &call : fixture->services.scripting().calls()) {
            all.append(call.line);
        }
        return all;
    }

    platform::ScriptResult answer(const FakeScriptingService::Call &call) const {
        if (call.line.startsWith(text("ls "))) {
            return pairAccepted ? FakeScriptingService::success(text(""))
                                : FakeScriptingService::failure(1, text("Sorry, try again."));
        }
        if (call.line.startsWith(text("networksetup -get"))) {
            return FakeScriptingService::success(dnsRight ? text("8.8.8.8\n8.8.4.4") : text("192.168.1.1"));
        }
        return rewriteWorks ? FakeScriptingService::success(text(""))
                            : FakeScriptingService::failure(4, text("unknown"));
    }

    void fillAndStart() {
        dialog->userNameTextField()->setText(text("ada"));
        QTest::keyClicks(dialog->passwordTextField(), text("ada pw"));
        QTest::mouseClick(dialog->startButton(), Qt::LeftButton);
    }

private Q_SLOTS:

    void init() {
        fixture = std::make_unique<GuiFixture>();
        pairAccepted = dnsRight = rewriteWorks = true;
        started.clear();
        fixture->services.scripting().setHandler(
            [this](const FakeScriptingService::Call &call) { return answer(call); });
        fixture->services.platform().notifications->addObserver(
            text("startVpn"), &observer, [this](const QVariant &object) { started.append(object); });
        dialog = std::make_unique<QrvAuthenticationWindowController>(Alerts::shared());
        dialog->loadWindow();
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    }

    void cleanup() {
        dialog.reset();
        fixture.reset();
    }

    void beginsWithTheFullNameAndTheFocusOnThePassword() {
        QCOMPARE(dialog->userNameTextField()->text(), text("Joe Tester"));
        QVERIFY(dialog->passwordTextField()->hasFocus());
        QCOMPARE(dialog->passwordTextField()->echoMode(), QLineEdit::Password);
        QVERIFY(dialog->startButton()->isDefault());
    }

    void emptyFieldsAreSilentAndKeepTheDialog() {
        dialog->userNameTextField()->clear();
        QTest::mouseClick(dialog->startButton(), Qt::LeftButton);
        QCOMPARE(fixture->services.logSink().lines(), QStringList{text("username is missing")});
        dialog->userNameTextField()->setText(text("ada"));
        QTest::mouseClick(dialog->startButton(), Qt::LeftButton);
        QCOMPARE(fixture->services.logSink().lines().last(), text("password is missing"));
        QVERIFY(dialog->isVisible());
        QVERIFY(fixture->alerts.isEmpty());
        QVERIFY(fixture->services.scripting().calls().empty());
        QVERIFY(!fixture->services.preferences().value(text("un")).isValid());
    }

    void validPairWithRightDnsStartsOnceAndCloses() {
        fillAndStart();
        QCOMPARE(started.size(), 1);
        QCOMPARE(started.first().value<QObject *>(), dialog->startButton());
        QVERIFY(!dialog->isVisible());
        QCOMPARE(QrvCredentials::sharedInstance().userName(), text("ada"));
        QCOMPARE(QrvCredentials::sharedInstance().rootPassword(), text("ada pw"));
        QVERIFY(!lines().join(u'\n').contains(text("-setdnsservers")));
        QVERIFY(
            fixture->services.logSink().lines().contains(text("QrvAuthenticationWindowController closed")));
    }

    void validPairAfterARewriteStartsNothingAndCloses() {
        dnsRight = false;
        fillAndStart();
        QVERIFY(started.isEmpty());
        QVERIFY(!dialog->isVisible());
        QCOMPARE(lines().filter(text("-setdnsservers")),
                 (QStringList{text("networksetup -setdnsservers Ethernet 8.8.8.8 8.8.4.4 "),
                              text("networksetup -setdnsservers Wi-Fi 8.8.8.8 8.8.4.4 "),
                              text("networksetup -setdnsservers AirPort 8.8.8.8 8.8.4.4 ")}));
    }

    void validPairAfterAFailedRewriteStartsAllTheSame() {
        dnsRight = false;
        rewriteWorks = false;
        fillAndStart();
        QCOMPARE(started.size(), 1);
        QVERIFY(!dialog->isVisible());
    }

    void wrongPairAlertsStaysStoredAndKeepsTheDialog() {
        pairAccepted = false;
        fillAndStart();
        QCOMPARE(fixture->alerts.size(), 1);
        QCOMPARE(fixture->alerts.first().title, text("Quorvane"));
        QCOMPARE(fixture->alerts.first().text, text("You input wrong user name or password.\n"));
        QVERIFY(dialog->isVisible());
        QVERIFY(started.isEmpty());
        QCOMPARE(QrvCredentials::sharedInstance().rootPassword(), text("ada pw"));
        pairAccepted = true;
        QTest::mouseClick(dialog->startButton(), Qt::LeftButton);
        QCOMPARE(started.size(), 1);
        QVERIFY(!dialog->isVisible());
    }

    void refusedRequestCountsAsAWrongPair() {
        fixture->services.scripting().setHandler([](const FakeScriptingService::Call &) {
            return FakeScriptingService::failure(-128, text("not in the sudoers file"));
        });
        fillAndStart();
        QCOMPARE(fixture->alerts.size(), 1);
        QVERIFY(dialog->isVisible());
    }

    void returnKeyStarts() {
        dialog->userNameTextField()->setText(text("ada"));
        QTest::keyClicks(dialog->passwordTextField(), text("pw"));
        QTest::keyClick(dialog->passwordTextField(), Qt::Key_Return);
        QCOMPARE(started.size(), 1);
    }

    void cancelAndEscapeCloseWithoutStoring() {
        QTest::keyClicks(dialog->passwordTextField(), text("pw"));
        QTest::mouseClick(dialog->findChild<QPushButton *>(text("cancelButton")), Qt::LeftButton);
        QVERIFY(!dialog->isVisible());
        QVERIFY(dialog->passwordTextField()->text().isEmpty());
        dialog->show();
        QTest::keyClick(dialog.get(), Qt::Key_Escape);
        QVERIFY(!dialog->isVisible());
        QVERIFY(fixture->services.preferences().all().isEmpty());
        QVERIFY(started.isEmpty());
    }

    void modalLoopEndsWithTheDialog() {
        dialog->hide();
        QTimer::singleShot(0, this, [this] { fillAndStart(); });
        dialog->runModal();
        QCOMPARE(started.size(), 1);
        QVERIFY(!dialog->isVisible());
    }

    void queuedWorkRunsInsideTheModalLoop() {
        dialog->hide();
        bool ran = false;
        QMetaObject::invokeMethod(
            this,
            [this, &ran] {
                ran = dialog->isVisible();
                dialog->cancelButton();
            },
            Qt::QueuedConnection);
        dialog->runModal();
        QVERIFY(ran);
    }
};

} // namespace quorvane

QTEST_MAIN(quorvane::AuthenticationDialogTest)
#include "AuthenticationDialogTest.moc"
