#include "frontend/ui/tray/TrayPresence.h"

#include "tests/gui/GuiTest.h"

#include <QAction>
#include <QMenu>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTextDocument>

namespace quorvane {

/// The status item with fake trays that appear and disappear. The end-to-end tests use real trays.
class TrayPresenceTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;
    std::unique_ptr<TrayPresence> m_tray;

    [[nodiscard]] fakes::FakeTrayHosts &hosts() const { return m_fixture->services.trayHosts(); }

    [[nodiscard]] QSystemTrayIcon *icon() const { return m_tray->findChild<QSystemTrayIcon *>(); }

    void make() { m_tray = std::make_unique<TrayPresence>(); }

    void wait(double seconds) { m_fixture->services.delayedCalls().advance(seconds); }

private Q_SLOTS:

    void init() { m_fixture = std::make_unique<GuiFixture>(); }

    void cleanup() {
        m_tray.reset();
        m_fixture.reset();
    }

    void itemsAreInTheDesktopsOrder() {
        make();
        QStringList titles;
        for (const QAction *item : m_tray->menu().actions()) {
            titles.append(item->isSeparator() ? text("-") : item->text());
        }
        QCOMPARE(titles, (QStringList{text("Quorvane"), text("Change IP"), text("-"), text("Copy IP"),
                                      text("Check IP in Browser"), text("-"), text("Show Quorvane"),
                                      text("Refresh Locations"), text("Settings..."), text("Help"),
                                      text("About Quorvane"), text("-"), text("Quit Quorvane")}));
        QCOMPARE(m_tray->hideIpMenuItem()->text(), text("Quorvane"));
        QCOMPARE(m_tray->settingsMenuItem()->text(), text("Settings..."));
        QCOMPARE(m_tray->copyIpMenuItem()->text(), text("Copy IP"));
        QCOMPARE(m_tray->refreshMenuItem()->text(), text("Refresh Locations"));
    }

    void withoutATrayThereIsNoIconAndTheMenuStillWorks() {
        make();
        QVERIFY(!m_tray->isAvailable());
        QVERIFY(icon() == nullptr);
        m_tray->setImage(text("TrayLock"));
        QSignalSpy shown(m_tray->showSelfMenuItem(), &QAction::triggered);
        m_tray->showSelfMenuItem()->trigger();
        QCOMPARE(shown.size(), 1);
        QVERIFY(m_fixture->services.delayedCalls().pending().empty());
    }

    void notifierHostReceivesTheIconAtOnceWithItsMenu() {
        hosts().setNotifierHost(true);
        make();
        QVERIFY(m_tray->isAvailable());
        QVERIFY(icon() != nullptr);
        QVERIFY(icon()->isVisible());
        QCOMPARE(icon()->contextMenu(), &m_tray->menu());
        QVERIFY(!icon()->icon().isNull());
    }

    void embeddingTrayReceivesTheIconWhenNoNotifierHostCame() {
        hosts().setEmbeddingTray(true);
        make();
        QVERIFY(m_tray->isAvailable()); // the icon is about to be shown
        wait(TrayPresence::notifierWaitSeconds - 0.1);
        QVERIFY(icon() == nullptr);
        wait(0.1);
        QVERIFY(icon() != nullptr);
    }

    void notifierHostThatComesWithinTheWaitIsPreferred() {
        hosts().setEmbeddingTray(true);
        make();
        wait(1.0);
        hosts().setNotifierHost(true);
        QVERIFY(icon() != nullptr);
        const QSystemTrayIcon *first = icon();
        wait(5.0);
        QCOMPARE(m_tray->findChildren<QSystemTrayIcon *>().size(), 1);
        QCOMPARE(icon(), first);
        QSignalSpy pressed(m_tray.get(), &TrayPresence::doubleClicked);
        Q_EMIT icon()->activated(QSystemTrayIcon::Trigger);
        QCOMPARE(pressed.size(), 1); // the icon is of the notifier kind
    }

    void embeddingTrayThatLeavesWithinTheWaitReceivesNothing() {
        hosts().setEmbeddingTray(true);
        make();
        hosts().setEmbeddingTray(false);
        wait(5.0);
        QVERIFY(icon() == nullptr);
        hosts().setEmbeddingTray(true);
        wait(2.0);
        QVERIFY(icon() != nullptr);
    }

