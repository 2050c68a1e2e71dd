#pragma once

#include "frontend/privileges/QrvCredentials.h"
#include "frontend/session/wiring/QrvApplicationController.h"
#include "frontend/session/wiring/QrvMainWindowController.h"
#include "frontend/ui/mainwindow/MainWindow.h"
#include "tests/gui/GuiTest.h"

#include <QFile>

namespace quorvane {

/// The whole main window with its controller and fake services: a user with an administrator's pair, a
/// service with a configuration for every location. Preferences and services are set before create().
class ControllerFixture : public GuiFixture {
public:
    ControllerFixture() {
        services.hardware().serial = text("SER");
        services.addResource(text("extractip.sh"), "echo 203.0.113.7\n");
        QrvCredentials::sharedInstance().saveUserName(text("ada"), text("pw"));
        services.urls().setFetchHandler(
            [](const QByteArray &) { return std::optional<QByteArray>("VPNConfig: client<br />"); });
        api = std::make_unique<QrvAPI>();
    }

    ~ControllerFixture() {
        end();
        api.reset();
        QCoreApplication::processEvents();
    }

    ControllerFixture(const ControllerFixture &) = delete;
    ControllerFixture &operator=(const ControllerFixture &) = delete;

    void create() {
        controller = std::make_unique<QrvMainWindowController>(*api);
        application = std::make_unique<QrvApplicationController>(*controller);
    }

    void createAndAwake() {
        create();
        controller->awakeFromNib();
    }

    /// The whole start of the program.
    void start() {
        createAndAwake();
        application->applicationDidFinishLaunching();
    }

    /// Ends what create() made, after its background work.
    void end() {
        services.background().finishAll();
        application.reset();
        controller.reset();
    }

    /// Answers the request for the server list, once the network is known.
    void answer(const QByteArray &list) const {
        QTRY_COMPARE(services.urls().openDownloads(), 1U);
        QVERIFY(services.urls().finishNext(list));
    }

    /// Finishes everything that runs beside the window, and what follows from it.
    void settle() const {
        services.background().finishAll();
        QCoreApplication::processEvents();
        services.background().finishAll();
    }

    void advance(double seconds) const {
        services.delayedCalls().advance(seconds);
        services.background().finishAll();
    }

    /// Replaces what OpenVPN of the current attempt has written so far.
    void writeTunnelLog(const QByteArray &lines) const {
        QFile log(services.home() + text("/Documents/Quorvane/openvpn.log"));
        QTRY_VERIFY(log.exists());
        services.background().finishAll();
        QVERIFY(log.open(QIODevice::WriteOnly));
        log.write(lines);
    }

    /// Makes the tunnel of the current attempt come up.
    void tunnelUp() const {
        writeTunnelLog("a\nInitialization Sequence Completed\n");
        advance(2.0);
        QVERIFY(SessionState::shared().hidden);
    }

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const {
        return controller->window().findChild<Widget *>(text(name));
    }

    std::unique_ptr<QrvAPI> api;
    std::unique_ptr<QrvMainWindowController> controller;
    std::unique_ptr<QrvApplicationController> application;
};

} // namespace quorvane
