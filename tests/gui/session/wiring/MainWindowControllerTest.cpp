#include "frontend/session/wiring/QrvMainWindowController.h"

#include "frontend/ui/shared/QrvFancyIp.h"
#include "frontend/ui/tray/TrayPresence.h"
#include "tests/gui/ControllerFixture.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QWindow>

namespace quorvane {

using fakes::FakeScriptingService;

namespace {

constexpr char answerText[] =
    "STATUS: 0<br />ClientIP: 198.51.100.10<br />CC: XX<br />LOCATIONS: DE;BER;Berlin;0<br />VPNUser: "
    "u1<br />VPNPass: p1<br />Server: 7,Berlin,BER,DE,Germany,x|203.0.113.7<br />Server: "
    "8,Denver,DEN,US,States,x|203.0.113.8";

} // namespace

/// The whole window with fake services: from the start to the lent address and back.
class MainWindowControllerTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<ControllerFixture> m_fixture;

    [[nodiscard]] fakes::TestPlatform &services() const { return m_fixture->services; }

    [[nodiscard]] const DisplayState &shown() const { return m_fixture->controller->display(); }

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const {
        return m_fixture->find<Widget>(name);
    }

    [[nodiscard]] int linesWith(const char *part) const {
        int count = 0;
        for (const auto &call : services().scripting().calls()) {
            count += call.line.contains(text(part)) ? 1 : 0;
        }
        return count;
    }

    void startAndAnswer() {
        m_fixture->start();
        m_fixture->answer(answerText);
    }

    void pressAndFetch(int location) {
        find<QComboBox>("popupCountry")->setCurrentIndex(location);
        QTest::mouseClick(find<QPushButton>("buttonQuorvane"), Qt::LeftButton);
        QTRY_COMPARE(linesWith("--config"), 1);
    }

    void goHidden(int location = 1) {
        startAndAnswer();
        pressAndFetch(location);
        m_fixture->tunnelUp();
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<ControllerFixture>();
        services().addResource(text("test_credentials.sh"), "");
        services().scripting().setHandler([](const FakeScriptingService::Call &call) {
            return FakeScriptingService::success(call.line.contains(text("-get")) ? text("8.8.8.8 8.8.4.4")
                                                                                  : text(""));
        });
    }

    void cleanup() { m_fixture.reset(); }

    void beforeTheFirstAnswerNothingCanBePressed() {
        m_fixture->start();
        QVERIFY(m_fixture->controller->window().isVisible());
        QCOMPARE(m_fixture->controller->window().windowTitle(), text("Quorvane (ver.1.0.0)"));
        QVERIFY(!find<QPushButton>("buttonQuorvane")->isEnabled());
        QVERIFY(!m_fixture->controller->statusItem().hideIpMenuItem()->isEnabled());
        QVERIFY(!m_fixture->controller->statusItem().changeIpMenuItem()->isEnabled());
        QVERIFY(m_fixture->controller->statusItem().copyIpMenuItem()->isEnabled());
        QVERIFY(!m_fixture->application->applicationShouldHandleReopen(false));
    }

    void sharedControllerIsReachableOnlyAfterLaunching() {
        m_fixture->create();
        QVERIFY(QrvMainWindowController::sharedMainWindow() == nullptr);
        m_fixture->application->applicationDidFinishLaunching();
        QCOMPARE(QrvMainWindowController::sharedMainWindow(), m_fixture->controller.get());
    }

    void oneServerListRequestPerRun() {
        startAndAnswer();
        services().reachability().setFlags(text("net.quorvane.test"), 0);
        QTRY_VERIFY(!m_fixture->api->inetConnect());
        services().reachability().setFlags(text("net.quorvane.test"), 2);
        QTRY_VERIFY(m_fixture->api->inetConnect());
        QCOMPARE(services().urls().downloads().size(), 1U);
    }

    void tunnelLeftOverIsKilledAtStart() {
        services().processes().setNames({"openvpn"});
        m_fixture->start();
        m_fixture->settle();
        QCOMPARE(linesWith("sudo -S killall -9 openvpn"), 1);
    }

