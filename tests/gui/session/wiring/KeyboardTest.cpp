#include "frontend/session/LocationList.h"
#include "frontend/ui/mainwindow/MainWindow.h"

#include "tests/gui/MainWindowFixture.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>

namespace quorvane {

/// The main window, used only by keyboard.
class KeyboardTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<MainWindowFixture> m_fixture;

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const {
        return m_fixture->find<Widget>(name);
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget *focus = QApplication::focusWidget();
        QTest::keyClick(focus != nullptr ? focus : &m_fixture->window, key, modifiers);
    }

    [[nodiscard]] static QString focused() {
        const QWidget *focus = QApplication::focusWidget();
        return focus == nullptr ? QString() : focus->objectName();
    }

    /// The names of the controls that the key reaches, in one round.
    [[nodiscard]] QStringList focusNames(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        find<QPushButton>("buttonQuorvane")->setFocus(Qt::TabFocusReason);
        QStringList names{focused()};
        for (int i = 0; i < 50; ++i) {
            press(key, modifiers);
            if (focused() == names.first()) {
                return names;
            }
            names.append(focused());
        }
        return {};
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<MainWindowFixture>();
        m_fixture->display.answerHandled();
        m_fixture->display.interval(42, true);
        m_fixture->window.show();
        m_fixture->window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_fixture->window));
    }

    void cleanup() { m_fixture.reset(); }

    void tabGoesThroughEveryControlFromTopToBottom() {
        m_fixture->showHidden();
        const QStringList forward = focusNames(Qt::Key_Tab, Qt::NoModifier);
        QCOMPARE(forward,
                 (QStringList{text("buttonQuorvane"), text("changeIpButton"), text("discardIpButton"),
                              text("popupCountry"), text("checkSameIP"), text("checkboxChangeIpInterval"),
                              text("fieldChangeIpInterval"), text("stepperChangeIpInterval"),
                              text("checkboxRequireUS"), text("IPNonRepeat"), text("segmentTcp"),
                              text("advancedSettingsButton"), text("websiteButton"), text("quitButton"),
                              text("aboutButton")}));
        QStringList back = focusNames(Qt::Key_Tab, Qt::ShiftModifier);
        back.append(back.takeFirst());
        std::reverse(back.begin(), back.end());
        QCOMPARE(back, forward);
    }

    void disabledControlsAreSkipped() {
        m_fixture->display.searching();
        m_fixture->display.interval(42, false);
        find<QComboBox>("popupCountry")->setFocus();
        for (int i = 0; i < 20; ++i) {
            press(Qt::Key_Tab);
            QVERIFY(QApplication::focusWidget() != nullptr);
            QVERIFY2(QApplication::focusWidget()->isEnabled() && QApplication::focusWidget()->isVisible(),
                     qPrintable(focused()));
            QVERIFY(focused() != text("buttonQuorvane"));
        }
    }

    void spaceAndReturnPressTheButtonThatHasTheFocus() {
        QSignalSpy hide(&m_fixture->window, &MainWindow::hideButtonPressed);
        find<QPushButton>("buttonQuorvane")->setFocus();
        press(Qt::Key_Space);
        QCOMPARE(hide.size(), 1);
        m_fixture->showHidden();
        QSignalSpy change(&m_fixture->window, &MainWindow::changeIpPressed);
        find<QPushButton>("changeIpButton")->setFocus();
        press(Qt::Key_Return);
        QCOMPARE(change.size(), 1);
        QCOMPARE(hide.size(), 1); // not the default button as well
    }

    void returnElsewherePressesTheHideButton() {
        QSignalSpy hide(&m_fixture->window, &MainWindow::hideButtonPressed);
        find<QCheckBox>("checkboxRequireUS")->setFocus();
        press(Qt::Key_Return);
        QCOMPARE(hide.size(), 1);
        QCOMPARE(hide.first().first().toBool(), true);
        m_fixture->display.searching(); // the button is disabled
        press(Qt::Key_Enter);
        QCOMPARE(hide.size(), 1);
    }

    void returnAndEscapeInTheFieldEndTheEditingAndPressNothing() {
        QSignalSpy hide(&m_fixture->window, &MainWindow::hideButtonPressed);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
            auto *field = find<QLineEdit>("fieldChangeIpInterval");
            field->setFocus();
            QVERIFY(field->hasFocus());
            press(key);
            QVERIFY(!field->hasFocus());
        }
        QCOMPARE(hide.size(), 0);
        QVERIFY(m_fixture->window.isVisible());
    }

    void spaceSwitchesBoxesAndArrowsTheTransport() {
        QSignalSpy us(&m_fixture->window, &MainWindow::requireUSSwitched);
        find<QCheckBox>("checkboxRequireUS")->setFocus();
        press(Qt::Key_Space);
        QCOMPARE(us.size(), 1);
        QCOMPARE(us.first().first().toBool(), true);
        QSignalSpy transport(&m_fixture->window, &MainWindow::transportChosen);
        find<QRadioButton>("segmentTcp")->setFocus();
        press(Qt::Key_Right);
        QCOMPARE(m_fixture->window.transportIndex(), 1);
        QCOMPARE(transport.last().first().toInt(), 1);
    }

    void mnemonics_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("control");
        QTest::newRow("change") << int(Qt::Key_C) << text("changeIpButton");
        QTest::newRow("discard") << int(Qt::Key_D) << text("discardIpButton");
        QTest::newRow("same") << int(Qt::Key_A) << text("checkSameIP");
        QTest::newRow("every") << int(Qt::Key_E) << text("checkboxChangeIpInterval");
        QTest::newRow("us") << int(Qt::Key_U) << text("checkboxRequireUS");
        QTest::newRow("repeat") << int(Qt::Key_R) << text("IPNonRepeat");
        QTest::newRow("settings") << int(Qt::Key_S) << text("advancedSettingsButton");
    }

    void mnemonics() {
        QFETCH(int, key);
        QFETCH(QString, control);
        m_fixture->showHidden();
        auto *button = m_fixture->window.findChild<QAbstractButton *>(control);
        QSignalSpy clicked(button, &QAbstractButton::clicked);
        QTest::keyClick(&m_fixture->window, static_cast<Qt::Key>(key), Qt::AltModifier);
        QTRY_COMPARE(clicked.size(), 1); // the button is shown pressed first
    }

    void noTwoControlsShareAMnemonic() {
        QSet<QString> seen;
        for (const auto *button : m_fixture->window.findChildren<QAbstractButton *>()) {
            const QString key = button->shortcut().toString();
            QVERIFY2(key.isEmpty() || !seen.contains(key), qPrintable(button->objectName()));
            seen.insert(key);
        }
        QVERIFY(seen.size() > 5);
    }

    void locationIsChosenWithTheArrowsInTheOpenList() {
        auto *popup = find<QComboBox>("popupCountry");
        m_fixture->locations.fill(
            ServerModel::parseServers(ServerLines({text("7,Berlin,BER,DE,Germany,x|10.0.0.1")}), QString(),
                                      QString(), QString()),
            {}, {});
        QSignalSpy chosen(popup, &QComboBox::activated);
        popup->setFocus();
        press(Qt::Key_Down);
        QVERIFY(popup->view()->isVisible());
        QTest::keyClick(popup->view(), Qt::Key_Down);
        QCOMPARE(chosen.size(), 0);
        QTest::keyClick(popup->view(), Qt::Key_Return);
        QCOMPARE(popup->currentIndex(), 1);
        QCOMPARE(chosen.size(), 1);
    }
};

} // namespace quorvane

GUI_TEST(KeyboardTest)
#include "KeyboardTest.moc"
