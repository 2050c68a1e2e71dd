#include "frontend/privileges/dialog/QrvAuthenticationWindowController.h"
#include "frontend/session/LocationChooser.h"
#include "frontend/session/LocationList.h"
#include "frontend/support/EventQueue.h"
#include "frontend/ui/mainwindow/MainWindow.h"
#include "frontend/ui/mainwindow/QrvAboutWindowController.h"
#include "frontend/ui/shared/Theme.h"

#include "tests/gui/Language.h"
#include "tests/gui/ShownSession.h"
#include "tests/gui/WindowTexts.h"
#include "tests/gui/ui/settings/SettingsTest.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>

namespace quorvane {

/// Checks that every text fits, on a screen of the density in QT_SCALE_FACTOR (1 without it) and in the
/// locale's language.
class ScalingTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<SettingsFixture> m_fixture;
    QString m_styleBefore;

    static void check(const QWidget &window) {
        QCoreApplication::processEvents();
        const QStringList found = WindowTexts::clipped(window);
        QVERIFY2(found.isEmpty(), qPrintable(found.join(text("; "))));
    }

private Q_SLOTS:

    void initTestCase() {
        m_styleBefore = QApplication::style()->name();
        const GuiFixture services;
        Theme::apply(*qApp);
        installLanguage();
    }

    void cleanupTestCase() {
        removeLanguage();
        qApp->setStyleSheet({});
        QApplication::setStyle(m_styleBefore);
        QApplication::setPalette({});
    }

    void init() { m_fixture = std::make_unique<SettingsFixture>(); }

    void cleanup() { m_fixture.reset(); }

    void screenHasTheRequestedDensity() {
        QWidget window;
        window.show();
        const double factor = qEnvironmentVariable("QT_SCALE_FACTOR", text("1")).toDouble();
        QCOMPARE(window.devicePixelRatioF(), factor);
    }

    void mainWindowHasRoomForEveryTextInEveryState() {
        LocationList locations;
        LocationChooser chooser(locations);
        MainWindow window(chooser);
        ShownSession display(window);
        display.interval(99, true);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        check(window);
        display.currentIpKnown(text("255.255.255.255"));
        display.answerHandled();
        check(window);
        display.searching();
        check(window);
        display.waitingForLocation();
        check(window);
        display.hidden(text("255.255.255.255\n"), text("255.255.255.254"), text("de"),
                       text("Bosnia and Herzegovina Sarajevo"));
        check(window);
    }

    void settingsHaveRoomForEveryTextInEveryPane() {
        SettingsFixture &settings = *m_fixture;
        settings.startAndShow();
        const QStringList all = SettingsToolbar::toolbarAllowedItemIdentifiers();
        for (const QString &identifier : all) {
            settings.window().toolbarItemPressed(identifier);
            check(settings.window());
        }
    }

    void hotKeysPaneHasRoomForEveryProblem() {
        SettingsFixture &settings = *m_fixture;
        settings.store("bringUpWindowHotKey", 35);
        settings.store("hideIpHotKey", 31);
        settings.store("changeIpHotKey", 32);
        settings.store("stopHideIpHotKey", 33);
        settings.store("discardIpHotKey", 34);
        for (const quint32 key : {29U, 18U, 19U, 20U, 21U}) {
            settings.services.hotKeys().takeElsewhere(key, platform::HotKeyService::control);
        }
        settings.startAndShow();
        settings.window().toolbarItemPressed(text("tbiHotKeys"));
        QVERIFY(!settings.find<QLabel>("noteHideIP")->text().isEmpty());
        check(settings.window());
    }

    void hotKeysPaneHasRoomForProblemsThatComeWhileItIsShown() {
        SettingsFixture &settings = *m_fixture;
        settings.startAndShow();
        settings.window().toolbarItemPressed(text("tbiHotKeys"));
        const QString control = QCoreApplication::translate("HotKeyTable", "Ctrl + %1");
        const auto apply = [&settings, &control](const char *dropdown, const char *digit) {
            settings.choose(settings.find<QComboBox>(dropdown), control.arg(text(digit)));
            settings.click("buttonApply");
        };
        for (const char *digit : {"0", "1", "2", "3", "4"}) {
            apply("dropdownBringUpWindow", digit); // the earlier combinations stay registered
        }
        apply("dropdownHideIP", "0");
        apply("dropdownChangeIP", "1");
        apply("dropdownStopHidingIP", "2");
        apply("dropdownDiscardIP", "3");
        QCOMPARE(settings.find<QLabel>("noteDiscardIP")->text(),
                 text(isGerman() ? "Gehört zu „Fenster zeigen“, bis Quorvane beendet wird."
                                 : "Belongs to \"Bring up window\" until Quorvane quits."));
        check(settings.window());
    }

    void aboutWindowHasRoomForEveryText() {
        QrvAPI api;
        QWidget main;
        QrvAboutWindowController about(main, api);
        about.showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(&about));
        check(about);
    }

    void administratorDialogHasRoomForEveryText() {
        EventQueue events;
        QrvAuthenticationWindowController dialog(events, Alerts::shared());
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        check(dialog);
    }
};

} // namespace quorvane

GUI_TEST(ScalingTest)
#include "ScalingTest.moc"
