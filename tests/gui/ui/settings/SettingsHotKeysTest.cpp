#include "frontend/ui/settings/HotKeysPane.h"

#include "SettingsTest.h"

#include <QLabel>
#include <QWheelEvent>
#include <array>

namespace quorvane {

namespace {

constexpr quint32 cmd = 256;
constexpr quint32 digit1 = 18;
constexpr quint32 digit2 = 19;

constexpr std::array dropdowns = {"dropdownHideIP", "dropdownChangeIP", "dropdownStopHidingIP",
                                  "dropdownDiscardIP", "dropdownBringUpWindow"};

} // namespace

/// The pane "Hot Keys": the choices, the refused ones, and the registrations with the desktop.
class SettingsHotKeysTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<SettingsFixture> m_fixture;

    void showPane() {
        m_fixture->startAndShow();
        m_fixture->window().toolbarItemPressed(text("tbiHotKeys"));
    }

    [[nodiscard]] QComboBox *dropdown(const char *name) const { return m_fixture->find<QComboBox>(name); }

    [[nodiscard]] QString note(const char *name) const { return m_fixture->find<QLabel>(name)->text(); }

private Q_SLOTS:

    void init() { m_fixture = std::make_unique<SettingsFixture>(); }

    void cleanup() { m_fixture.reset(); }

    void everyPopUpOffersTheWholeList() {
        m_fixture->start();
        for (const char *name : dropdowns) {
            const auto offers = HotKeyTable::offers();
            QCOMPARE(dropdown(name)->count(), static_cast<int>(offers.size()));
            for (int i = 0; i < dropdown(name)->count(); ++i) {
                QCOMPARE(dropdown(name)->itemText(i), offers[static_cast<std::size_t>(i)].label);
                QCOMPARE(dropdown(name)->itemData(i),
                         QVariant::fromValue<qint64>(offers[static_cast<std::size_t>(i)].tag));
            }
        }
    }

    void fillingAgainReplacesTheEntries() {
        QComboBox box;
        box.addItem(text("old"));
        HotKeysPane::fillDropdownWithHotKeys(box);
        const int count = box.count();
        HotKeysPane::fillDropdownWithHotKeys(box);
        QCOMPARE(box.count(), count);
        QCOMPARE(box.itemText(0), text("None"));
        QCOMPARE(box.itemData(0).toLongLong(), -1);
    }

    void storedKeysAreRegisteredAtTheStartInOrder() {
        m_fixture->store("bringUpWindowHotKey", 31);
        m_fixture->store("hideIpHotKey", 2);
        m_fixture->start();
        const auto &held = m_fixture->services.hotKeys().held();
        QCOMPARE(held.size(), 2);
        QCOMPARE(held[0].identifier.id, 1U);
        QCOMPARE(held[1].identifier.id, 5U);
        m_fixture->services.hotKeys().press(digit1, cmd);
        QCOMPARE(m_fixture->delegate.fired, QList<quint32>{1});
    }

    void conflictIsReportedAndTheSecondPopUpReset() {
        m_fixture->store("changeIpHotKey", 33);
        showPane();
        m_fixture->choose(dropdown("dropdownHideIP"), text("Cmd + 1"));
        QVERIFY(m_fixture->alerts.isEmpty());
        m_fixture->choose(dropdown("dropdownChangeIP"), text("Cmd + 1")); // shown there, but not yet stored
        QCOMPARE(m_fixture->alerts.size(), 1);
        QCOMPARE(m_fixture->alerts.first().title, text("Quorvane"));
        QCOMPARE(m_fixture->alerts.first().text,
                 text("Selected hot key is already being used by another action."));
        QVERIFY(m_fixture->alerts.first().informative.isEmpty());
        QCOMPARE(dropdown("dropdownChangeIP")->currentText(), text("Ctrl + 2"));
        QCOMPARE(dropdown("dropdownHideIP")->currentText(), text("Cmd + 1"));
        m_fixture->click("buttonOk");
        QCOMPARE(m_fixture->stored("hideIpHotKey").toLongLong(), 2);
        QCOMPARE(m_fixture->stored("changeIpHotKey").toLongLong(), 33);
    }

    void everyPopUpConflictsWithEveryOther_data() {
        QTest::addColumn<QString>("sender");
        QTest::addColumn<QString>("other");
        for (const char *sender : dropdowns) {
            for (const char *other : dropdowns) {
                if (sender != other) {
                    QTest::addRow("%s against %s", sender, other) << text(sender) << text(other);
                }
            }
        }
    }

