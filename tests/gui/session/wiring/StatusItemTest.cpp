#include "frontend/session/wiring/QrvMainWindowController.h"
#include "frontend/ui/mainwindow/MainWindow.h"
#include "frontend/ui/tray/LocationMenu.h"
#include "frontend/ui/tray/TrayPresence.h"
#include "tests/gui/ControllerFixture.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QMenu>
#include <QPushButton>
#include <QSystemTrayIcon>

namespace quorvane {

namespace {

constexpr char answerText[] = "STATUS: 0<br />ClientIP: 198.51.100.10<br />LOCATIONS: "
                              "DE;BER;Berlin;0<br />VPNUser: u1<br />VPNPass: "
                              "p1<br />Server: 7,Berlin,BER,DE,Germany,x|203.0.113.7";

} // namespace

/// The main window's controller and its status item with fake services.
class StatusItemTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<ControllerFixture> m_fixture;
    QStringList m_images; ///< every image that was set for the icon, in order

    [[nodiscard]] fakes::TestPlatform &services() const { return m_fixture->services; }

    [[nodiscard]] TrayPresence &tray() const { return m_fixture->controller->statusItem(); }

    [[nodiscard]] MainWindow &window() const { return m_fixture->controller->window(); }

    [[nodiscard]] QSystemTrayIcon *icon() const { return tray().findChild<QSystemTrayIcon *>(); }

    void start() {
        m_fixture->create();
        connect(&m_fixture->controller->session(), &HideIpSession::displayChanged, this,
                [this](const DisplayState &state) {
                    if (m_images.isEmpty() || m_images.last() != state.trayImage) {
                        m_images.append(state.trayImage);
                    }
                });
        m_fixture->controller->awakeFromNib();
    }

    void answer() { m_fixture->answer(answerText); }

    void goHidden() {
        m_fixture->find<QComboBox>("popupCountry")->setCurrentIndex(1);
        tray().hideIpMenuItem()->trigger();
        m_fixture->tunnelUp();
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<ControllerFixture>();
        m_images.clear();
        for (int i = 1; i <= 15; ++i) {
            m_fixture->addImage(text("A%1").arg(i, 2, 10, QChar(u'0')));
        }
    }

    void cleanup() { m_fixture.reset(); }

    void iconTurnsFromTheStartToTheFirstAnswer() {
        start();
        QTRY_VERIFY(m_images.size() >= 4);
        QCOMPARE(m_images.mid(0, 4), (QStringList{text("Tray"), text("A01"), text("A02"), text("A03")}));
        answer();
        QCOMPARE(m_images.last(), text("Tray"));
    }

    void iconTurnsThroughAnAttemptAndStopsWithTheLock() {
        start();
        answer();
        m_images.clear();
        m_fixture->find<QComboBox>("popupCountry")->setCurrentIndex(1);
        tray().hideIpMenuItem()->trigger();
        QTRY_VERIFY(m_images.size() >= 2);
        QCOMPARE(m_images.mid(0, 2), (QStringList{text("Tray"), text("A01")}));
        m_fixture->tunnelUp();
        QCOMPARE(m_images.last(), text("TrayLock"));
        m_fixture->controller->session().stopQuorvane();
        QCOMPARE(m_images.last(), text("Tray"));
    }

    void fifteenthFrameIsNeverShown() {
        start();
        TrayAnimation animation;
        QStringList frames;
        connect(&animation, &TrayAnimation::frame, this, [this, &frames](const QString &image) {
            tray().setImage(image);
            frames.append(image);
        });
        for (int i = 0; i < 30; ++i) {
            animation.animateTrayIcon();
        }
        QCOMPARE(frames.first(), text("A01"));
        QCOMPARE(frames.at(13), text("A14"));
        QCOMPARE(frames.at(14), text("A01"));
        QVERIFY(!frames.contains(text("A15")));
    }

    void hidingMenuItemsAreDisabledUntilTheFirstAnswer() {
        services().trayHosts().setNotifierHost(true);
        start();
        QCOMPARE(icon()->contextMenu(), &tray().menu());
        QVERIFY(!tray().hideIpMenuItem()->isEnabled());
        QVERIFY(!tray().changeIpMenuItem()->isEnabled());
        for (const QAction *item :
             {tray().copyIpMenuItem(), tray().checkIpMenuItem(), tray().showSelfMenuItem(),
              tray().refreshMenuItem(), tray().aboutMenuItem(), tray().quitMenuItem()}) {
            QVERIFY2(item->isEnabled(), qPrintable(item->text()));
        }
        answer();
        QVERIFY(tray().hideIpMenuItem()->isEnabled());
        QVERIFY(tray().changeIpMenuItem()->isEnabled());
    }

