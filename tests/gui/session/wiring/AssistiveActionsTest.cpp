#include "frontend/ui/shared/AccessibleButton.h"
#include "frontend/ui/shared/Alerts.h"
#include "platform/PropertyList.h"
#include "tests/gui/ControllerFixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>

namespace quorvane {

namespace {

constexpr char answerText[] =
    "STATUS: 0<br />ClientIP: 198.51.100.10<br />LOCATIONS: DE;BER;Berlin;0<br />VPNUser: u1<br />VPNPass: p1"
    "<br />Server: 7,Berlin,BER,DE,Germany,x|203.0.113.1";

} // namespace

/// The program used by the accessible actions of its controls alone.
class AssistiveActionsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<ControllerFixture> m_fixture;

    [[nodiscard]] static QAccessibleInterface &accessible(QAbstractButton &button) {
        return *QAccessible::queryAccessibleInterface(&button);
    }

    [[nodiscard]] QAbstractButton &button(const char *name) const {
        return *m_fixture->find<QAbstractButton>(name);
    }

    [[nodiscard]] QString hideDescription() const {
        return accessible(button("buttonQuorvane")).text(QAccessible::Description);
    }

    static void act(QAbstractButton &button) {
        QAccessibleActionInterface *actions = accessible(button).actionInterface();
        actions->doAction(actions->actionNames().constFirst());
        QCoreApplication::processEvents();
    }

    [[nodiscard]] QVariant stored(const char *key) const {
        return m_fixture->services.preferences().value(text(key));
    }

    static QAbstractButton *findInWindows(const char *name) {
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            if (auto *found = window->findChild<QAbstractButton *>(text(name))) {
                return found;
            }
        }
        return nullptr;
    }

private Q_SLOTS:

    static void initTestCase() { AccessibleButton::install(); }

    void init() {
        m_fixture = std::make_unique<ControllerFixture>();
        m_fixture->services.addResource(
            text("com.qrvp.LaunchAtLogin.plist"),
            platform::PropertyList::write({{text("Label"), text("a")}, {text("RunAtLoad"), false}}));
        m_fixture->start();
        m_fixture->answer(answerText);
    }

    void cleanup() { m_fixture.reset(); }

    void hideButtonHidesAndStops() {
        QAbstractButton &hide = button("buttonQuorvane");
        QVERIFY(!accessible(hide).state().checked);
        QCOMPARE(hideDescription(), text("Hides your real IP"));
        act(hide);
        m_fixture->settle();
        QCOMPARE(hideDescription(), text("Cannot be pressed at the moment"));
        m_fixture->tunnelUp();
        QVERIFY(accessible(hide).state().checked);
        QCOMPARE(accessible(hide).text(QAccessible::Name), text("Stop Hiding IP"));
        QCOMPARE(hideDescription(), text("Stops hiding your real IP"));
        act(hide);
        m_fixture->settle();
        QVERIFY(!accessible(hide).state().checked);
        QVERIFY(!SessionState::shared().hidden);
        QCOMPARE(hideDescription(), text("Hides your real IP"));
    }

    void boxesOfTheMainWindowStoreTheirChoice() {
        for (const auto &[name, key] : std::initializer_list<std::pair<const char *, const char *>>{
                 {"checkboxChangeIpInterval", "changeIpEvery"},
                 {"checkboxRequireUS", "requireUS"},
                 {"IPNonRepeat", "ipNonRepeat"}}) {
            QVERIFY(!stored(key).toBool());
            act(button(name));
            QVERIFY2(stored(key).toBool(), name);
            QVERIFY(accessible(button(name)).state().checked);
            act(button(name));
            QVERIFY2(!stored(key).toBool(), name);
        }
    }

    void boxThatIsRefusedIsNotChecked() {
        // An address can be kept only while one is lent.
        QStringList alerts;
        Alerts::shared().setPresenter([&alerts](const Alert &alert) { alerts.append(alert.text); });
        act(button("checkSameIP"));
        Alerts::shared().setPresenter({});
        QCOMPARE(alerts.size(), 1);
        QVERIFY(!accessible(button("checkSameIP")).state().checked);
        QVERIFY(!stored("useSameIP").toBool());
    }

    void transports() {
        act(button("segmentUdp"));
        QCOMPARE(stored("tcpUdp").toInt(), 1);
        QVERIFY(accessible(button("segmentUdp")).state().checked);
        act(button("segmentTcp"));
        QCOMPARE(stored("tcpUdp").toInt(), 0);
    }

    void launchAtLogin() {
        act(button("advancedSettingsButton"));
        auto *box = findInWindows("launchOnStart");
        QVERIFY(box != nullptr);
        act(*box);
        QCOMPARE(m_fixture->services.workspace().autostarts.size(), 1U);
        QVERIFY(m_fixture->services.workspace().autostarts[0].enabled);
        QVERIFY(accessible(*box).state().checked);
        act(*box);
        QVERIFY(!m_fixture->services.workspace().autostarts[1].enabled);
    }
};

} // namespace quorvane

GUI_TEST(AssistiveActionsTest)
#include "AssistiveActionsTest.moc"
