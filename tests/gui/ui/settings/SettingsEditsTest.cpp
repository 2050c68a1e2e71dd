#include "frontend/ui/settings/QrvSettingsWindowController.h"

#include "SettingsTest.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

namespace quorvane {

namespace {

const char *const agent = "Mozilla/5.0 (X11; Linux x86_64; rv:115.0) Gecko/20100101 Firefox/115.0";

QVariant integer(qint64 value) {
    return QVariant::fromValue(value);
}

} // namespace

/// The handling of edits: every control with its preference, and each way of closing the window.
class SettingsEditsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<SettingsFixture> m_fixture;

    void showPaneOf(const QWidget *control) const {
        for (const QString &identifier : SettingsToolbar::toolbarAllowedItemIdentifiers()) {
            m_fixture->window().toolbarItemPressed(identifier);
            if (control->isVisible()) {
                return;
            }
        }
        QFAIL("no pane shows this control");
    }

    /// Operates the control as the user does.
    void edit(const QString &name) const {
        auto *control = m_fixture->window().findChild<QWidget *>(name);
        QVERIFY(control != nullptr);
        showPaneOf(control);
        if (auto *button = qobject_cast<QAbstractButton *>(control)) {
            QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
        } else if (auto *field = qobject_cast<QLineEdit *>(control)) {
            field->setEnabled(true);
            field->selectAll();
            QTest::keyClicks(field, text("25"));
        } else if (auto *box = qobject_cast<QComboBox *>(control)) {
            box->setEnabled(true);
            m_fixture->choose(box, name == text("comboboxUserAgent") ? text(agent) : text("Ctrl + 3"));
        }
    }

    static void addEdits() {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("before");
        QTest::addColumn<QVariant>("after");
        /// Whether the user-defaults controller holds the edit, or only the control until it is applied.
        QTest::addColumn<bool>("bound");
        const auto row = [](const char *control, const char *key, const QVariant &before,
                            const QVariant &after, bool bound) {
            QTest::newRow(control) << text(control) << text(key) << before << after << bound;
        };
        row("checkboxChangeIpInterval", "changeIpEvery", {}, true, true);
        row("checkboxHide", "hide", {}, true, true);
        row("checkboxRestoreDns", "restoreDns", {}, true, true);
        row("checkboxLock", "networkLock", {}, true, true);
        row("checkboxLockHome", "lockHomeNetwork", {}, true, true);
        row("checkboxReconnect", "noReconnect", {}, true, true);
        row("fieldChangeIpInterval", "changeIpInterval", integer(10), integer(25), false);
        row("dropdownHideIP", "hideIpHotKey", integer(-1), integer(34), false);
        row("dropdownChangeIP", "changeIpHotKey", integer(-1), integer(34), false);
        row("dropdownStopHidingIP", "stopHideIpHotKey", integer(-1), integer(34), false);
        row("dropdownDiscardIP", "discardIpHotKey", integer(-1), integer(34), false);
        row("dropdownBringUpWindow", "bringUpWindowHotKey", integer(-1), integer(34), false);
        row("userAgentChosen", "modeUserAgent", {}, integer(1), true);
        row("comboboxUserAgent", "userAgent", text(""), text(agent), true);
        row("checkboxHideMyReferrerHeader", "hideMyReferrerHeader", integer(0), integer(1), true);
        row("checkboxHideMyCookiesHeaders", "hideMyCookiesHeaders", {}, integer(1), true);
    }

    [[nodiscard]] QVariant stored(const QString &key) const {
        return m_fixture->services.preferences().value(key);
    }

    [[nodiscard]] platform::UserDefaultsController &defaults() const {
        return *m_fixture->services.platform().userDefaults;
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<SettingsFixture>();
        m_fixture->startAndShow();
    }

    void cleanup() { m_fixture.reset(); }

    void editsAreHeldUntilApplied_data() { addEdits(); }

    void editsAreHeldUntilApplied() {
        QFETCH(QString, control);
        QFETCH(QString, key);
        QFETCH(QVariant, before);
        QFETCH(QVariant, after);
        QFETCH(bool, bound);
        edit(control);
        QCOMPARE(stored(key), before);
        QCOMPARE(defaults().hasPendingEdits(), bound);
        m_fixture->click("buttonApply");
        QCOMPARE(stored(key), after);
        QCOMPARE(stored(key).typeId(), after.typeId());
        QVERIFY(!defaults().hasPendingEdits());
        QVERIFY(m_fixture->window().isVisible());
        QCOMPARE(m_fixture->delegate.calls, QStringList{text("changed")});
    }

