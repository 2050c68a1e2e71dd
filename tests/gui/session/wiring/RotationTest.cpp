#include "frontend/session/LocationRotation.h"

#include "frontend/session/wiring/QrvMainWindowController.h"
#include "frontend/ui/tray/TrayPresence.h"
#include "tests/gui/ControllerFixture.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace quorvane {

using fakes::FakeScriptingService;

namespace {

constexpr char answerText[] =
    "STATUS: 0<br />ClientIP: 198.51.100.10<br />LOCATIONS: DE;BER;Berlin;0<br />VPNUser: u1<br />VPNPass: p1"
    "<br />Server: 7,Berlin,BER,DE,Germany,x|203.0.113.1<br />Server: 8,Denver,DEN,US,States,x|203.0.113.2"
    "<br />Server: 9,Austin,AUS,US,States,x|203.0.113.3";

} // namespace

/// The requested addresses, in the real window with fake services.
class RotationTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<ControllerFixture> m_fixture;

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const {
        return m_fixture->find<Widget>(name);
    }

    [[nodiscard]] fakes::TestPlatform &services() const { return m_fixture->services; }

    [[nodiscard]] QStringList requestedAddresses() const {
        QStringList addresses;
        for (const QByteArray &url : services().urls().fetches()) {
            const qsizetype at = url.indexOf("desiredip=") + 10;
            addresses.append(QString::fromLatin1(url.mid(at, url.indexOf('&', at) - at)));
        }
        return addresses;
    }

    void waitForFetches(int count) { QTRY_COMPARE(requestedAddresses().size(), count); }

    void press() { QTest::mouseClick(find<QPushButton>("buttonQuorvane"), Qt::LeftButton); }

    [[nodiscard]] int indexOf(const char *title) const {
        return find<QComboBox>("popupCountry")->findText(text(title));
    }

    void hideAt(const char *title) {
        find<QComboBox>("popupCountry")->setCurrentIndex(indexOf(title));
        const int before = static_cast<int>(requestedAddresses().size());
        press();
        waitForFetches(before + 1);
        m_fixture->tunnelUp();
    }

    /// Makes one attempt after the other, each at another location.
    void useEveryLocation() {
        for (int i = 1; i <= 3; ++i) {
            m_fixture->controller->hotKeyPressed(2);
            waitForFetches(i);
            m_fixture->settle();
        }
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<ControllerFixture>();
        m_fixture->createAndAwake();
        m_fixture->answer(answerText);
    }

    void cleanup() { m_fixture.reset(); }

    void changeButtonActsOnlyWhileHiddenAndKeepsTheLocation() {
        hideAt("Germany Berlin");
        QTest::mouseClick(find<QPushButton>("changeIpButton"), Qt::LeftButton);
        waitForFetches(2);
        QCOMPARE(requestedAddresses(), (QStringList{text("203.0.113.1"), text("203.0.113.1")}));
        QCOMPARE(find<QComboBox>("popupCountry")->currentText(), text("Germany Berlin"));
    }

    void changeItemPicksARandomLocation() {
        hideAt("Germany Berlin");
        m_fixture->controller->statusItem().changeIpMenuItem()->trigger();
        waitForFetches(2);
        QCOMPARE(m_fixture->controller->usedLocations().size(), 1);
        QVERIFY(SessionState::shared()
                    .hidden); // a change while hidden keeps the flag until the attempt has ended
    }

    void discardingTheLastAddressRemovesTheLocation() {
        hideAt("Germany Berlin");
        QTest::mouseClick(find<QPushButton>("discardIpButton"), Qt::LeftButton);
        waitForFetches(2);
        QCOMPARE(services().preferences().string(text("discardedIPs")), text("203.0.113.1"));
        QCOMPARE(indexOf("Germany Berlin"), -1);
        QVERIFY(requestedAddresses().last() != text("203.0.113.1"));
    }

    void discardedAddressStaysDiscardedWhenTheListIsReadAgain() {
        hideAt("Germany Berlin");
        QTest::mouseClick(find<QPushButton>("discardIpButton"), Qt::LeftButton);
        waitForFetches(2);
        services().platform().notifications->post(text("updateServerList"));
        QCOMPARE(indexOf("Germany Berlin"), -1);
    }

    void discardingWithoutALastItemAddsNothing() {
        m_fixture->controller->hotKeyPressed(4);
        waitForFetches(1);
        QVERIFY(!services().preferences().value(text("discardedIPs")).isValid());
    }

    void unitedStatesOnlyPicksUnitedStatesAndSwitchesAtOnceWhileHiddenElsewhere() {
        hideAt("Germany Berlin");
        find<QCheckBox>("checkboxRequireUS")->click();
        QVERIFY(services().preferences().boolean(text("requireUS")));
        waitForFetches(2);
        QVERIFY(requestedAddresses().last() == text("203.0.113.2") ||
                requestedAddresses().last() == text("203.0.113.3"));
        QCOMPARE(find<QComboBox>("popupCountry")->currentIndex(), 0);
    }

    void choosingALocationSwitchesUnitedStatesOnlyOff() {
        find<QCheckBox>("checkboxRequireUS")->click();
        auto *popup = find<QComboBox>("popupCountry");
        popup->setCurrentIndex(indexOf("Germany Berlin"));
        Q_EMIT popup->activated(popup->currentIndex());
        QVERIFY(!find<QCheckBox>("checkboxRequireUS")->isChecked());
        QVERIFY(!services().preferences().boolean(text("requireUS")));
    }

    void rotationUsesEveryLocationThenWaitsAndContinuesWithANewList() {
        useEveryLocation();
        QStringList sorted = requestedAddresses();
        sorted.sort();
        QCOMPARE(sorted, (QStringList{text("203.0.113.1"), text("203.0.113.2"), text("203.0.113.3")}));
        m_fixture->controller->hotKeyPressed(2);
        m_fixture->settle();
        QVERIFY(find<QLabel>("fieldLine3")->isVisible());
        QVERIFY(find<QLabel>("fieldLine3")->text().startsWith(text("Every location has been used")));
        QVERIFY(find<QPushButton>("buttonQuorvane")->isEnabled());
        QCOMPARE(requestedAddresses().size(), 3);
        services().platform().notifications->post(text("updateServerList"));
        waitForFetches(4);
        QVERIFY(!find<QLabel>("fieldLine3")->isVisible());
    }

    void waitingAttemptOutlivesTheQueuedEndOfTheTunnelBeforeIt() {
        useEveryLocation();
        m_fixture->tunnelUp();
        auto *popup = find<QComboBox>("popupCountry");
        popup->setCurrentIndex(0);
        Q_EMIT popup->activated(0);
        m_fixture->settle();
        QVERIFY(find<QLabel>("fieldLine3")->isVisible());
        find<QCheckBox>("checkboxRequireUS")->click();
        waitForFetches(4);
        QVERIFY(!find<QLabel>("fieldLine3")->isVisible());
    }

    void choosingALocationWhileAnAttemptWaitsBeginsOneAttempt() {
        useEveryLocation();
        m_fixture->controller->hotKeyPressed(2);
        m_fixture->settle();
        QVERIFY(find<QLabel>("fieldLine3")->isVisible());
        auto *popup = find<QComboBox>("popupCountry");
        popup->setCurrentIndex(indexOf("Germany Berlin"));
        Q_EMIT popup->activated(popup->currentIndex());
        waitForFetches(4);
        m_fixture->settle();
        QCOMPARE(requestedAddresses().size(), 4);
        QCOMPARE(requestedAddresses().last(), text("203.0.113.1"));
    }

    void waitingAttemptCanBeStopped() {
        useEveryLocation();
        m_fixture->controller->hotKeyPressed(2);
        m_fixture->settle();
        press();
        m_fixture->settle();
        QVERIFY(!find<QLabel>("fieldLine3")->isVisible());
        QCOMPARE(m_fixture->controller->display().stateImage, text("appmain"));
        services().platform().notifications->post(text("updateServerList"));
        QCoreApplication::processEvents();
        QCOMPARE(requestedAddresses().size(), 3); // the stopped attempt does not continue by itself
    }

    void intervalIsStoredAndDoesNotTouchARunningTimer() {
        find<QCheckBox>("checkboxChangeIpInterval")->click();
        press();
        waitForFetches(1);
        m_fixture->tunnelUp();
        QVERIFY(m_fixture->controller->session().changeTimerArmed());
        const auto pending = services().delayedCalls().pending();
        Q_EMIT m_fixture->controller->window().intervalEntered(3);
        QCOMPARE(services().preferences().integer(text("changeIpInterval")), 3);
        QCOMPARE(services().delayedCalls().pending().back().due, pending.back().due);
    }

    void typedIntervalIsKnownToTheDisplayAtOnce() {
        find<QCheckBox>("checkboxChangeIpInterval")->click();
        auto *field = find<QLineEdit>("fieldChangeIpInterval");
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, text("25"));
        QCOMPARE(services().preferences().integer(text("changeIpInterval")), 25);
        QCOMPARE(m_fixture->controller->display().interval, 25);
        QVERIFY(field->isEnabled());
        press();
        QCOMPARE(field->text(), text("25"));
        find<QSpinBox>("stepperChangeIpInterval")->stepUp();
        QCOMPARE(field->text(), text("26"));
        QCOMPARE(services().preferences().integer(text("changeIpInterval")), 26);
    }

    void refreshRequestsOnlyWhileNotHidden() {
        m_fixture->controller->statusItem().refreshMenuItem()->trigger();
        QCOMPARE(services().urls().downloads().size(), 2U);
        QVERIFY(services().urls().finishNext(answerText));
        hideAt("Germany Berlin");
        m_fixture->controller->statusItem().refreshMenuItem()->trigger();
        QCOMPARE(services().urls().downloads().size(), 2U);
    }

    void copyItemEmptiesTheClipboard() {
        QGuiApplication::clipboard()->setText(text("old"));
        m_fixture->controller->statusItem().copyIpMenuItem()->trigger();
        QVERIFY(QGuiApplication::clipboard()->text().isEmpty());
    }

    void checkItemOpensThePage() {
        m_fixture->controller->statusItem().checkIpMenuItem()->trigger();
        QCOMPARE(services().workspace().openedUrls.size(), 1);
        QVERIFY(
            services().workspace().openedUrls.first().startsWith(text("https://www.quorvane.test/ip?utm_")));
    }
};

} // namespace quorvane

GUI_TEST(RotationTest)
#include "RotationTest.moc"
