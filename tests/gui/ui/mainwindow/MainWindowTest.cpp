#include "frontend/ui/mainwindow/MainWindow.h"
#include "frontend/session/LocationList.h"

#include "frontend/ui/locations/QrvLocationPaneController.h"
#include "frontend/ui/shared/QrvFancyIp.h"
#include "tests/gui/GuiTest.h"

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

class MainWindowTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;
    LocationList m_locations;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<SessionDisplay> m_display;

    [[nodiscard]] QLabel *label(const char *name) const { return m_window->findChild<QLabel *>(text(name)); }

    [[nodiscard]] QPushButton *button(const char *name) const {
        return m_window->findChild<QPushButton *>(text(name));
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<GuiFixture>();
        m_window = std::make_unique<MainWindow>(m_locations);
        m_display = std::make_unique<SessionDisplay>();
        connect(m_display.get(), &SessionDisplay::changed, m_window.get(), &MainWindow::draw);
        m_display->starting();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void cleanup() {
        m_window.reset();
        m_display.reset();
        m_fixture.reset();
    }

    void startShowsTheWarningAndTurns() {
        QCOMPARE(label("fieldLine1")->text(), text("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!"));
        QVERIFY(label("fieldLine1")->styleSheet().contains(text("rgb(223, 46, 51)")));
        for (const char *name : {"fieldLine21", "fieldLine22", "fieldLine3", "fieldLine4", "imageCountry"}) {
            QVERIFY2(!label(name)->isVisible(), name);
        }
        QVERIFY(!button("buttonQuorvane")->isEnabled());
        QVERIFY(!button("changeIpButton")->isVisible());
        QVERIFY(!button("discardIpButton")->isVisible());
        QVERIFY(m_window->findChild<QProgressBar *>(text("viewSpinWeel"))->isVisible());
        QCOMPARE(label("imageAppState")->accessibleName(), text("IP not hidden"));
    }

    void searchingIsGreyAndDisabled() {
        m_display->answerHandled();
        m_display->searching();
        QCOMPARE(label("fieldLine1")->text(), text("Searching for an available IP..."));
        QVERIFY(label("fieldLine1")->styleSheet().contains(text("rgb(211, 211, 211)")));
        QVERIFY(!button("buttonQuorvane")->isEnabled());
        QCOMPARE(label("imageAppState")->accessibleName(), text("Searching"));
        QVERIFY(!m_window->findChild<QProgressBar *>(text("viewSpinWeel"))->isVisible());
    }

    void hiddenShowsAddressFlagAndPlace() {
        m_display->tunnelStarting();
        m_display->hidden(text("203.0.113.7\n"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
        QCOMPARE(m_window->findChild<QrvFancyIp *>(text("viewCurrentIP"))->stringValue(),
                 text("203.0.113.7\n"));
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
        m_display->hidden(text("203.0.113.7"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
        m_display->notHidden(text("198.51.100.10"));
        QVERIFY(!label("imageCountry")->isVisible());
        QVERIFY(label("imageCountry")->pixmap().isNull());
        QCOMPARE(m_window->findChild<QrvFancyIp *>(text("viewCurrentIP"))->stringValue(),
                 text("198.51.100.10"));
        QVERIFY(!button("buttonQuorvane")->isChecked());
        QVERIFY(!button("changeIpButton")->isVisible());
    }

    void noControlMovesBetweenTheStates() {
        const QPoint before = button("buttonQuorvane")->pos();
        m_display->answerHandled();
        m_display->searching();
        QCoreApplication::processEvents();
        QCOMPARE(button("buttonQuorvane")->pos(), before);
        m_display->hidden(text("203.0.113.7"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
        QCoreApplication::processEvents();
        QCOMPARE(button("buttonQuorvane")->pos(), before);
    }

    void hostileTextsStayPlain() {
        m_display->hidden(text("<img src=x>"), text("1.1.1.1"), text("de"), text("<b>Berlin</b>"));
        for (const char *name : {"fieldLine22", "fieldLine1"}) {
            QCOMPARE(label(name)->textFormat(), Qt::PlainText);
        }
    }

    void pressesAreEmitted() {
        m_display->answerHandled();
        QSignalSpy hide(m_window.get(), &MainWindow::hideButtonPressed);
        QTest::mouseClick(button("buttonQuorvane"), Qt::LeftButton);
        QCOMPARE(hide.size(), 1);
        QCOMPARE(hide.first().first().toBool(), true);
        m_display->hidden(text("1.1.1.2"), text("1.1.1.1"), text("de"), text("x"));
        QSignalSpy change(m_window.get(), &MainWindow::changeIpPressed);
        QSignalSpy discard(m_window.get(), &MainWindow::discardIpPressed);
        QTest::mouseClick(button("changeIpButton"), Qt::LeftButton);
        QTest::mouseClick(button("discardIpButton"), Qt::LeftButton);
        QCOMPARE(change.size(), 1);
        QCOMPARE(discard.size(), 1);
    }

    void drawingEmitsNoEdit() {
        QSignalSpy edits(m_window.get(), &MainWindow::intervalEntered);
        m_display->interval(42, true);
        QCOMPARE(m_window->findChild<QSpinBox *>(text("stepperChangeIpInterval"))->value(), 42);
        QCOMPARE(m_window->findChild<QLineEdit *>(text("fieldChangeIpInterval"))->text(), text("42"));
        QCOMPARE(edits.size(), 0);
    }

    void stepperCopiesIntoTheField() {
        m_display->interval(42, true);
        QSignalSpy edits(m_window.get(), &MainWindow::intervalEntered);
        m_window->findChild<QSpinBox *>(text("stepperChangeIpInterval"))->stepUp();
        QCOMPARE(edits.size(), 1);
        QCOMPARE(edits.first().first().toInt(), 43);
        QCOMPARE(m_window->findChild<QLineEdit *>(text("fieldChangeIpInterval"))->text(), text("43"));
    }

    void stepperStaysWithinOneAndNinetyNine() {
        auto *stepper = m_window->findChild<QSpinBox *>(text("stepperChangeIpInterval"));
        QCOMPARE(stepper->minimum(), 1);
        QCOMPARE(stepper->maximum(), 99);
        QCOMPARE(stepper->singleStep(), 1);
    }

    void intervalField_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("left");
        QTest::newRow("letters and digits") << text("a1b2c") << text("12");
        QTest::newRow("too long") << text("123") << text("12");
        QTest::newRow("zero") << text("0") << text("1");
        QTest::newRow("other digits") << QString(QChar(0x0663)) << text("1");
        QTest::newRow("plain") << text("7") << text("7");
    }

    void intervalField() {
        QFETCH(QString, typed);
        QFETCH(QString, left);
        m_display->interval(42, true);
        QSignalSpy edits(m_window.get(), &MainWindow::intervalEntered);
        auto *field = m_window->findChild<QLineEdit *>(text("fieldChangeIpInterval"));
        field->setFocus();
        field->selectAll();
        field->insert(typed); // one edit, as a paste
        QCOMPARE(field->text(), left);
        QVERIFY(!edits.isEmpty());
        QCOMPARE(edits.last().first().toInt(), left.toInt());
        QCOMPARE(m_window->findChild<QSpinBox *>(text("stepperChangeIpInterval"))->value(), left.toInt());
    }

    void backgroundClickEndsTextEditing() {
        m_display->interval(42, true);
        auto *field = m_window->findChild<QLineEdit *>(text("fieldChangeIpInterval"));
        field->setFocus();
        QTest::mouseClick(m_window->centralWidget(), Qt::LeftButton, {}, QPoint(3, 3));
        QVERIFY(!field->hasFocus());
    }

    void transportLabelsAreSentUnchanged() {
        QCOMPARE(m_window->transportLabel(), text("TCP"));
        QSignalSpy chosen(m_window.get(), &MainWindow::transportChosen);
        m_window->findChild<QRadioButton *>(text("segmentUdp"))->click();
        QCOMPARE(m_window->transportLabel(), text("UDP"));
        QCOMPARE(chosen.first().first().toInt(), 1);
        m_window->setTransportIndex(0);
        QCOMPARE(m_window->transportIndex(), 0);
    }

    void closingHidesOnlyWhenATrayCanShowTheWindowAgain() {
        m_window->setReachableByTray(true);
        m_window->close();
        QVERIFY(!m_window->isVisible());
        m_window->bringForward();
        QVERIFY(m_window->isVisible());
        m_window->setReachableByTray(false);
        m_window->close();
        QVERIFY(m_window->isVisible());
        QVERIFY(m_window->isMinimized());
        m_window->bringForward();
        QVERIFY(!m_window->isMinimized());
    }

    void floatingLevelIsDroppedThroughTheWindowItself() {
        MainWindow floating(m_locations);
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
        QSignalSpy quit(m_window.get(), &MainWindow::quitRequested);
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTest::keyClick(m_window.get(), Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(quit.size(), 1);
    }

    void everyControlHasAName() {
        for (const QWidget *widget : m_window->findChildren<QWidget *>()) {
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

QTEST_MAIN(quorvane::MainWindowTest)
#include "MainWindowTest.moc"
