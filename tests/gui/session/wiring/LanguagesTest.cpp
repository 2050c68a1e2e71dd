#include "frontend/privileges/dialog/QrvAuthenticationWindowController.h"
#include "frontend/support/EventQueue.h"
#include "frontend/ui/mainwindow/QrvAboutWindowController.h"
#include "frontend/ui/shared/Theme.h"
#include "frontend/ui/tray/TrayPresence.h"
#include "tests/gui/Language.h"
#include "tests/gui/MainWindowFixture.h"
#include "tests/gui/WindowTexts.h"
#include "tests/gui/ui/settings/SettingsTest.h"

#include <QDir>
#include <QMenu>
#include <QMessageBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>

namespace quorvane {

namespace {

/// The languages of the catalogues that were built, and English.
QStringList languages() {
    QStringList found{text("en")};
    const QDir folder(text(QUORVANE_TRANSLATIONS));
    for (const QString &file : folder.entryList({text("quorvane_*.qm")})) {
        found.append(file.section(u'.', 0, 0).section(u'_', 1).replace(u'_', u'-'));
    }
    return found;
}

QString shown(const char *context, const char *source) {
    return QCoreApplication::translate(context, source);
}

} // namespace

/// Every window in every language: no text is cut off, every character has a glyph, and every letter acts on
/// one control. On a screen of the density in QT_SCALE_FACTOR.
class LanguagesTest : public QObject {
    Q_OBJECT

private:
    QString m_styleBefore;
    int m_windows = 0;

    void check(const QWidget &window) {
        QCoreApplication::processEvents();
        ++m_windows;
        const QStringList clipped = WindowTexts::clipped(window);
        QVERIFY2(clipped.isEmpty(), qPrintable(clipped.join(u'\n')));
        QCOMPARE(WindowTexts::charactersWithoutGlyph(window), QString());
        QVERIFY2(WindowTexts::mnemonicConflicts(window) == 0, qPrintable(WindowTexts::mnemonics(window)));
        savePicture(window);
    }

    /// The main window is as high as its texts need.
    void checkWhole(const MainWindow &window) {
        const auto *scroll = window.findChild<QScrollArea *>(text("scroll"));
        QCoreApplication::processEvents();
        QTRY_VERIFY(!scroll->verticalScrollBar()->isVisible());
        check(window);
    }

    /// For a person who looks at the windows: QUORVANE_TEST_PICTURES names the folder.
    void savePicture(const QWidget &window) const {
        const QString folder = qEnvironmentVariable("QUORVANE_TEST_PICTURES");
        if (!folder.isEmpty()) {
            const QString name = QLatin1StringView(QTest::currentDataTag()) + u'_' +
                                 QLatin1StringView(QTest::currentTestFunction()) + u'_' +
                                 QString::number(m_windows);
            const_cast<QWidget &>(window).grab().save(folder + u'/' + name + text(".png"));
        }
    }

    static void addLanguages() {
        QTest::addColumn<QString>("language");
        for (const QString &language : languages()) {
            QTest::newRow(qPrintable(language)) << language;
        }
    }

private Q_SLOTS:

    void initTestCase() {
        m_styleBefore = QApplication::style()->name();
        const GuiFixture services;
        Theme::apply(*qApp);
        QVERIFY2(languages().size() >= 12, qPrintable(languages().join(u' ')));
    }

    void cleanupTestCase() {
        qApp->setStyleSheet({});
        QApplication::setStyle(m_styleBefore);
        QApplication::setPalette({});
    }

    void init() {
        QFETCH(QString, language);
        const QString installed = Translations::install(*qApp, {language}, text(QUORVANE_TRANSLATIONS));
        QCOMPARE(installed, language == text("en") ? QString() : language);
        const Qt::LayoutDirection direction = Translations::shown().textDirection();
        QCOMPARE(direction, language == text("ar") ? Qt::RightToLeft : Qt::LeftToRight);
        if (direction != QGuiApplication::layoutDirection()) {
            QGuiApplication::setLayoutDirection(direction);
            Theme::apply(*qApp);
        }
    }

    void cleanup() { removeLanguage(); }

    void mainWindowInEveryPhase_data() { addLanguages(); }

    void mainWindowInEveryPhase() {
        MainWindowFixture fixture;
        fixture.locations.fill(
            ServerModel::parseServers(ServerLines({text("7,Berlin,BER,DE,Germany,x|10.0.0.1"),
                                                   text("8,Sao Paulo,SAO,BR,Brazil,x|10.0.0.2")}),
                                      QString(), QString(), QString()),
            {}, {});
        fixture.locations.setCurrentRow(2);
        SessionFacts &facts = fixture.display.facts;
        facts.answered = true;
        fixture.display.interval(99, true);
        fixture.display.currentIpKnown(text("198.51.100.254"));
        fixture.show();
        facts.firstUse = true;
        fixture.display.answerHandled();
        checkWhole(fixture.window);
        fixture.display.searching();
        for (const Phase phase : {Phase::Checking, Phase::Fetching, Phase::Connecting}) {
            facts.phase = phase;
            fixture.display.draw();
            checkWhole(fixture.window);
            auto *step = fixture.find<QLabel>("stepLine");
            step->setText(shown("quorvane::MainWindow", "%1 (%2 s)").arg(step->text(), text("88")));
            checkWhole(fixture.window);
        }
        for (const Phase phase : {Phase::Waiting, Phase::Unconfigured}) {
            facts.phase = phase;
            facts.buttonStops = true;
            fixture.display.draw();
            checkWhole(fixture.window);
        }
        facts.locked = true;
        facts.addressMissing = true;
        fixture.display.hidden(text("255.255.255.255"), text("255.255.255.254"), text("ba"),
                               text("Bosnia and Herzegovina Sarajevo"));
        checkWhole(fixture.window);
        fixture.display.notHidden(text("255.255.255.254"));
        QVERIFY(fixture.find<QWidget>("liftButton")->isVisible());
        checkWhole(fixture.window);
    }

