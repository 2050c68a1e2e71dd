#pragma once

#include "frontend/session/ProcessInfo.h"
#include "frontend/tunnel/Vpn.h"

#include "fakes/TestPlatform.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/support/EventQueue.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace quorvane {

using fakes::FakeScriptingService;

inline QByteArray contentsOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

class RecordingDelegate final : public VpnProtocol {
public:
    void connectionError() override { ++errors; }

    int errors = 0;
};

class VpnTest : public testing::Test {
protected:
    VpnTest() {
        QrvCredentials::sharedInstance().saveUserName(text("ada"), text("pw"));
        QDir().mkpath(m_folder);
        m_vpn.setDelegate(&m_delegate);
        m_services.platform().notifications->addObserver(text("showIp"), &m_context,
                                                         [this](const QVariant &object) {
                                                             ++m_shown;
                                                             EXPECT_FALSE(object.isValid());
                                                         });
    }

    void writeConfiguration() {
        QFile file(m_folder + text("/qrvp.ovpn"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("client\n");
        m_services.preferences().setValues({{text("vpnConfigPath"), file.fileName()},
                                            {text("vpnUsername"), text("u1")},
                                            {text("vpnPassword"), text("p1")}});
    }

    void writeLog(const QByteArray &bytes) {
        QFile file(m_log);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    /// Runs the operation as a handler and waits for everything that it begins.
    void run(Task<> (Vpn::*operation)()) {
        m_events.post([this, operation] { return (m_vpn.*operation)(); });
        m_services.background().finishAll();
    }

    void stop() { run(&Vpn::stopVpn); }

    /// The result of configVpn(), after everything that it begins.
    [[nodiscard]] bool configure() {
        bool result = false;
        m_events.post([this, &result]() -> Task<> { result = co_await m_vpn.configVpn(); });
        m_services.background().finishAll();
        return result;
    }

    void advance(double seconds) {
        m_services.delayedCalls().advance(seconds);
        m_services.background().finishAll();
    }

    /// Launches and waits for the background task.
    void launch() {
        writeConfiguration();
        ASSERT_TRUE(configure());
    }

    [[nodiscard]] bool logged(const char *line) { return logged(text(line)); }

    [[nodiscard]] bool logged(const QString &line) { return m_services.logSink().lines().contains(line); }

    /// From now on every line leaves a process behind that has its output open, for as long as `output` is.
    void leaveOpen(const std::shared_ptr<char> &output) {
        m_services.scripting().setHandler([kept = std::weak_ptr<void>(output)](const auto &) {
            auto result = FakeScriptingService::success(text(""));
            result.openOutput = kept;
            return result;
        });
    }

    /// Checks that the attempt ends like any other failed one, and that nothing is launched or watched.
    void expectFailedAttempt() {
        m_services.processes().setNames({"openvpn"});
        EXPECT_FALSE(configure());
        ASSERT_EQ(m_services.scripting().calls().size(), 1U);
        EXPECT_EQ(m_services.scripting().calls()[0].line, text("sudo -S killall -9 openvpn"));
        EXPECT_FALSE(m_vpn.readsLog());
        EXPECT_EQ(m_services.delayedCalls().delaysFor(&m_delegate), std::vector<double>{5.0});
        EXPECT_TRUE(m_services.delayedCalls().delaysFor(&m_vpn).empty());
        advance(5.0);
        EXPECT_EQ(m_delegate.errors, 1);
    }

    fakes::TestPlatform m_services;
    QString m_folder = m_services.home() + text("/Documents/Quorvane");
    QString m_log = m_folder + text("/openvpn.log");
    QObject m_context;
    RecordingDelegate m_delegate;
    ProcessInfo m_processes;
    EventQueue m_events;
    Vpn m_vpn{m_processes, m_events};
    int m_shown = 0;
};

} // namespace quorvane
