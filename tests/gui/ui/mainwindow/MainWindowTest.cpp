#include "frontend/ui/mainwindow/MainWindow.h"

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
    std::unique_ptr<GuiFixture> fixture;
    std::unique_ptr<MainWindow> window;
    std::unique_ptr<SessionDisplay> display;

    [[nodiscard]] QLabel *label(const char *name) const { return window->findChild<QLabel *>(text(name)); }

    [[nodiscard]] QPushButton *button(const char *name) const {
        return window->findChild<QPushButton *>(text(name));
    }

private Q_SLOTS:

    void init() {
        fixture = std::make_unique<GuiFixture>();
        window = std::make_unique<MainWindow>();
        display = std::make_unique<SessionDisplay>();
        connect(display.get(), &SessionDisplay::changed, window.get(), &MainWindow::draw);
        display->starting();
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    void cleanup() {
        window.reset();
        display.reset();
        fixture.reset();
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
        QVERIFY(window->findChild<QProgressBar *>(text("viewSpinWeel"))->isVisible());
        QCOMPARE(label("imageAppState")->accessibleName(), text("IP not hidden"));
    }

    void searchingIsGreyAndDisabled() {
        display->answerHandled();
        display->searching();
        QCOMPARE(label("fieldLine1")->text(), text("Searching for an available IP..."));
        QVERIFY(label("fieldLine1")->styleSheet().contains(text("rgb(211, 211, 211)")));
        QVERIFY(!button("buttonQuorvane")->isEnabled());
        QCOMPARE(label("imageAppState")->accessibleName(), text("Searching"));
        QVERIFY(!window->findChild<QProgressBar *>(text("viewSpinWeel"))->isVisible());
    }

    void hiddenShowsAddressFlagAndPlace() {
        display->tunnelStarting();
        display->hidden(text("203.0.113.7\n"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
        QCOMPARE(window->findChild<QrvFancyIp *>(text("viewCurrentIP"))->stringValue(),
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
        display->hidden(text("203.0.113.7"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
        display->notHidden(text("198.51.100.10"));
        QVERIFY(!label("imageCountry")->isVisible());
        QVERIFY(label("imageCountry")->pixmap().isNull());
        QCOMPARE(window->findChild<QrvFancyIp *>(text("viewCurrentIP"))->stringValue(),
                 text("198.51.100.10"));
        QVERIFY(!button("buttonQuorvane")->isChecked());
        QVERIFY(!button("changeIpButton")->isVisible());
    }

    void nothingJumpsBetweenTheStates() {
        const QPoint before = button("buttonQuorvane")->pos();
        display->answerHandled();
        display->searching();
        QCoreApplication::processEvents();
        QCOMPARE(button("buttonQuorvane")->pos(), before);
        display->hidden(text("203.0.113.7"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
        QCoreApplication::processEvents();
        QCOMPARE(button("buttonQuorvane")->pos(), before);
    }

    void hostileTextsStayPlain() {
        display->hidden(text("<img src=x>"), text("1.1.1.1"), text("de"), text("<b>Berlin</b>"));
        for (const char *name : {"fieldLine22", "fieldLine1"}) {
            QCOMPARE(label(name)->textFormat(), Qt::PlainText);
        }
    }

    void pressesAreTold() {
        display->answerHandled();
        QSignalSpy hide(window.get(), &MainWindow::hideButtonPressed);
        QTest::mouseClick(button("buttonQuorvane"), Qt::LeftButton);
        QCOMPARE(hide.size(), 1);
        QCOMPARE(hide.first().first().toBool(), true);
        display->hidden(text("1.1.1.2"), text("1.1.1.1"), text("de"), text("x"));
        QSignalSpy change(window.get(), &MainWindow::changeIpPressed);
        QSignalSpy discard(window.get(), &MainWindow::discardIpPressed);
        QTest::mouseClick(button("changeIpButton"), Qt::LeftButton);
        QTest::mouseClick(button("discardIpButton"), Qt::LeftButton);
        QCOMPARE(change.size(), 1);
        QCOMPARE(discard.size(), 1);
    }

    void drawingIsNoEdit() {
        QSignalSpy edits(window.get(), &MainWindow::intervalEntered);
        display->interval(42, true);
        QCOMPARE(window->findChild<QSpinBox *>(text("stepperChangeIpInterval"))->value(), 42);
        QCOMPARE(window->findChild<QLineEdit *>(text("fieldChangeIpInterval"))->text(), text("42"));
        QCOMPARE(edits.size(), 0);
    }

    void stepperCopiesIntoTheField() {
        display->interval(42, true);
        QSignalSpy edits(window.get(), &MainWindow::intervalEntered);
        window->findChild<QSpinBox *>(text("stepperChangeIpInterval"))->stepUp();
        QCOMPARE(edits.size(), 1);
        QCOMPARE(edits.first().first().toInt(), 43);
        QCOMPARE(window->findChild<QLineEdit *>(text("fieldChangeIpInterval"))->text(), text("43"));
    }

    void stepperStaysWithinOneAndNinetyNine() {
        auto *stepper = window->findChild<QSpinBox *>(text("stepperChangeIpInterval"));
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
        display->interval(42, true);
        QSignalSpy edits(window.get(), &MainWindow::intervalEntered);
        auto *field = window->findChild<QLineEdit *>(text("fieldChangeIpInterval"));
        field->setFocus();
        field->selectAll();
        field->insert(typed); // as a paste does: one edit
        QCOMPARE(field->text(), left);
        QVERIFY(!edits.isEmpty());
        QCOMPARE(edits.last().first().toInt(), left.toInt());
        QCOMPARE(window->findChild<QSpinBox *>(text("stepperChangeIpInterval"))->value(), left.toInt());
    }

    void backgroundClickEndsTextEditing() {
        display->interval(42, true);
        auto *field = window->findChild<QLineEdit *>(text("fieldChangeIpInterval"));
        field->setFocus();
        QTest::mouseClick(window->centralWidget(), Qt::LeftButton, {}, QPoint(3, 3));
        QVERIFY(!field->hasFocus());
    }

    void transportLabelsAreSentAsTheyStand() {
        QCOMPARE(window->transportLabel(), text("TCP"));
        QSignalSpy chosen(window.get(), &MainWindow::transportChosen);
        window->findChild<QRadioButton *>(text("segmentUdp"))->click();
        QCOMPARE(window->transportLabel(), text("UDP"));
        QCOMPARE(chosen.first().first().toInt(), 1);
        window->setTransportIndex(0);
        QCOMPARE(window->transportIndex(), 0);
    }

    void closingHidesOnlyWhereTheTrayLeadsBack() {
        window->setReachableByTray(true);
        window->close();
        QVERIFY(!window->isVisible());
        window->bringForward();
        QVERIFY(window->isVisible());
        window->setReachableByTray(false);
        window->close();
        QVERIFY(window->isVisible());
        QVERIFY(window->isMinimized());
        window->bringForward();
        QVERIFY(!window->isMinimized());
    }

    void floatingLevelIsDroppedThroughTheWindowItself() {
        MainWindow floating;
        floating.raiseFloatingLevel();
        floating.show();
        const WId before = floating.winId();
        floating.dropFloatingLevel();
        QVERIFY(floating.isVisible());
        QCOMPARE(floating.winId(), before);
        QVERIFY(!floating.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
        QVERIFY(!floating.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    }

    void quitKeyAsksToQuit() {
        QSignalSpy quit(window.get(), &MainWindow::quitRequested);
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window.get(), Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(quit.size(), 1);
    }

    void everyControlHasAName() {
        for (const QWidget *widget : window->findChildren<QWidget *>()) {
            const bool innerPart = widget->objectName().startsWith(text("qt_")); // spoken for by its owner
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
