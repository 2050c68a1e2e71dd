#include "frontend/ui/shared/ScreenRoom.h"
#include "frontend/ui/shared/Theme.h"
#include "tests/gui/MainWindowFixture.h"
#include "tests/gui/ui/settings/SettingsTest.h"

#include <QApplication>
#include <QComboBox>
#include <QScreen>
#include <QStyle>
#include <QToolButton>

namespace quorvane {

namespace {

/// Goes through every control by the Tab key; returns those that are not wholly visible when they have the
/// focus.
QStringList outOfSight(QWidget &window) {
    QStringList found;
    QSet<const QWidget *> seen;
    for (QWidget *control = window.focusWidget(); control != nullptr && !seen.contains(control);
         control = window.focusWidget()) {
        seen.insert(control);
        if (control->visibleRegion().boundingRect() != control->rect()) {
            found.append(control->objectName());
        }
        QTest::keyClick(control, Qt::Key_Tab);
        QCoreApplication::processEvents();
    }
    if (seen.size() < 5) {
        found.append(text("only %1 controls").arg(seen.size()));
    }
    return found;
}

bool fitsOnScreen(const QWidget &window) {
    return window.height() <= roomOnScreen(window) && window.width() <= window.screen()->size().width();
}

} // namespace

/// Every window on the screen that the test program was started with.
class SmallScreenTest : public QObject {
    Q_OBJECT

private:
    QString m_styleBefore;

    static bool isLow() { return QGuiApplication::primaryScreen()->availableGeometry().height() < 700; }

    static void check(QWidget &window) {
        QCoreApplication::processEvents();
        QVERIFY2(fitsOnScreen(window), qPrintable(QString::number(window.height())));
        const QStringList hidden = outOfSight(window);
        QVERIFY2(hidden.isEmpty(), qPrintable(hidden.join(text(", "))));
    }

private Q_SLOTS:

    void initTestCase() {
        m_styleBefore = QApplication::style()->name();
        const GuiFixture services;
        Theme::apply(*qApp);
    }

    void cleanupTestCase() {
        qApp->setStyleSheet({});
        QApplication::setStyle(m_styleBefore);
        QApplication::setPalette({});
    }

    void screenIsTheOneThatIsTested() {
        const QString wanted = qEnvironmentVariable("QUORVANE_TEST_SCREEN", text("800x800"));
        const QSize size = QGuiApplication::primaryScreen()->size();
        QCOMPARE(text("%1x%2").arg(size.width()).arg(size.height()), wanted);
    }

    void everyControlOfTheMainWindowCanBeReached() {
        MainWindowFixture fixture;
        fixture.display.answerHandled();
        fixture.display.interval(42, true);
        fixture.show();
        fixture.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&fixture.window));
        fixture.find<QComboBox>("popupCountry")->setFocus();
        check(fixture.window);
        fixture.showHidden();
        check(fixture.window);
        fixture.find<QToolButton>("rotationFold")->setChecked(true);
        check(fixture.window);
        fixture.display.waitingForLocation();
        check(fixture.window);
    }

    void rotationIsFoldedOnALowScreenOnly() {
        MainWindowFixture fixture;
        fixture.show();
        auto *fold = fixture.find<QToolButton>("rotationFold");
        auto *part = fixture.find<QWidget>("rotationPart");
        QCOMPARE(fold->isVisible(), isLow());
        QCOMPARE(part->isVisible(), !isLow());
        if (isLow()) {
            QTest::mouseClick(fold, Qt::LeftButton);
            QVERIFY(part->isVisible());
            QCOMPARE(fold->arrowType(), Qt::DownArrow);
            QTest::mouseClick(fold, Qt::LeftButton);
            QVERIFY(!part->isVisible());
        }
    }

    void hideButtonAndLocationsNeedNoScrolling() {
        MainWindowFixture fixture;
        fixture.display.answerHandled();
        fixture.show();
        fixture.showHidden();
        QCoreApplication::processEvents();
        for (const char *name : {"buttonQuorvane", "changeIpButton", "popupCountry"}) {
            const auto *control = fixture.find<QWidget>(name);
            QCOMPARE(control->visibleRegion().boundingRect(), control->rect());
        }
    }

    void everyControlOfTheSettingsCanBeReached() {
        SettingsFixture fixture;
        fixture.startAndShow();
        for (const QString &pane : {SettingsToolbar::tbiIpAddresses(), SettingsToolbar::tbiHotKeys(),
                                    SettingsToolbar::tbiIpAddresses()}) {
            fixture.window().toolbarItemPressed(pane);
            fixture.find<QWidget>("buttonOk")->setFocus();
            check(fixture.window());
            for (const char *name : {"buttonOk", "buttonCancel", "buttonApply"}) {
                const auto *button = fixture.find<QWidget>(name);
                QCOMPARE(button->visibleRegion().boundingRect(), button->rect());
            }
        }
    }
};

} // namespace quorvane

GUI_TEST(SmallScreenTest)
#include "SmallScreenTest.moc"
