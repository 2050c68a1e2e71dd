#include "tests/gui/Language.h"
#include "frontend/privileges/dialog/QrvAuthenticationWindowController.h"
#include "frontend/session/LocationChoice.h"
#include "frontend/session/LocationChooser.h"
#include "frontend/session/LocationList.h"
#include "frontend/support/EventQueue.h"
#include "frontend/ui/locations/QrvLocationPaneController.h"
#include "frontend/ui/mainwindow/MainWindow.h"
#include "frontend/ui/mainwindow/QrvAboutWindowController.h"
#include "frontend/ui/tray/TrayPresence.h"
#include "tests/gui/ShownSession.h"
#include "tests/gui/WindowTexts.h"
#include "tests/gui/ui/settings/SettingsTest.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMenu>
#include <QRegularExpression>

namespace quorvane {

/// The windows' texts for an English and for a German user; the locale of the test run decides which of them
/// it is.
class LanguageTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<SettingsFixture> m_fixture;

    static QString either(const char *english, const char *german) {
        return text(isGerman() ? german : english);
    }

    static void checkMnemonics(const QWidget &window, qsizetype minimumCount) {
        const QString letters = WindowTexts::mnemonics(window);
        QVERIFY2(WindowTexts::mnemonicConflicts(window) == 0, qPrintable(letters));
        QVERIFY2(letters.size() >= minimumCount, qPrintable(letters));
    }

private Q_SLOTS:

    void initTestCase() { installLanguage(); }

    void cleanupTestCase() { removeLanguage(); }

    void init() { m_fixture = std::make_unique<SettingsFixture>(); }

    void cleanup() { m_fixture.reset(); }