    void everyPopUpConflictsWithEveryOther() {
        QFETCH(QString, sender);
        QFETCH(QString, other);
        m_fixture->store("hideIpHotKey", 31);
        m_fixture->store("changeIpHotKey", 32);
        m_fixture->store("stopHideIpHotKey", 33);
        m_fixture->store("discardIpHotKey", 34);
        m_fixture->store("bringUpWindowHotKey", 35);
        showPane();
        auto *box = m_fixture->window().findChild<QComboBox *>(sender);
        auto *holder = m_fixture->window().findChild<QComboBox *>(other);
        const QString before = box->currentText();
        const QString held = holder->currentText();
        QVERIFY(before != held);
        m_fixture->choose(box, held);
        QCOMPARE(m_fixture->alerts.size(), 1);
        QCOMPARE(box->currentText(), before); // each its own
        QCOMPARE(holder->currentText(), held);
    }

    void applyRegistersAllFiveInOrderFromWhatWasJustStored() {
        m_fixture->store("changeIpHotKey", 33);
        showPane();
        m_fixture->services.hotKeys().clear();
        m_fixture->choose(dropdown("dropdownBringUpWindow"), text("Cmd + 1"));
        QVERIFY(m_fixture->services.hotKeys().calls().isEmpty());
        m_fixture->click("buttonApply");
        const auto calls = m_fixture->services.hotKeys().calls();
        QCOMPARE(calls.size(), 5);
        using Kind = fakes::FakeHotKeyService::Call::Kind;
        QList<Kind> kinds;
        for (const auto &call : calls) {
            kinds.append(call.kind);
        }
        QCOMPARE(kinds, (QList<Kind>{Kind::Unregister, Kind::Register, Kind::Unregister, Kind::Unregister,
                                     Kind::Register}));
        QCOMPARE(calls[1].identifier.id, 2U);
        QCOMPARE(calls[4].identifier.id, 5U);
        QCOMPARE(calls[4].keyCode, digit1);
        QCOMPARE(calls[4].modifiers, cmd);
    }

    void conflictIsWithWhatIsShownNotWithWhatIsStored() {
        m_fixture->store("hideIpHotKey", 2);
        showPane();
        m_fixture->choose(dropdown("dropdownHideIP"), text("None"));
        m_fixture->choose(dropdown("dropdownDiscardIP"), text("Cmd + 1")); // not shown in the pane
        QVERIFY(m_fixture->alerts.isEmpty());
        QCOMPARE(dropdown("dropdownDiscardIP")->currentText(), text("Cmd + 1"));
    }

    void noneNeverConflicts() {
        showPane();
        m_fixture->choose(dropdown("dropdownHideIP"), text("Cmd + 1"));
        m_fixture->choose(dropdown("dropdownHideIP"), text("None"));
        m_fixture->choose(dropdown("dropdownChangeIP"), text("None"));
        QVERIFY(m_fixture->alerts.isEmpty());
    }

    void conflictOverAStrayStoredTagGoesBackToNone() {
        m_fixture->store("changeIpHotKey", 18);
        showPane();
        m_fixture->choose(dropdown("dropdownHideIP"), text("Cmd + 1"));
        m_fixture->choose(dropdown("dropdownChangeIP"), text("Cmd + 1"));
        QCOMPARE(m_fixture->alerts.size(), 1);
        QCOMPARE(dropdown("dropdownChangeIP")->currentText(), text("None"));
    }

