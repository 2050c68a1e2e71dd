#include "frontend/ui/mainwindow/MainWindow.h"
#include "frontend/session/LocationList.h"

#include "frontend/ui/locations/QrvLocationPaneController.h"
#include "frontend/ui/shared/QrvFancyIp.h"
#include "tests/gui/MainWindowFixture.h"

#include <QAccessible>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QWindow>

namespace quorvane {

/// Makes a window report itself as active while it is being hidden, as Wayland's do.
class StaysActive : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] bool used() const { return m_used; }

private:
    bool m_used = false;

    bool eventFilter(QObject *watched, QEvent *event) override {
        auto *window = static_cast<QWidget *>(watched);
        if (event->type() == QEvent::ActivationChange && !window->isActiveWindow() && !m_used) {
            m_used = true;
            QApplication::setActiveWindow(window);
        }
        return false;
    }
};

class MainWindowTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<MainWindowFixture> m_fixture;

    [[nodiscard]] QLabel *label(const char *name) const { return m_fixture->find<QLabel>(name); }

    [[nodiscard]] QPushButton *button(const char *name) const { return m_fixture->find<QPushButton>(name); }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<MainWindowFixture>();
        m_fixture->show();
    }

    void cleanup() { m_fixture.reset(); }

    void startShowsTheWarningAndTurns() {
        QCOMPARE(label("fieldLine1")->text(), text("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!"));
        QVERIFY(label("fieldLine1")->styleSheet().contains(text("rgb(223, 46, 51)")));
        for (const char *name : {"fieldLine21", "fieldLine22", "fieldLine3", "fieldLine4", "imageCountry"}) {
            QVERIFY2(!label(name)->isVisible(), name);
        }
        QVERIFY(!button("buttonQuorvane")->isEnabled());
        QVERIFY(!button("changeIpButton")->isVisible());
        QVERIFY(!button("discardIpButton")->isVisible());
        QVERIFY(m_fixture->find<QProgressBar>("viewSpinWeel")->isVisible());
        QCOMPARE(label("imageAppState")->accessibleName(), text("IP not hidden"));
    }

    void searchingIsGreyAndDisabled() {
        m_fixture->display.answerHandled();
        m_fixture->display.searching();
        QCOMPARE(label("fieldLine1")->text(), text("Searching for an available IP..."));
        QVERIFY(label("fieldLine1")->styleSheet().contains(text("rgb(211, 211, 211)")));
        QVERIFY(!button("buttonQuorvane")->isEnabled());
        QCOMPARE(label("imageAppState")->accessibleName(), text("Searching"));
        QVERIFY(!m_fixture->find<QProgressBar>("viewSpinWeel")->isVisible());
    }

    void hiddenShowsAddressFlagAndPlace() {
        m_fixture->display.hidden(text("203.0.113.7\n"), text("198.51.100.10"), text("de"),
                                  text("Germany Berlin"));
        QCOMPARE(m_fixture->find<QrvFancyIp>("viewCurrentIP")->stringValue(), text("203.0.113.7\n"));
        QCOMPARE(label("fieldLine1")->text(), text("You are currently hiding your real IP 198.51.100.10"));
        QVERIFY(label("fieldLine1")->styleSheet().contains(text("white")));
        QCOMPARE(label("fieldLine22")->text(), text("Germany Berlin"));
        QVERIFY(label("fieldLine21")->isVisible());
        QVERIFY(label("imageCountry")->isVisible());
        QVERIFY(!label("imageCountry")->pixmap().isNull());
        QCOMPARE(label("imageCountry")->accessibleName(), text("Flag: DE"));
        QCOMPARE(button("buttonQuorvane")->text(), text("Stop Hiding IP"));
        QVERIFY(button("buttonQuorvane")->isChecked());
        QVERIFY(button("changeIpButton")->isVisible());
        QVERIFY(button("discardIpButton")->isVisible());
    }

    void resetClearsTheFlag() {
        m_fixture->showHidden();
        m_fixture->display.notHidden(text("198.51.100.10"));
        QVERIFY(!label("imageCountry")->isVisible());
        QVERIFY(label("imageCountry")->pixmap().isNull());
        QCOMPARE(m_fixture->find<QrvFancyIp>("viewCurrentIP")->stringValue(), text("198.51.100.10"));
        QVERIFY(!button("buttonQuorvane")->isChecked());
        QVERIFY(!button("changeIpButton")->isVisible());
    }

    void noControlMovesBetweenTheStates() {
        const QPoint before = button("buttonQuorvane")->pos();
        m_fixture->display.answerHandled();
        m_fixture->display.searching();
        QCoreApplication::processEvents();
        QCOMPARE(button("buttonQuorvane")->pos(), before);
        m_fixture->showHidden();
        QCoreApplication::processEvents();
        QCOMPARE(button("buttonQuorvane")->pos(), before);
    }

    void hostileTextsStayPlain() {
        m_fixture->display.hidden(text("<img src=x>"), text("1.1.1.1"), text("de"), text("<b>Berlin</b>"));
        for (const char *name : {"fieldLine22", "fieldLine1"}) {
            QCOMPARE(label(name)->textFormat(), Qt::PlainText);
        }
    }

    void pressesAreEmitted() {
        m_fixture->display.answerHandled();
        QSignalSpy hide(&m_fixture->window, &MainWindow::hideButtonPressed);
        QTest::mouseClick(button("buttonQuorvane"), Qt::LeftButton);
        QCOMPARE(hide.size(), 1);
        QCOMPARE(hide.first().first().toBool(), true);
        m_fixture->display.hidden(text("1.1.1.2"), text("1.1.1.1"), text("de"), text("x"));
        QSignalSpy change(&m_fixture->window, &MainWindow::changeIpPressed);
        QSignalSpy discard(&m_fixture->window, &MainWindow::discardIpPressed);
        QTest::mouseClick(button("changeIpButton"), Qt::LeftButton);
        QTest::mouseClick(button("discardIpButton"), Qt::LeftButton);
        QCOMPARE(change.size(), 1);
        QCOMPARE(discard.size(), 1);
    }

    void drawingEmitsNoEdit() {
        QSignalSpy edits(&m_fixture->window, &MainWindow::intervalEntered);
        m_fixture->display.interval(42, true);
        QCOMPARE(m_fixture->find<QSpinBox>("stepperChangeIpInterval")->value(), 42);
        QCOMPARE(m_fixture->find<QLineEdit>("fieldChangeIpInterval")->text(), text("42"));
        QCOMPARE(edits.size(), 0);
    }

    void stepperCopiesIntoTheField() {
        m_fixture->display.interval(42, true);
        QSignalSpy edits(&m_fixture->window, &MainWindow::intervalEntered);
        m_fixture->find<QSpinBox>("stepperChangeIpInterval")->stepUp();
        QCOMPARE(edits.size(), 1);
        QCOMPARE(edits.first().first().toInt(), 43);
        QCOMPARE(m_fixture->find<QLineEdit>("fieldChangeIpInterval")->text(), text("43"));
    }

    void stepperStaysWithinOneAndNinetyNine() {
        auto *stepper = m_fixture->find<QSpinBox>("stepperChangeIpInterval");
        QCOMPARE(stepper->minimum(), 1);
        QCOMPARE(stepper->maximum(), 99);
        QCOMPARE(stepper->singleStep(), 1);
    }

    void intervalField_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("left");
        QTest::addColumn<bool>("corrected");
        QTest::newRow("letters and digits") << text("a1b2c") << text("12") << true;
        QTest::newRow("too long") << text("123") << text("12") << true;
        QTest::newRow("other digits") << QString(QChar(0x0663)) << text("") << true;
        QTest::newRow("zero") << text("0") << text("1") << false;
        QTest::newRow("leading zero") << text("07") << text("07") << false;
        QTest::newRow("plain") << text("7") << text("7") << false;
    }

    void intervalField() {
        QFETCH(QString, typed);
        QFETCH(QString, left);
        QFETCH(bool, corrected);
        m_fixture->display.interval(42, true);
        QSignalSpy edits(&m_fixture->window, &MainWindow::intervalEntered);
        auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        auto *stepper = m_fixture->find<QSpinBox>("stepperChangeIpInterval");
        field->setFocus();
        field->selectAll();
        field->insert(typed); // one edit, as a paste
        QCOMPARE(field->text(), left);
        QCOMPARE(edits.size(), corrected ? 0 : 1);
        QCOMPARE(stepper->value(), corrected ? 42 : left.toInt());
        m_fixture->display.draw(); // drawn again: the text stays
        QCOMPARE(field->text(), left);
        field->clearFocus();
        const QString stored = left.isEmpty() ? text("1") : left;
        QCOMPARE(field->text(), stored);
        QCOMPARE(edits.size(), corrected ? 1 : 2);
        QCOMPARE(edits.last().first().toInt(), stored.toInt());
    }

    void editAfterACorrectedOneIsReported() {
        m_fixture->display.interval(42, true);
        QSignalSpy edits(&m_fixture->window, &MainWindow::intervalEntered);
        auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, text("x2"));
        QCOMPARE(edits.size(), 1);
        QCOMPARE(edits.first().first().toInt(), 2);
    }

    void textSetFromCodeIsNoEdit() {
        m_fixture->display.interval(42, true);
        QSignalSpy edits(&m_fixture->window, &MainWindow::intervalEntered);
        auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        field->setFocus();
        field->setText(text("a1b2c"));
        QCOMPARE(field->text(), text("a1b2c"));
        QCOMPARE(m_fixture->find<QSpinBox>("stepperChangeIpInterval")->value(), 42);
        field->clearFocus();
        QCOMPARE(edits.size(), 0);
    }

    void fieldsActionReplacesZeroAndTheEndOfEditingReports() {
        m_fixture->display.interval(42, true);
        QSignalSpy edits(&m_fixture->window, &MainWindow::intervalEntered);
        auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        for (const char *zero : {"", "0", "00"}) {
            field->setText(text(zero));
            m_fixture->window.intervalChanged();
            QCOMPARE(field->text(), text("1"));
        }
        field->setText(text("13"));
        m_fixture->window.intervalChanged();
        QCOMPARE(field->text(), text("13"));
        QCOMPARE(edits.size(), 0);
        m_fixture->window.controlTextEndEditing();
        QCOMPARE(edits.size(), 1);
        QCOMPARE(edits.first().first().toInt(), 13);
    }

    void returnStoresOneForAZeroThatWasShown() {
        m_fixture->display.interval(42, true);
        m_fixture->display.interval(0, true);
        QSignalSpy edits(&m_fixture->window, &MainWindow::intervalEntered);
        auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        QCOMPARE(field->text(), text("0"));
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(field->text(), text("1"));
        QCOMPARE(edits.size(), 1);
        QCOMPARE(edits.first().first().toInt(), 1);
    }

    void numberThatIsTypedKeepsItsTextAndCursorWhenItIsDrawn() {
        m_fixture->display.interval(42, true);
        auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, text("7"));
        field->setCursorPosition(0);
        QTest::keyClicks(field, text("0"));
        m_fixture->display.interval(7, true);
        QCOMPARE(field->text(), text("07"));
        QCOMPARE(field->cursorPosition(), 1);
    }

    void backgroundClickEndsTextEditing() {
        m_fixture->display.interval(42, true);
        auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        field->setFocus();
        QTest::mouseClick(m_fixture->window.centralWidget(), Qt::LeftButton, {}, QPoint(3, 3));
        QVERIFY(!field->hasFocus());
    }

    void transportLabelsAreSentUnchanged() {
        QCOMPARE(m_fixture->find<QRadioButton>("segmentTcp")->text(), text("TCP"));
        QCOMPARE(m_fixture->find<QRadioButton>("segmentUdp")->text(), text("UDP"));
        QSignalSpy chosen(&m_fixture->window, &MainWindow::transportChosen);
        m_fixture->find<QRadioButton>("segmentUdp")->click();
        QCOMPARE(chosen.first().first().toInt(), 1);
        m_fixture->window.setTransportIndex(0);
        QCOMPARE(m_fixture->window.transportIndex(), 0);
    }

    void closingHidesOnlyWhenATrayCanShowTheWindowAgain() {
        m_fixture->window.setReachableByTray(true);
        m_fixture->window.close();
        QVERIFY(!m_fixture->window.isVisible());
        m_fixture->window.bringForward();
        QVERIFY(m_fixture->window.isVisible());
        m_fixture->window.setReachableByTray(false);
        m_fixture->window.close();
        QVERIFY(m_fixture->window.isVisible());
        QVERIFY(m_fixture->window.isMinimized());
        m_fixture->window.bringForward();
        QVERIFY(!m_fixture->window.isMinimized());
    }

    void windowThatWasStillActiveWhileItWasHiddenIsMinimisedWithoutATray() {
        m_fixture->window.setReachableByTray(true);
        m_fixture->window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_fixture->window));
        StaysActive filter;
        m_fixture->window.installEventFilter(&filter);
        m_fixture->window.close();
        m_fixture->window.removeEventFilter(&filter);
        QVERIFY(filter.used());
        QVERIFY(!m_fixture->window.isVisible());
        m_fixture->window.setReachableByTray(false);
        QVERIFY(m_fixture->window.isVisible());
        QVERIFY(m_fixture->window.isMinimized());
    }

    void floatingLevelIsDroppedThroughTheWindowItself() {
        MainWindow floating(m_fixture->chooser);
        floating.raiseFloatingLevel();
        floating.show();
        const WId before = floating.winId();
        floating.dropFloatingLevel();
        QVERIFY(floating.isVisible());
        QCOMPARE(floating.winId(), before);
        QVERIFY(!floating.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        QVERIFY(!floating.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    }

    void quitKeyRequestsQuitting() {
        QSignalSpy quit(&m_fixture->window, &MainWindow::quitRequested);
        m_fixture->window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_fixture->window));
        QTest::keyClick(&m_fixture->window, Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(quit.size(), 1);
    }

    void everyControlHasAName() {
        for (const QWidget *widget : m_fixture->window.findChildren<QWidget *>()) {
            const bool innerPart = widget->objectName().startsWith(text("qt_")); // its owner has the name
            if (innerPart || widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) {
                continue;
            }
            const QAccessibleInterface *accessible =
                QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget));
            QVERIFY(accessible != nullptr);
            const bool named = !accessible->text(QAccessible::Name).isEmpty() ||
                               !accessible->text(QAccessible::Description).isEmpty();
            QVERIFY2(named, qPrintable(widget->objectName()));
        }
    }
};

} // namespace quorvane

GUI_TEST(MainWindowTest)
#include "MainWindowTest.moc"