    void minutesAgreeWithTheirNumber_data() {
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("unit");
        const auto add = [](const char *language, int number, const QString &unit) {
            QTest::addRow("%s %d", language, number) << text(language) << number << unit;
        };
        add("en", 2, text("minutes"));
        add("de", 1, text("Minute"));
        add("de", 2, text("Minuten"));
        add("ru", 21, text("минуту"));
        add("ru", 3, text("минуты"));
        add("ru", 11, text("минут"));
        add("pl", 1, text("minutę"));
        add("pl", 24, text("minuty"));
        add("pl", 12, text("minut"));
        add("ar", 2, text("دقيقتين"));
        add("ar", 10, text("دقائق"));
        add("ar", 42, text("دقيقة"));
        add("ja", 5, text("分"));
    }

    void minutesAgreeWithTheirNumber() {
        QFETCH(int, number);
        QFETCH(QString, unit);
        MainWindowFixture fixture;
        fixture.display.answerHandled();
        fixture.display.interval(number, true);
        fixture.show();
        QCOMPARE(fixture.find<QLabel>("minutesLabel")->text(), unit);
        SettingsFixture settings;
        settings.store("changeIpInterval", number);
        settings.startAndShow();
        QString label = settings.find<QLabel>("minutesLabel")->text();
        QCOMPARE(label.remove(u'&').remove(text(" (M)")).remove(text("(M)")), unit);
        check(settings.window());
    }

    void settingsInEveryPane_data() { addLanguages(); }

    void settingsInEveryPane() {
        SettingsFixture settings;
        settings.startAndShow();
        for (const QString &identifier : SettingsToolbar::toolbarAllowedItemIdentifiers()) {
            settings.window().toolbarItemPressed(identifier);
            check(settings.window());
        }
    }

    void hotKeysThatCannotBeUsed_data() { addLanguages(); }

    void hotKeysThatCannotBeUsed() {
        SettingsFixture settings;
        int code = 31;
        for (const char *key : {"hideIpHotKey", "changeIpHotKey", "stopHideIpHotKey", "discardIpHotKey",
                                "bringUpWindowHotKey"}) {
            settings.store(key, code++);
        }
        for (const quint32 key : {29U, 18U, 19U, 20U, 21U}) {
            settings.services.hotKeys().takeElsewhere(key, platform::HotKeyService::control);
        }
        settings.startAndShow();
        settings.window().toolbarItemPressed(text("tbiHotKeys"));
        QVERIFY(!settings.find<QLabel>("noteHideIP")->text().isEmpty());
        check(settings.window());
    }

    void aboutWindow_data() { addLanguages(); }

    void aboutWindow() {
        const GuiFixture services;
        QrvAPI api;
        QWidget main;
        QrvAboutWindowController about(main, api);
        about.showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(&about));
        check(about);
    }

    void administratorDialog_data() { addLanguages(); }

    void administratorDialog() {
        const GuiFixture services;
        EventQueue events;
        QrvAuthenticationWindowController dialog(events, Alerts::shared());
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        check(dialog);
    }

    void alertsAndTheQuestionAboutTheLock_data() { addLanguages(); }

    void alertsAndTheQuestionAboutTheLock() {
        const GuiFixture services;
        Alerts::shared().setPresenter({});
        const auto checkOpenBox = [this] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QVERIFY(box != nullptr);
            check(*box);
            box->buttons().constLast()->click();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        const char *const session = "quorvane::HideIpSession";
        for (const char *message :
             {"No Internet connection detected, please check your Internet settings.\n",
              "There was a problem connecting to the Quorvane server, please check your Internet connection "
              "or firewall settings.",
              "Traffic outside the tunnel could not be blocked, so your IP is not hidden."}) {
            Alerts::shared().critical({shown(session, "Error"), shown(session, message),
                                       shown(session, "Please try a different location.")},
                                      {});
            checkOpenBox();
        }
        const Question question{
            text("Quorvane"),
            shown(session, "Traffic outside the tunnel is still blocked since Quorvane last ran."),
            shown(session, "It has ended without lifting the block. Your IP is not hidden."),
            shown(session, "Lift the Block"), shown(session, "Hide My IP")};
        Alerts::shared().ask(question, [](Answer) {});
        checkOpenBox();
    }

    void trayMenu_data() { addLanguages(); }

    void trayMenu() {
        const GuiFixture services;
        LocationList locations;
        TrayPresence tray;
        tray.setLocations(locations);
        QMenu &menu = tray.menu();
        menu.popup({0, 0});
        QVERIFY(QTest::qWaitForWindowExposed(&menu));
        savePicture(menu);
        for (QAction *entry : menu.actions()) {
            const int width = menu.fontMetrics().horizontalAdvance(entry->text());
            QVERIFY2(width < menu.actionGeometry(entry).width(), qPrintable(entry->text()));
            QCOMPARE(WindowTexts::charactersWithoutGlyph(entry->text(), menu.font()), QString());
        }
        menu.close();
    }
};

} // namespace quorvane

GUI_TEST(LanguagesTest)
#include "LanguagesTest.moc"