    void okStoresAndGoesBackToTheMainWindow_data() { addEdits(); }

    void okStoresAndGoesBackToTheMainWindow() {
        QFETCH(QString, control);
        QFETCH(QString, key);
        QFETCH(QVariant, after);
        edit(control);
        m_fixture->click("buttonOk");
        QCOMPARE(stored(key), after);
        QVERIFY(!m_fixture->window().isVisible());
        QCOMPARE(m_fixture->delegate.calls, (QStringList{text("changed"), text("show")}));
    }

    void cancelLeavesEveryStoredKeyAndDropsTheEdit_data() { addEdits(); }

    void cancelLeavesEveryStoredKeyAndDropsTheEdit() {
        QFETCH(QString, control);
        const QVariantMap before = m_fixture->services.preferences().all();
        edit(control);
        m_fixture->click("buttonCancel");
        QCOMPARE(m_fixture->services.preferences().all(), before);
        QVERIFY(!defaults().hasPendingEdits());
        QVERIFY(!m_fixture->window().isVisible());
        QCOMPARE(m_fixture->delegate.calls, QStringList{text("show")});
        m_fixture->controller->showWindow(); // and the controls show the stored values
        m_fixture->click("buttonApply");
        QVariantMap after = m_fixture->services.preferences().all();
        for (const char *key : {"modeUserAgent", "hideMyCookiesHeaders"}) {
            QCOMPARE(after.take(text(key)), integer(0)); // applying writes them for the first time
        }
        QCOMPARE(after, before);
    }

    void closeBoxNeitherSavesNorReverts_data() { addEdits(); }

    void closeBoxNeitherSavesNorReverts() {
        QFETCH(QString, control);
        QFETCH(QString, key);
        QFETCH(QVariant, after);
        QFETCH(bool, bound);
        const QVariantMap before = m_fixture->services.preferences().all();
        edit(control);
        QVERIFY(m_fixture->window().close());
        QCOMPARE(m_fixture->services.preferences().all(), before);
        QCOMPARE(defaults().hasPendingEdits(), bound);
        QVERIFY(!m_fixture->window().isVisible());
        QCOMPARE(m_fixture->delegate.calls, QStringList{text("show")});
        m_fixture->controller->showWindow();
        m_fixture->click("buttonApply");
        // A pending edit is still held; a value that only the control contained is read again.
        QCOMPARE(stored(key), bound ? after : before.value(key));
    }

    void editsAreHeldFromTheBeginning() { QVERIFY(!defaults().appliesImmediately()); }

    void everyBoundBoxGoesOffAgainWithItsType() {
        for (const char *name : {"checkboxChangeIpInterval", "checkboxHide", "checkboxHideMyReferrerHeader",
                                 "checkboxHideMyCookiesHeaders"}) {
            m_fixture->click(name);
        }
        m_fixture->click("buttonApply");
        for (const char *name : {"checkboxChangeIpInterval", "checkboxHide", "checkboxHideMyReferrerHeader",
                                 "checkboxHideMyCookiesHeaders"}) {
            m_fixture->click(name);
        }
        m_fixture->click("buttonApply");
        QCOMPARE(m_fixture->stored("changeIpEvery"), QVariant(false));
        QCOMPARE(m_fixture->stored("hide"), QVariant(false));
        QCOMPARE(m_fixture->stored("hideMyReferrerHeader"), integer(0));
        QCOMPARE(m_fixture->stored("hideMyCookiesHeaders"), integer(0));
    }

    void browserBoxesHaveNoEffect() {
        const QVariantMap before = m_fixture->services.preferences().all();
        for (const char *name : {"checkboxSafari", "checkboxFirefox", "checkboxOpera", "checkboxChrome"}) {
            m_fixture->click(name);
        }
        QVERIFY(!defaults().hasPendingEdits());
        QCOMPARE(m_fixture->services.preferences().all(), before);
    }