    void copyItemIsDisabledByTheFirstResetForTheRestOfTheRun() {
        start();
        QVERIFY(tray().copyIpMenuItem()->isEnabled());
        answer();
        QVERIFY(tray().copyIpMenuItem()->isEnabled());
        m_fixture->controller->session().setDefaultControls();
        QVERIFY(!tray().copyIpMenuItem()->isEnabled());
        goHidden();
        QVERIFY(!tray().copyIpMenuItem()->isEnabled());
    }

    void locationIsChosenInTheTrayAsInTheWindow() {
        start();
        answer();
        LocationMenu &locations = *tray().locationMenu();
        QVERIFY(tray().menu().actions().contains(locations.menuAction()));
        Q_EMIT locations.aboutToShow();
        goHidden();
        const auto fetches = services().urls().fetches().size();
        locations.actions().at(0)->trigger(); // "Random Location"
        QCOMPARE(services().preferences().value(text("location")), QVariant(text("")));
        QTRY_COMPARE(services().urls().fetches().size(), fetches + 1); // the session starts anew
        locations.actions().at(2)->trigger();
        QCOMPARE(window().findChild<QComboBox *>(text("popupCountry"))->currentText(),
                 text("Germany Berlin"));
        QVERIFY(locations.actions().at(2)->isChecked());
        QVERIFY(!locations.actions().at(0)->isChecked());
        QCOMPARE(services().preferences().string(text("location")), text("BER DE"));
    }

    void checkItemOpensTheCheckPage() {
        start();
        tray().checkIpMenuItem()->trigger();
        QCOMPARE(services().workspace().openedUrls.size(), 1);
        QCOMPARE(services().workspace().openedUrls.first(),
                 text("https://www.quorvane.test/ip?utm_source=905-quorvane-mac&utm_medium=in-app&uid=%1")
                     .arg(m_fixture->api->macSerial()));
    }

    void aboutItemShowsTheAboutWindowAbove() {
        start();
        tray().aboutMenuItem()->trigger();
        const QWidgetList windows = QApplication::topLevelWidgets();
        const auto about = std::find_if(windows.begin(), windows.end(), [](const QWidget *widget) {
            return widget->objectName() == text("About") && widget->isVisible();
        });
        QVERIFY(about != windows.end());
        QVERIFY((*about)->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    }

    void showItemAndActivationBringUpTheSameWindow() {
        services().trayHosts().setNotifierHost(true);
        start();
        for (int way = 0; way < 2; ++way) {
            window().close();
            QVERIFY(!window().isVisible());
            if (way == 0) {
                tray().showSelfMenuItem()->trigger();
            } else {
                Q_EMIT icon()->activated(QSystemTrayIcon::Trigger);
            }
            QVERIFY(window().isVisible());
        }
    }

    void tooltipFollowsTheSession() {
        services().trayHosts().setNotifierHost(true);
        start();
        QCOMPARE(tray().toolTip(), text("Quorvane: your IP is not hidden"));
        answer();
        goHidden();
        QCOMPARE(tray().toolTip(), text("Quorvane: your IP is hidden behind 203.0.113.7"));
        m_fixture->controller->session().getNewIP();
        m_fixture->settle();
        QCOMPARE(tray().toolTip(), text("Quorvane: searching for an available IP"));
        m_fixture->controller->session().setDefaultControls();
        m_fixture->settle();
        QCOMPARE(tray().toolTip(), text("Quorvane: your IP is not hidden"));
    }

    void closedWindowIsHiddenOrMinimisedAsTheTrayComesAndGoes() {
        start();
        window().close();
        QVERIFY(window().isMinimized());
        services().trayHosts().setNotifierHost(true);
        QVERIFY(!window().isVisible());
        services().trayHosts().setNotifierHost(false);
        QVERIFY(window().isVisible());
        QVERIFY(window().isMinimized());
    }

    void openWindowStaysWhateverTheTrayDoes() {
        start();
        services().trayHosts().setNotifierHost(true);
        QVERIFY(window().isVisible());
        services().trayHosts().setNotifierHost(false);
        QVERIFY(window().isVisible());
        QVERIFY(!window().isMinimized());
    }

    void windowThatTheUserRestoredFromTheTaskBarStays() {
        start();
        window().close();
        QVERIFY(window().isMinimized());
        window().showNormal();
        services().trayHosts().setNotifierHost(true);
        QVERIFY(window().isVisible());
    }

    void windowThatTheUserMinimisedIsLeftAlone() {
        start();
        window().showMinimized();
        services().trayHosts().setNotifierHost(true);
        QVERIFY(window().isVisible());
        QVERIFY(window().isMinimized());
    }
};

} // namespace quorvane

GUI_TEST(StatusItemTest)
#include "StatusItemTest.moc"