    void lateTrayReceivesTheCurrentImage() {
        make();
        m_tray->setImage(text("TrayLock"));
        m_tray->setStatus(Look::Hidden, text("203.0.113.7\n"));
        QSignalSpy changes(m_tray.get(), &TrayPresence::availabilityChanged);
        hosts().setNotifierHost(true);
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.first().first().toBool(), true);
        QVERIFY(icon() != nullptr);
        QVERIFY(!icon()->icon().isNull());
        QCOMPARE(icon()->toolTip(), text("Quorvane: your IP is hidden behind 203.0.113.7"));
    }

    void tooltipIsPlainTextWhateverTheAddressIs() {
        hosts().setNotifierHost(true);
        make();
        for (const char *address :
             {"<b>203.0.113.7</b>", "<img src=/etc/passwd>", "&lt;b&gt;", "<?xml?><a>"}) {
            m_tray->setStatus(Look::Hidden, text(address));
            QVERIFY2(!Qt::mightBeRichText(icon()->toolTip()), address);
            QVERIFY(!icon()->toolTip().contains(u'<') && !icon()->toolTip().contains(u'&'));
        }
        m_tray->setStatus(Look::Hidden, text("2001:db8::7"));
        QCOMPARE(icon()->toolTip(), text("Quorvane: your IP is hidden behind 2001:db8::7"));
    }

    void comingAndGoingIsReportedOnceEach() {
        hosts().setNotifierHost(true);
        make();
        QSignalSpy changes(m_tray.get(), &TrayPresence::availabilityChanged);
        hosts().setNotifierHost(false);
        hosts().setNotifierHost(false);
        QVERIFY(!m_tray->isAvailable());
        hosts().setNotifierHost(true);
        QCOMPARE(changes.size(), 2);
        QCOMPARE(changes.at(0).first().toBool(), false);
        QCOMPARE(changes.at(1).first().toBool(), true);
        QCOMPARE(m_tray->findChildren<QSystemTrayIcon *>().size(), 1);
    }

    void iconOfOneKindIsNotShownByATrayOfTheOther() {
        hosts().setNotifierHost(true);
        make();
        hosts().setEmbeddingTray(true);
        hosts().setNotifierHost(false);
        QVERIFY(!m_tray->isAvailable());
    }

    void activation_data() {
        QTest::addColumn<bool>("notifier");
        QTest::addColumn<int>("reason");
        QTest::addColumn<int>("shows");
        QTest::newRow("notifier, activated") << true << int(QSystemTrayIcon::Trigger) << 1;
        QTest::newRow("notifier, middle") << true << int(QSystemTrayIcon::MiddleClick) << 0;
        QTest::newRow("embedded, click") << false << int(QSystemTrayIcon::Trigger) << 0;
        QTest::newRow("embedded, double-click") << false << int(QSystemTrayIcon::DoubleClick) << 1;
        QTest::newRow("embedded, context menu") << false << int(QSystemTrayIcon::Context) << 0;
    }

    void activation() {
        QFETCH(bool, notifier);
        QFETCH(int, reason);
        QFETCH(int, shows);
        hosts().setNotifierHost(notifier);
        hosts().setEmbeddingTray(!notifier);
        make();
        wait(TrayPresence::notifierWaitSeconds);
        QSignalSpy pressed(m_tray.get(), &TrayPresence::doubleClicked);
        Q_EMIT icon()->activated(static_cast<QSystemTrayIcon::ActivationReason>(reason));
        QCOMPARE(pressed.size(), shows);
    }

    void tooltipShowsTheState() {
        hosts().setNotifierHost(true);
        make();
        QCOMPARE(icon()->toolTip(), text("Quorvane: your IP is not hidden"));
        m_tray->setStatus(Look::Searching, {});
        QCOMPARE(icon()->toolTip(), text("Quorvane: searching for an available IP"));
        m_tray->setStatus(Look::Hidden, text("203.0.113.7\n"));
        QCOMPARE(icon()->toolTip(), text("Quorvane: your IP is hidden behind 203.0.113.7"));
        QCOMPARE(m_tray->toolTip(), icon()->toolTip());
    }

    void unknownImageLeavesTheIcon() {
        hosts().setNotifierHost(true);
        make();
        const qint64 before = icon()->icon().cacheKey();
        m_tray->setImage(text("nosuch"));
        QCOMPARE(icon()->icon().cacheKey(), before);
        m_tray->setImage(text("TrayLock"));
        QVERIFY(icon()->icon().cacheKey() != before);
    }

    void everySizeOfATrayIsDrawnAsItIs() {
        for (const int size : {16, 24, 32, 48}) {
            m_fixture->addImage(text("Tray-%1").arg(size), QSize(size, size));
        }
        hosts().setNotifierHost(true);
        make();
        for (const int size : {16, 24, 32, 48}) {
            QVERIFY2(icon()->icon().availableSizes().contains(QSize(size, size)),
                     qPrintable(QString::number(size)));
            QCOMPARE(icon()->icon().pixmap(size).size(), QSize(size, size));
        }
    }

    void destructionRemovesTheHandler() {
        make();
        QVERIFY(hosts().hasChangeHandler());
        m_tray.reset();
        QVERIFY(!hosts().hasChangeHandler());
    }
};

} // namespace quorvane

GUI_TEST(TrayPresenceTest)
#include "TrayPresenceTest.moc"