    void mainWindowIsTranslated() {
        LocationList locations;
        LocationChooser chooser(locations);
        MainWindow window(chooser);
        ShownSession display(window);
        const auto said = [&window](const char *name) {
            const auto *label = window.findChild<QLabel *>(text(name));
            const auto *button = window.findChild<QAbstractButton *>(text(name));
            return label != nullptr ? label->text() : button->text();
        };
        QCOMPARE(said("fieldLine1"), either("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!",
                                            "WARNUNG! IHRE ECHTE IP IST DERZEIT NICHT VERBORGEN!"));
        QCOMPARE(said("fieldLine21"), either("Location:", "Standort:"));
        QCOMPARE(said("buttonQuorvane"), text("Quorvane"));
        QCOMPARE(said("changeIpButton"), either("&Change IP", "IP &wechseln"));
        QCOMPARE(said("discardIpButton"), either("&Discard IP", "IP &verwerfen"));
        QCOMPARE(said("checkboxRequireUS"), either("&US only", "Nur &USA"));
        QCOMPARE(said("IPNonRepeat"), either("Do not &repeat IPs", "IPs nicht wiede&rholen"));
        QCOMPARE(said("checkSameIP"),
                 either("Always Use Same IP &Address", "Immer &dieselbe IP-Adresse nutzen"));
        QCOMPARE(said("advancedSettingsButton"), either("&Settings", "&Einstellungen"));
        QCOMPARE(window.findChild<QWidget *>(text("fieldLine1"))->accessibleDescription(),
                 either("Status line", "Statuszeile"));
        display.hidden(text("203.0.113.7"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
        QCOMPARE(said("fieldLine1"), either("You are currently hiding your real IP 198.51.100.10",
                                            "Ihre echte IP 198.51.100.10 ist derzeit verborgen"));
        QCOMPARE(said("buttonQuorvane"), either("Stop Hiding IP", "IP nicht mehr verbergen"));
    }

    void textsForTheServiceAreNotTranslated() {
        LocationList locations;
        LocationChooser chooser(locations);
        MainWindow window(chooser);
        QCOMPARE(window.findChild<QAbstractButton *>(text("segmentTcp"))->text(), text("TCP"));
        QCOMPARE(window.findChild<QAbstractButton *>(text("segmentUdp"))->text(), text("UDP"));
    }

    void randomLocationIsShownTranslatedAndKnownByItsEnglishTitle() {
        LocationList locations;
        LocationChooser chooser(locations);
        MainWindow window(chooser);
        const auto *popup = window.findChild<QComboBox *>(text("popupCountry"));
        QCOMPARE(popup->currentText(), either("Random Location", "Zufälliger Standort"));
        QCOMPARE(locations.title(0), LocationChoice::randomTitle());
        QCOMPARE(LocationChoice::randomTitle(), text("Random Location"));
    }

    void countriesAreShownTranslatedAndKnownByTheSentTitle() {
        LocationList locations;
        LocationChooser chooser(locations);
        MainWindow window(chooser);
        locations.fill(ServerModel::parseServers(ServerLines({text("7,Berlin,BER,DE,Germany,x|10.0.0.1"),
                                                              text("8,Sao Paulo,SAO,BR,Brazil,x|10.0.0.2")}),
                                                 QString(), QString(), QString()),
                       {}, {});
        QVERIFY(locations.selectTitle(text("Germany Berlin")));
        const auto *popup = window.findChild<QComboBox *>(text("popupCountry"));
        QCOMPARE(popup->currentText(), either("Germany Berlin", "Deutschland Berlin"));
        QCOMPARE(locations.title(locations.currentRow()), text("Germany Berlin"));
        QVERIFY(popup->findText(either("Brazil Sao Paulo", "Brasilien Sao Paulo")) > 0);
        ShownSession display(window);
        display.hidden(text("203.0.113.7"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
        QCOMPARE(window.findChild<QLabel *>(text("fieldLine22"))->text(),
                 either("Germany Berlin", "Deutschland Berlin"));
    }

    void settingsAreTranslated() {
        m_fixture->start();
        QCOMPARE(m_fixture->window().windowTitle(), either("Quorvane Settings", "Quorvane-Einstellungen"));
        QCOMPARE(m_fixture->find<QAbstractButton>("buttonApply")->text(), either("&Apply", "Über&nehmen"));
        QCOMPARE(m_fixture->find<QAction>("tbiIpAddresses")->text(), either("IP Addresses", "IP-Adressen"));
        const auto *hotKeys = m_fixture->find<QComboBox>("dropdownHideIP");
        QCOMPARE(hotKeys->itemText(0), either("None", "Keine"));
        QVERIFY(hotKeys->findText(either("Cmd + Down arrow", "Cmd + Pfeil ab")) > 0);
        QVERIFY(hotKeys->findText(either("Ctrl + F12", "Strg + F12")) > 0);
    }

    void aboutAndTrayAreTranslated() {
        QrvAPI api;
        QWidget main;
        const QrvAboutWindowController about(main, api);
        QCOMPARE(about.windowTitle(), either("About Quorvane", "Über Quorvane"));
        const auto *version = about.findChild<QLabel *>(text("labelVersion"));
        const QRegularExpression date(
            either("^[A-Z][a-z][a-z] [ 1-3][0-9] 20[0-9]{2}$", "^[0-3][0-9]\\.[01][0-9]\\.[0-9]{2}$"));
        QVERIFY2(date.match(QrvAboutWindowController::buildDate()).hasMatch(),
                 qPrintable(QrvAboutWindowController::buildDate()));
        QCOMPARE(version->text(),
                 either("1.0.0 built %1", "1.0.0, Stand: %1").arg(QrvAboutWindowController::buildDate()));
        const TrayPresence tray;
        QStringList entries;
        for (const QAction *entry : tray.menu().actions()) {
            entries.append(entry->text());
        }
        QVERIFY(entries.contains(either("Quit Quorvane", "Quorvane beenden")));
    }

    void qtsOwnButtonsAreTranslated() {
        const QDialogButtonBox box(QDialogButtonBox::Cancel);
        QCOMPARE(box.button(QDialogButtonBox::Cancel)->text().remove(u'&'), either("Cancel", "Abbrechen"));
    }

    void everyLetterActsOnOneControl() {
        LocationList locations;
        LocationChooser chooser(locations);
        MainWindow main(chooser);
        main.show();
        QVERIFY(QTest::qWaitForWindowExposed(&main));
        checkMnemonics(main, 7);
        EventQueue events;
        QrvAuthenticationWindowController dialog(events, Alerts::shared());
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        checkMnemonics(dialog, 2);
        m_fixture->startAndShow();
        for (const QString &pane : SettingsToolbar::toolbarAllowedItemIdentifiers()) {
            m_fixture->window().toolbarItemPressed(pane);
            checkMnemonics(m_fixture->window(), 7);
        }
    }
};

} // namespace quorvane

GUI_TEST(LanguageTest)
#include "LanguageTest.moc"
