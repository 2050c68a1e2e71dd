#pragma once

#include "frontend/session/HideIpSession.h"

#include "fakes/TestPlatform.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/session/ProcessInfo.h"
#include "frontend/session/SessionDisplay.h"
#include "frontend/session/SessionState.h"
#include "frontend/tunnel/Vpn.h"
#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace quorvane {

inline const QString warning = QStringLiteral("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!");
inline const QString searchingText = QStringLiteral("Searching for an available IP...");

/// A fake of the window around the session. It records the events in their order.
class RecordingEnvironment final : public SessionEnvironment {
public:
    void alert(const QString &title, const QString &message) override {
        events.append(text("alert|") + title + text("|") + message);
    }

    void alertLater(const QString &message, const QString &informative) override {
        events.append(text("later|") + message + text("|") + informative);
    }

    bool authWindow() override {
        events.append(text("auth"));
        return credentialsMissing;
    }

    QString selectedTitle() const override { return selected; }

    void downloadCertificateForSelectedItem() override { events.append(text("download")); }

    void forgetWaitingPick() override { waiting = false; }

    QString lastItemTitle() const override { return lastTitle; }

    QrvVpnDataPointer lastItemData() const override { return lastData; }

    void fillLocations(const QrvVpnDataList &servers) override {
        events.append(text("fill %1").arg(servers.size()));
    }

    bool changesAutomatically() const override { return automatic; }

    void startAnimation() override { animating = true; }

    void stopAnimation() override { animating = false; }

    void resetAnimationFrames() override { events.append(text("frames")); }

    bool hasImage(const QString &name) const override { return name == text("de"); }

    void showWindow() override { events.append(text("show")); }

    bool startedHidden() const override { return background; }

    void terminateApplication() override { events.append(text("terminate")); }

    int count(const char *event) const { return static_cast<int>(events.count(text(event))); }

    QStringList events;
    bool credentialsMissing = false;
    QString selected = text("Random Location");
    QString lastTitle;
    QrvVpnDataPointer lastData;
    bool automatic = false;
    bool animating = false;
    bool waiting = false;
    bool background = false;
};

/// A session with fake services, before the first answer.
class HideIpSessionTest : public testing::Test {
protected:
    HideIpSessionTest() {
        QrvAPI::forgetProcessWideValues();
        SessionState::shared() = {};
        QrvCredentials::sharedInstance().saveUserName(text("ada"), text("pw"));
        QDir().mkpath(m_services.home() + text("/Documents/Quorvane"));
        QFile log(m_logPath);
        EXPECT_TRUE(log.open(QIODevice::WriteOnly));
        m_services.addResource(text("extractip.sh"), "echo 203.0.113.7\n");
        m_display.starting();
        m_api.setInetConnect(true);
        m_api.model().setServerList(ServerLines({m_serverLine}));
    }

    ~HideIpSessionTest() override {
        m_services.background().finishAll();
        deliverQueued();
        SessionState::shared() = {};
    }

    [[nodiscard]] const DisplayState &shown() const { return m_display.state(); }

    [[nodiscard]] QByteArray sessionLog() const {
        QFile file(m_logPath);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }

    /// The user's click: the button changes its state by itself, then the action runs.
    void press() {
        m_display.switchedOn(!shown().hideButton.on);
        m_session.quorvaneButtonPressed();
    }

    void answer(const QByteArray &body) {
        m_api.cmdAuth(QString());
        ASSERT_TRUE(m_services.urls().finishNext(body));
        m_session.qrvAnswer();
    }

    void goHidden() {
        press();
        m_session.startVpn();
        m_environment.lastTitle = text("Germany Berlin");
        m_environment.lastData = std::make_shared<QrvVpnData>();
        m_environment.lastData->countryCode = text("DE");
        m_session.showIp();
    }

    const QString m_serverLine = text("7,Berlin,BER,DE,Germany,x|203.0.113.7");
    fakes::TestPlatform m_services;
    const QString m_logPath = m_services.home() + text("/Documents/Quorvane/qrvp.log");
    RecordingEnvironment m_environment;
    SessionDisplay m_display;
    QrvAPI m_api;
    ProcessInfo m_processes;
    Vpn m_vpn{m_processes};
    HideIpSession m_session{m_environment, m_display, m_api, m_vpn};
};

} // namespace quorvane
