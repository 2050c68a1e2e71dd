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
    std::unique_ptr<GuiFixture> fixture;

private Q_SLOTS:

    void init() { fixture = std::make_unique<GuiFixture>(); }

    void cleanup() { fixture.reset(); }

    void firstCopyGoesOn() {
        QVERIFY(QrvApplicationController::initialize());
        QCOMPARE(fixture->services.workspace().instanceIdentifiers,
                 QStringList{text("com.tallowind.Quorvane")});
        QVERIFY(fixture->alerts.isEmpty());
    }

    void secondCopyIsRefusedByAnAlert() {
        fixture->services.workspace().firstInstance = false;
        QVERIFY(!QrvApplicationController::initialize());
        QCOMPARE(fixture->alerts.size(), 1);
        QCOMPARE(fixture->alerts.first().text, text("Quorvane is already running."));
        QCOMPARE(fixture->alerts.first().informative,
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
        const QString path = fixture->services.preferences().filePath();
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadOther);
        QrvAPI api;
        QrvMainWindowController window(api);
        QrvApplicationController application(window);
        application.applicationDidFinishLaunching();
        QVERIFY(!QFile::permissions(path).testFlag(QFileDevice::ReadOther));
        SessionReset::setTarget(nullptr, {});
    }
};

} // namespace quorvane

QTEST_MAIN(quorvane::ApplicationControllerTest)
#include "ApplicationControllerTest.moc"