    void closedPopUpDoesNotChangeItsChoiceByKeys() {
        m_fixture->store("hideIpHotKey", 1);
        showPane();
        QComboBox *box = dropdown("dropdownChangeIP");
        box->setFocus();
        QWheelEvent wheel(QPointF(5, 5), box->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(box, &wheel);
        QCOMPARE(box->currentIndex(), 0);
        QTest::keyClick(box, Qt::Key_Down);
        QVERIFY(box->view()->isVisible());
        QTest::keyClick(box->view(), Qt::Key_Down);
        QTest::keyClick(box->view(), Qt::Key_Down);
        QVERIFY(m_fixture->alerts.isEmpty());
        QTest::keyClick(box->view(), Qt::Key_Return);
        QCOMPARE(box->currentText(), text("Cmd + 1"));
        QTest::keyClicks(box, text("s"));
        QVERIFY(box->view()->isVisible());
        QTest::keyClick(box->view(), Qt::Key_Return);
        QCOMPARE(box->currentText(), text("Shift + F1"));
        QVERIFY(m_fixture->alerts.isEmpty());
    }

    void replacedCombinationStaysAndNoneReleasesTheCurrentOne() {
        m_fixture->store("hideIpHotKey", 2);
        showPane();
        m_fixture->choose(dropdown("dropdownHideIP"), text("Cmd + 2"));
        m_fixture->click("buttonApply");
        m_fixture->services.hotKeys().press(digit1, cmd);
        m_fixture->services.hotKeys().press(digit2, cmd);
        QCOMPARE(m_fixture->delegate.fired, (QList<quint32>{1, 1}));
        m_fixture->choose(dropdown("dropdownHideIP"), text("None"));
        m_fixture->click("buttonApply");
        QCOMPARE(m_fixture->services.hotKeys().press(digit2, cmd), 0);
        QCOMPARE(m_fixture->services.hotKeys().press(digit1, cmd), 1);
    }

    void refusedCombinationIsReportedBesideItsPopUpAndStaysChosen() {
        m_fixture->services.hotKeys().takeElsewhere(digit2, cmd);
        showPane();
        QCOMPARE(note("noteDiscardIP"), text(""));
        m_fixture->choose(dropdown("dropdownDiscardIP"), text("Cmd + 2"));
        m_fixture->click("buttonApply");
        QCOMPARE(note("noteDiscardIP"), text("Another program uses this combination."));
        QVERIFY(m_fixture->find<QLabel>("noteDiscardIP")->isVisible());
        QCOMPARE(dropdown("dropdownDiscardIP")->accessibleDescription(), note("noteDiscardIP"));
        QCOMPARE(dropdown("dropdownDiscardIP")->currentText(), text("Cmd + 2"));
        QCOMPARE(m_fixture->stored("discardIpHotKey").toLongLong(), 3);
        QVERIFY(m_fixture->alerts.isEmpty());
        m_fixture->choose(dropdown("dropdownDiscardIP"), text("Cmd + 3"));
        m_fixture->click("buttonApply");
        QCOMPARE(note("noteDiscardIP"), text(""));
    }

    void combinationStillHeldByAnotherActionIsReportedWithItsName() {
        m_fixture->store("hideIpHotKey", 2);
        showPane();
        m_fixture->choose(dropdown("dropdownHideIP"), text("Cmd + 2"));
        m_fixture->choose(dropdown("dropdownBringUpWindow"), text("Cmd + 1"));
        m_fixture->click("buttonApply");
        QCOMPARE(note("noteBringUpWindow"), text("Belongs to \"Hide IP\" until Quorvane quits."));
    }

    void lateRefusalAppearsBesideItsPopUp() {
        m_fixture->store("hideIpHotKey", 2);
        showPane();
        m_fixture->services.hotKeys().refuse(m_fixture->services.hotKeys().held().first().reference,
                                             platform::HotKeyError::TakenElsewhere);
        QCOMPARE(note("noteHideIP"), text("Another program uses this combination."));
    }

    void lateDeclineAppearsBesideItsPopUp() {
        m_fixture->store("stopHideIpHotKey", 2);
        showPane();
        m_fixture->services.hotKeys().refuse(m_fixture->services.hotKeys().held().first().reference,
                                             platform::HotKeyError::Declined);
        QCOMPARE(note("noteStopHidingIP"), text("The desktop declined this combination."));
    }

    void desktopReceivesTheDescriptionsOfTheHotKeys() {
        m_fixture->start();
        const QStringList names = {text("Hide IP"), text("Change IP"), text("Stop hiding IP"),
                                   text("Discard IP"), text("Bring up window")};
        for (int i = 0; i < names.size(); ++i) {
            QCOMPARE(m_fixture->services.hotKeys().description(static_cast<quint32>(i) + 1), names[i]);
        }
    }

    void desktopWithoutHotKeysIsReportedWithTheCommandsToBindAndAllElseWorks() {
        const QString sentence = text(
            "This desktop offers no global hot keys: these combinations have no effect.\nIts settings can "
            "bind keys to commands: quorvane --hide, --change, --stop, --discard, --show");
        m_fixture->services.hotKeys().setAvailable(false);
        showPane();
        QCOMPARE(note("hint"), sentence);
        m_fixture->choose(dropdown("dropdownHideIP"), text("Cmd + 1"));
        m_fixture->click("buttonApply");
        QCOMPARE(m_fixture->stored("hideIpHotKey").toLongLong(), 2);
        QCOMPARE(note("noteHideIP"), text(""));
        m_fixture->services.hotKeys().setAvailable(true);
        m_fixture->controller->showWindow();
        QVERIFY(note("hint") != sentence);
    }

    void programWithoutTheServiceObjectWorksToo() {
        m_fixture->services.platform().hotKeys.reset();
        showPane();
        QVERIFY(note("hint").startsWith(text("This desktop offers no global hot keys")));
        m_fixture->choose(dropdown("dropdownHideIP"), text("Cmd + 1"));
        m_fixture->click("buttonOk");
        QCOMPARE(m_fixture->stored("hideIpHotKey").toLongLong(), 2);
    }
};

} // namespace quorvane

GUI_TEST(SettingsHotKeysTest)
#include "SettingsHotKeysTest.moc"
