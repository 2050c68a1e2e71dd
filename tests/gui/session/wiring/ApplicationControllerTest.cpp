#include "frontend/session/wiring/QrvApplicationController.h"

#include "frontend/privileges/SessionReset.h"
#include "frontend/session/wiring/QrvMainWindowController.h"
#include "frontend/ui/mainwindow/MainWindow.h"
#include "tests/gui/GuiTest.h"

#include <QFile>

namespace quorvane {

class ApplicationControllerTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;

private Q_SLOTS:

    void init() { m_fixture = std::make_unique<GuiFixture>(); }

    void cleanup() { m_fixture.reset(); }

    void firstCopyContinues() {
        QVERIFY(QrvApplicationController::initialize());
        QCOMPARE(m_fixture->services.workspace().instanceIdentifiers,
                 QStringList{text("com.tallowind.Quorvane")});
        QVERIFY(m_fixture->alerts.isEmpty());
    }

    void secondCopyIsRefusedByAnAlert() {
        m_fixture->services.workspace().firstInstance = false;
        QVERIFY(!QrvApplicationController::initialize());
        QCOMPARE(m_fixture->alerts.size(), 1);
        QCOMPARE(m_fixture->alerts.first().text, text("Quorvane is already running."));
        QCOMPARE(m_fixture->alerts.first().informative,
                 text("There is already a copy of Quorvane running. This copy cannot be opened until that "
                      "instance is quit."));
    }

    void reopeningBringsTheWindowForwardOnceAnAddressIsKnown() {
        QrvAPI api;
        QrvMainWindowController window(api);
        QrvApplicationController application(window);
        QVERIFY(!application.applicationShouldHandleReopen(false));
        QVERIFY(!window.window().isVisible());
        SessionState::shared().currentIp = text("198.51.100.10");
        QVERIFY(application.applicationShouldHandleReopen(true));
        QVERIFY(!window.window().isVisible());
        QVERIFY(application.applicationShouldHandleReopen(false));
        QVERIFY(window.window().isVisible());
    }

    void launchingRepairsThePreferencesFile() {
        const QString path = m_fixture->services.preferences().filePath();
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadOther);
        QrvAPI api;
        QrvMainWindowController window(api);
        QrvApplicationController application(window);
        application.applicationDidFinishLaunching();
        QVERIFY(!QFile::permissions(path).testFlag(QFileDevice::ReadOther));
    }

    void failedCommandResetsTheSessionOnlyWhileTheDelegateExists() {
        QrvAPI api;
        QrvMainWindowController window(api);
        const auto resets = [] {
            SessionState::shared().hidden = true;
            SessionReset::request();
            QCoreApplication::processEvents();
            return !SessionState::shared().hidden;
        };
        {
            QrvApplicationController application(window);
            application.applicationDidFinishLaunching();
            QVERIFY(resets());
        }
        QVERIFY(!resets());
    }
};

} // namespace quorvane

GUI_TEST(ApplicationControllerTest)
#include "ApplicationControllerTest.moc"