    void storedValuesAreShown() {
        m_fixture.reset();
        m_fixture = std::make_unique<SettingsFixture>();
        m_fixture->store("changeIpEvery", true);
        m_fixture->store("hide", 1);
        m_fixture->store("changeIpInterval", 42);
        m_fixture->store("stopHideIpHotKey", 61);
        m_fixture->store("modeUserAgent", 1);
        m_fixture->store("userAgent", text("an agent of my own"));
        m_fixture->store("hideMyReferrerHeader", 1);
        m_fixture->store("hideMyCookiesHeaders", 1);
        m_fixture->startAndShow();
        for (const char *name : {"checkboxChangeIpInterval", "checkboxHide", "checkboxHideMyReferrerHeader",
                                 "checkboxHideMyCookiesHeaders", "userAgentChosen"}) {
            QVERIFY2(m_fixture->find<QAbstractButton>(name)->isChecked(), name);
        }
        QCOMPARE(m_fixture->find<QLineEdit>("fieldChangeIpInterval")->text(), text("42"));
        QCOMPARE(m_fixture->find<QSpinBox>("stepperChangeIpInterval")->value(), 42);
        QVERIFY(m_fixture->find<QLineEdit>("fieldChangeIpInterval")->isEnabled());
        QCOMPARE(m_fixture->find<QComboBox>("dropdownStopHidingIP")->currentText(), text("Shift + F5"));
        QCOMPARE(m_fixture->find<QComboBox>("comboboxUserAgent")->currentText(), text("an agent of my own"));
        QVERIFY(m_fixture->find<QComboBox>("comboboxUserAgent")->isEnabled());
        const QVariantMap before = m_fixture->services.preferences().all();
        m_fixture->click("buttonApply"); // nothing was edited, so every value stays
        for (auto entry = before.begin(); entry != before.end(); ++entry) {
            QCOMPARE(stored(entry.key()), entry.value());
        }
    }

    void storedModeThatNoButtonHasStays() {
        m_fixture->store("modeUserAgent", 7);
        m_fixture->controller->showWindow();
        QVERIFY(!m_fixture->find<QRadioButton>("userAgentOwn")->isChecked());
        QVERIFY(!m_fixture->find<QRadioButton>("userAgentChosen")->isChecked());
        m_fixture->click("buttonApply");
        QCOMPARE(m_fixture->stored("modeUserAgent"), integer(7));
    }

    void userAgentListFollowsTheMode() {
        auto *box = m_fixture->find<QComboBox>("comboboxUserAgent");
        QVERIFY(!box->isEnabled());
        m_fixture->click("userAgentChosen");
        QVERIFY(box->isEnabled());
        m_fixture->click("userAgentOwn");
        QVERIFY(!box->isEnabled());
        m_fixture->click("userAgentChosen");
        m_fixture->controller->cancelButtonPressed();
        m_fixture->controller->showWindow();
        QVERIFY(!box->isEnabled());
        m_fixture->click("userAgentChosen");
        m_fixture->controller->applyButtonPressed();
        QVERIFY(box->isEnabled());
    }

    void intervalControlsFollowTheBox() {
        auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        auto *stepper = m_fixture->find<QSpinBox>("stepperChangeIpInterval");
        QVERIFY(!field->isEnabled() && !stepper->isEnabled());
        m_fixture->click("checkboxChangeIpInterval");
        QVERIFY(field->isEnabled() && stepper->isEnabled());
        m_fixture->click("checkboxChangeIpInterval");
        QVERIFY(!field->isEnabled() && !stepper->isEnabled());
    }

    void intervalFieldMovesTheStepperAndTheStepperTheField() {
        m_fixture->click("checkboxChangeIpInterval");
        auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        auto *stepper = m_fixture->find<QSpinBox>("stepperChangeIpInterval");
        field->clear();
        QTest::keyClicks(field, text("3a7"));
        QCOMPARE(field->text(), text("37"));
        QCOMPARE(stepper->value(), 37);
        QTest::keyClicks(field, text("9"));
        QCOMPARE(field->text(), text("37"));
        QTest::keyClick(stepper, Qt::Key_Up);
        QCOMPARE(field->text(), text("38"));
    }

    void correctedEditAndTextSetFromCodeLeaveTheStepper() {
        m_fixture->click("checkboxChangeIpInterval");
        auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        auto *stepper = m_fixture->find<QSpinBox>("stepperChangeIpInterval");
        field->selectAll();
        field->insert(text("a1b2c")); // one edit, as a paste
        QCOMPARE(field->text(), text("12"));
        QCOMPARE(stepper->value(), 10);
        field->setText(text("33"));
        QCOMPARE(stepper->value(), 10);
        QTest::keyClick(field, Qt::Key_Backspace);
        QCOMPARE(stepper->value(), 3);
    }