    void startUpChecksComeAfterTwoSecondsDnsFirst() {
        m_fixture->start();
        services().scripting().clear();
        services().delayedCalls().advance(1.9);
        QVERIFY(services().scripting().calls().empty());
        services().background().hold();
        services().delayedCalls().advance(0.1);
        QVERIFY(services().scripting().calls().empty()); // none of them blocks the window
        services().background().finishAll();
        const auto calls = services().scripting().calls();
        QCOMPARE(calls.size(), 3U);
        QCOMPARE(calls[0].line, text("networksetup -getdnsservers Ethernet"));
        QCOMPARE(calls[1].line, text("networksetup -getdnsservers Wi-Fi"));
        QVERIFY(calls[2].line.startsWith(text("ls ")));
    }

    void wrongDnsIsRewrittenAtStartWithAValidPair() {
        services().scripting().setHandler(
            [](const FakeScriptingService::Call &) { return FakeScriptingService::success(text("x")); });
        m_fixture->start();
        services().delayedCalls().advance(2.0);
        services().background().finishAll();
        QCOMPARE(linesWith("-setdnsservers"), 3);
    }

    void secondCheckBeginsAfterTheDialogAndTheCommandsOfTheFirst() {
        services().scripting().setHandler([](const FakeScriptingService::Call &call) {
            return call.kind == FakeScriptingService::Kind::User
                       ? FakeScriptingService::success(text("192.168.1.1"))
                       : FakeScriptingService::failure(-128, text("refused"));
        });
        m_fixture->start();
        services().scripting().clear();
        services().delayedCalls().advance(2.0);
        services().background().finishAll();
        QCOMPARE(linesWith("ls "), 1);
        QCOMPARE(linesWith("-setdnsservers"), 0);
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        dialog->reject();
        services().background().finishAll();
        QCOMPARE(linesWith("-setdnsservers"), 3);
        QCOMPARE(linesWith("ls "), 2);
        QVERIFY(services().scripting().calls().back().line.startsWith(text("ls ")));
        QCOMPARE(qobject_cast<QDialog *>(QApplication::activeModalWidget()), dialog);
        dialog->reject();
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }

    void missingPairOpensTheDialogOnce() {
        services().scripting().setHandler([](const FakeScriptingService::Call &call) {
            return call.kind == FakeScriptingService::Kind::User
                       ? FakeScriptingService::success(text("8.8.8.8 8.8.4.4"))
                       : FakeScriptingService::failure(-128, text("refused"));
        });
        m_fixture->start();
        int dialogs = 0;
        QTimer closer;
        connect(&closer, &QTimer::timeout, this, [&dialogs] {
            if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
                ++dialogs;
                dialog->reject();
            }
        });
        closer.start(10);
        services().delayedCalls().advance(2.0);
        QTRY_COMPARE(dialogs, 1);
        services().background().finishAll();
        QCOMPARE(dialogs, 1);
    }

    void answerFillsTheListAndEnablesTheControls() {
        startAndAnswer();
        auto *popup = find<QComboBox>("popupCountry");
        QCOMPARE(popup->count(), 3);
        QCOMPARE(popup->itemText(0), text("Random Location"));
        QVERIFY(find<QPushButton>("buttonQuorvane")->isEnabled());
        QCOMPARE(find<QrvFancyIp>("viewCurrentIP")->stringValue(), text("198.51.100.10"));
        QVERIFY(m_fixture->application->applicationShouldHandleReopen(true));
    }

    void pressToLentAddressAndBack() {
        goHidden();
        QCOMPARE(find<QrvFancyIp>("viewCurrentIP")->stringValue(), text("203.0.113.7\n"));
        QCOMPARE(find<QLabel>("fieldLine22")->text(), text("Germany Berlin"));
        QCOMPARE(m_fixture->controller->statusItem().hideIpMenuItem()->text(), text("Stop Hiding IP"));
        QVERIFY(services().urls().fetches().front().endsWith("&proto=TCP"));
        services().processes().setNames({"openvpn"});
        QTest::mouseClick(find<QPushButton>("buttonQuorvane"), Qt::LeftButton);
        m_fixture->settle();
        QVERIFY(!SessionState::shared().hidden);
        QCOMPARE(find<QrvFancyIp>("viewCurrentIP")->stringValue(), text("198.51.100.10"));
        QCOMPARE(linesWith("killall"), 1);
    }

    void chosenTransportIsSentAndKept() {
        startAndAnswer();
        find<QRadioButton>("segmentUdp")->click();
        QCOMPARE(services().preferences().integer(text("tcpUdp")), 1);
        pressAndFetch(1);
        QVERIFY(services().urls().fetches().front().endsWith("&proto=UDP"));
    }

    void failedFetchWithAFixedLocationAlertsOnce() {
        services().urls().setFetchHandler(
            [](const QByteArray &) { return std::optional<QByteArray>("ERR: Argument parsing error"); });
        startAndAnswer();
        find<QComboBox>("popupCountry")->setCurrentIndex(1);
        QTest::mouseClick(find<QPushButton>("buttonQuorvane"), Qt::LeftButton);
        QTRY_COMPARE(m_fixture->alerts.size(), 1);
        QCOMPARE(m_fixture->alerts.first().text, text("Location is not available."));
        QCOMPARE(m_fixture->alerts.first().informative, text("Please try a different location."));
        QVERIFY(find<QPushButton>("buttonQuorvane")->isEnabled());
        QCOMPARE(services().urls().fetches().size(), 1U);
    }

    void randomLocationWithoutRotationStopsAfterTheFirstFailure() {
        services().urls().setFetchHandler([](const QByteArray &) { return std::optional<QByteArray>(); });
        startAndAnswer();
        find<QComboBox>("popupCountry")->setCurrentIndex(0);
        QTest::mouseClick(find<QPushButton>("buttonQuorvane"), Qt::LeftButton);
        QTRY_COMPARE(m_fixture->alerts.size(), 1);
        QCOMPARE(services().urls().fetches().size(), 1U); // the pick has moved the selection
        QVERIFY(find<QComboBox>("popupCountry")->currentIndex() != 0);
    }

    void tunnelFailureIsReportedAfterFiveSeconds() {
        startAndAnswer();
        pressAndFetch(1);
        m_fixture->writeTunnelLog("a\nAUTH_FAILED\n");
        m_fixture->advance(2.0);
        QVERIFY(m_fixture->alerts.isEmpty());
        m_fixture->advance(5.0);
        m_fixture->settle();
        QCOMPARE(m_fixture->alerts.size(), 1);
        QCOMPARE(shown().line1.tone, Tone::Warning);
    }

    void failedPrivilegedLaunchReturnsToNotHidden() {
        services().scripting().setHandler([](const FakeScriptingService::Call &call) {
            return call.line.contains(text("--config")) ? FakeScriptingService::failure(1, text("no"))
                                                        : FakeScriptingService::success(text(""));
        });
        startAndAnswer();
        pressAndFetch(1);
        QTRY_COMPARE(shown().stateImage, text("appmain"));
        QVERIFY(find<QPushButton>("buttonQuorvane")->isEnabled());
        QVERIFY(services().delayedCalls().pending().size() <= 3); // the log is no longer polled
    }

    void noNetworkAtThePickIsAConnectionError() {
        startAndAnswer();
        m_fixture->api->setInetConnect(false);
        find<QComboBox>("popupCountry")->setCurrentIndex(1);
        m_fixture->controller->session().getNewIP();
        m_fixture->settle();
        QCOMPARE(m_fixture->alerts.size(), 1);
        QVERIFY(services().logSink().lines().contains(text("downloadCertificateForSelectedItem no inet")));
    }

    void terminatingStopsTheTunnelAndWritesThePreferences() {
        goHidden();
        services().processes().setNames({"openvpn"});
        const int before = services().preferences().synchronizations();
        QVERIFY(m_fixture->application->applicationShouldTerminate());
        m_fixture->application->applicationWillTerminate();
        QCOMPARE(linesWith("killall"), 1);
        QVERIFY(services().preferences().synchronizations() > before);
    }

    void windowStopsFloatingAfterTwoSeconds() {
        m_fixture->start();
        QVERIFY(m_fixture->controller->window().windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        services().delayedCalls().advance(2.0);
        QVERIFY(!m_fixture->controller->window().windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        QVERIFY(m_fixture->controller->window().isVisible());
    }

    void absentIntervalBecomesTen() {
        m_fixture->start();
        QCOMPARE(services().preferences().integer(text("changeIpInterval")), 10);
    }

    void failedRequestShowsZeroesAndTheAlert() {
        m_fixture->start();
        QTRY_COMPARE(services().urls().openDownloads(), 1U);
        QVERIFY(services().urls().failNext({platform::UrlError::Kind::Refused, text("refused")}));
        QCOMPARE(m_fixture->alerts.size(), 1);
        QCOMPARE(m_fixture->alerts.first().title, text("Error"));
        QCOMPARE(find<QrvFancyIp>("viewCurrentIP")->stringValue(), text("0.0.0.0"));
        QVERIFY(!find<QPushButton>("buttonQuorvane")->isEnabled());
    }

    void hotKeysReachTheirActions() {
        startAndAnswer();
        find<QComboBox>("popupCountry")->setCurrentIndex(1);
        for (const quint32 other : {0U, 6U, 4294967295U}) {
            m_fixture->controller->hotKeyPressed(other);
        }
        QVERIFY(services().urls().fetches().empty());
        m_fixture->controller->hotKeyPressed(3); // not hidden: nothing to stop
        QCOMPARE(shown().stateImage, text("appmain"));
        m_fixture->controller->hotKeyPressed(1);
        QTRY_COMPARE(shown().stateImage, text("appwait"));
        QTRY_COMPARE(linesWith("--config"), 1);
        m_fixture->tunnelUp();
        m_fixture->controller->hotKeyPressed(1); // hidden already
        QCOMPARE(services().urls().fetches().size(), 1U);
        m_fixture->controller->hotKeyPressed(3);
        m_fixture->settle();
        QVERIFY(!SessionState::shared().hidden);
        m_fixture->controller->window().hide();
        m_fixture->controller->hotKeyPressed(5);
        QVERIFY(m_fixture->controller->window().isVisible());
    }

    void changeHotKeyStartsARandomAttemptEvenWhileNotHidden() {
        startAndAnswer();
        find<QComboBox>("popupCountry")->setCurrentIndex(1);
        m_fixture->controller->hotKeyPressed(2);
        QTRY_COMPARE(services().urls().fetches().size(), 1U);
        QCOMPARE(m_fixture->controller->usedLocations().size(), 1);
    }

    void automaticChangeRequestsAgainAfterTheInterval() {
        services().preferences().setValue(text("changeIpInterval"), 1);
        startAndAnswer();
        find<QCheckBox>("checkboxChangeIpInterval")->click();
        QVERIFY(services().preferences().boolean(text("changeIpEvery")));
        QCOMPARE(find<QComboBox>("popupCountry")->currentIndex(), 0);
        pressAndFetch(0);
        QCOMPARE(find<QComboBox>("popupCountry")->currentIndex(), 0);
        m_fixture->tunnelUp();
        QVERIFY(m_fixture->controller->session().changeTimerArmed());
        services().delayedCalls().advance(60.0);
        QTRY_COMPARE(services().urls().fetches().size(), 2U);
        QVERIFY(services().urls().fetches()[0] !=
                services().urls().fetches()[1]); // the two attempts request different locations
    }
};

} // namespace quorvane

GUI_TEST(MainWindowControllerTest)
#include "MainWindowControllerTest.moc"