    void intervalIsStoredAsTheFieldReadsAndAZeroIsReplacedAtTheNextStart() {
        m_fixture->click("checkboxChangeIpInterval");
        auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        m_fixture->click("buttonApply");
        QCOMPARE(m_fixture->stored("changeIpInterval"), integer(0));
        m_fixture->controller.reset();
        m_fixture->startAndShow();
        QCOMPARE(m_fixture->stored("changeIpInterval"), integer(10));
        QCOMPARE(m_fixture->find<QLineEdit>("fieldChangeIpInterval")->text(), text("10"));
    }

    void storedIntervalBeyondTheStepperIsShownAndKept() {
        m_fixture->store("changeIpInterval", 250);
        m_fixture->controller->showWindow();
        QCOMPARE(m_fixture->find<QLineEdit>("fieldChangeIpInterval")->text(), text("250"));
        m_fixture->click("buttonApply");
        QCOMPARE(m_fixture->stored("changeIpInterval"), integer(250));
    }

    void hotKeyStoredAsZeroBecomesNoneAtTheNextStart() {
        m_fixture->controller.reset();
        m_fixture->store("discardIpHotKey", 0);
        m_fixture->startAndShow();
        QCOMPARE(m_fixture->stored("discardIpHotKey"), integer(-1));
        QCOMPARE(m_fixture->find<QComboBox>("dropdownDiscardIP")->currentText(), text("None"));
    }

    void launchAtLoginActsAtOnceAndIsShownAsItIs() {
        QVERIFY(!m_fixture->find<QCheckBox>("launchOnStart")->isChecked());
        m_fixture->click("launchOnStart");
        QCOMPARE(m_fixture->delegate.calls, QStringList{text("launch on")});
        m_fixture->click("buttonCancel"); // the change was stored at once, so nothing is reverted
        m_fixture->controller->showWindow();
        QVERIFY(m_fixture->find<QCheckBox>("launchOnStart")->isChecked());
        m_fixture->click("launchOnStart");
        QCOMPARE(m_fixture->delegate.calls.last(), text("launch off"));
    }

    void websiteIsOpenedWithTheDevice() {
        m_fixture->services.hardware().serial = text("SER");
        m_fixture->click("buttonOurWebsite");
        QCOMPARE(m_fixture->services.workspace().openedUrls,
                 QStringList{text("https://www.quorvane.test/?utm_source=905-quorvane-mac&utm_medium=in-app"
                                  "&uid=SER-1.0.0")});
        QVERIFY(m_fixture->window().isVisible());
    }

    void operationsWithoutEffectHaveNone() {
        m_fixture->click("checkboxHide"); // pending, and stays pending
        const QVariantMap before = m_fixture->services.preferences().all();
        const auto calls = m_fixture->services.hotKeys().calls();
        QrvSettingsWindowController::setBrowsers();
        QrvSettingsWindowController::setUserAgent();
        QrvSettingsWindowController::setReferrer();
        QrvSettingsWindowController::selectHotKeyMenuItemPressed();
        QCOMPARE(m_fixture->services.preferences().all(), before);
        QVERIFY(defaults().hasPendingEdits());
        QCOMPARE(m_fixture->services.hotKeys().calls(), calls);
        QVERIFY(m_fixture->delegate.calls.isEmpty());
    }

    void awakeningAgainIsHarmless() {
        const auto calls = m_fixture->services.hotKeys().calls();
        m_fixture->controller->awakeFromNib();
        QCOMPARE(m_fixture->services.hotKeys().calls(), calls);
        QCOMPARE(m_fixture->window().toolbar().actions().size(), 2);
    }

    void otherWritersLeavePendingEditsPending() {
        m_fixture->click("checkboxHide");
        m_fixture->controller->addDiscardedIp(text("203.0.113.7"));
        QVERIFY(defaults().hasPendingEdits());
        QVERIFY(!m_fixture->stored("hide").isValid());
    }
};

} // namespace quorvane

GUI_TEST(SettingsEditsTest)
#include "SettingsEditsTest.moc"
