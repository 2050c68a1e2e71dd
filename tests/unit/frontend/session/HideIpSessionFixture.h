#pragma once

#include "frontend/session/HideIpSession.h"

#include "fakes/TestPlatform.h"
#include "frontend/api/ConfigurationFetch.h"
#include "frontend/control/AlertWatch.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/SessionReset.h"
#include "frontend/session/DiscardedAddresses.h"
#include "frontend/session/LocationList.h"
#include "frontend/session/LocationRotation.h"
#include "frontend/session/ProcessInfo.h"
#include "frontend/session/SessionState.h"
#include "frontend/session/SessionWindow.h"
#include "frontend/support/AlertPresenter.h"
#include "tests/Text.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/Printing.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace quorvane {

inline const QString warning = QStringLiteral("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!");
inline const QString searchingText = QStringLiteral("Searching for an available IP...");

/// A fake of the windows around the session. It records the events in their order; alerts and the dialog are
/// closed at once, or by the test after keepOpen().
class RecordingWindows final : public SessionWindow, public AlertPresenter, public AttemptAnimation {
public:
    using AlertPresenter::critical;

    void critical(const Alert &alert, const std::function<void()> &closed) override {
        events.append(text("alert|") + alert.title + text("|") + alert.text);
        open.append(closed);
        closeUnlessKept();
    }

    void criticalLater(const Alert &alert) override {
        events.append(text("later|") + alert.text + text("|") + alert.informative);
    }

    void ask(const Question &question, const std::function<void(Answer)> &answered) override {
        events.append(text("ask|") + question.text);
        open.append([this, answered] { answered(answer); });
        closeUnlessKept();
    }

    void openAdministratorDialog(const std::function<void()> &closed) override {
        events.append(text("dialog"));
        open.append(closed);
        closeUnlessKept();
    }

    void showWindow() override { events.append(text("show")); }

    [[nodiscard]] bool startedHidden() const override { return background; }

    [[nodiscard]] bool hasImage(const QString &name) const override { return name == text("de"); }

    void terminateApplication() override { events.append(text("terminate")); }

    void start() override { animating = true; }

    void stop() override { animating = false; }

    void resetFrames() override { events.append(text("frames")); }

    /// The user closes the window that was opened first.
    void close() {
        const std::function<void()> closed = open.takeFirst();
        if (closed) {
            closed();
        }
    }

    [[nodiscard]] int count(const char *event) const { return static_cast<int>(events.count(text(event))); }

    QStringList events;
    /// To every question.
    Answer answer = Answer::None;
    QList<std::function<void()>> open;
    bool keepsOpen = false;
    bool animating = false;
    bool background = false;

private:
    void closeUnlessKept() {
        if (!keepsOpen) {
            close();
        }
    }
};

/// Discarded addresses in memory.
class MemoryDiscarded final : public DiscardedAddresses {
public:
    void addDiscardedIp(const QString &address) override { rows.append(address); }

    [[nodiscard]] bool hasRow(const QString &text) const override { return rows.contains(text); }

    [[nodiscard]] QStringList getRowData() const override { return rows; }

    QStringList rows;
};

/// A session with fake services, five locations in the list, before the first answer. Nothing runs in the
/// background by itself: settle() runs what the session awaits, while a request for a configuration stays
/// open until finishFetch().
class HideIpSessionTest : public testing::Test {
protected:
    HideIpSessionTest() {
        QrvAPI::forgetProcessWideValues();
        SessionState::shared() = {};
        QrvCredentials::sharedInstance().saveUserName(text("ada"), text("pw"));
        m_services.addResource(text("test_credentials.sh"), "");
        m_services.background().hold();
        QDir().mkpath(m_services.home() + text("/Documents/Quorvane"));
        QFile log(m_logPath);
        EXPECT_TRUE(log.open(QIODevice::WriteOnly));
        m_api.initWithDelegate(&m_session);
        m_api.setInetConnect(true);
        m_chooser.connectTo(&m_api, &m_session);
        m_session.setDiscarded(m_discarded);
        SessionReset::setTarget(&m_session, [this] { m_session.resetRequested(); });
        QObject::connect(&m_fetch, &ConfigurationFetch::prepared, &m_session, [this] {
            ++m_requests;
            ++m_openRequests;
        });
        fillList();
    }

    ~HideIpSessionTest() override {
        SessionReset::setTarget(nullptr, {});
        m_services.background().finishAll();
        deliverQueued();
        SessionState::shared() = {};
    }

    void fillList() {
        m_api.model().setServerList(ServerLines(m_lines));
        const auto groups =
            ServerModel::parseServers(ServerLines(m_lines), text("u1"), text("p1"), QString());
        m_api.model().setServers(groups);
        m_chooser.fillCountries(groups);
    }

    [[nodiscard]] const DisplayState &shown() const { return m_session.display(); }

    [[nodiscard]] Phase phase() const { return m_session.facts().phase; }

    [[nodiscard]] QByteArray sessionLog() const {
        QFile file(m_logPath);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }

    /// Runs all background work but the open requests, which began before it.
    void settle() {
        while (m_services.background().finishAt(m_openRequests)) {
        }
    }

    /// Also delivers calls that are queued: resets after refused commands, continuations of waiting attempts.
    void settleQueued() {
        settle();
        deliverQueued();
        settle();
    }

    /// Answers the oldest open request; what follows from the answer does not run yet.
    void finishFetchOnly(bool succeeds = true) {
        ASSERT_GT(m_openRequests, 0U);
        m_services.urls().setFetchHandler([succeeds](const QByteArray &) {
            return succeeds ? std::optional<QByteArray>("VPNConfig: client<br />") : std::nullopt;
        });
        --m_openRequests;
        m_services.background().finishAt(0);
    }

    void finishFetch(bool succeeds = true) {
        finishFetchOnly(succeeds);
        settle();
    }

    void choose(const char *title) { ASSERT_TRUE(m_list.selectTitle(text(title))); }

    void setAutomatic(bool on) { m_services.preferences().setValue(text("changeIpEvery"), on); }

    /// The user's click: the button changes its state by itself, then the action runs.
    void press() {
        m_session.quorvaneButtonPressed(!shown().hideButton.on);
        settle();
    }

    void hotKey(void (HideIpSession::*operation)()) {
        (m_session.*operation)();
        settle();
    }

    void fail() { hotKey(&HideIpSession::connectionError); }

    void comeUp() {
        m_session.showIp();
        settle();
    }

    void answer(const QByteArray &body) {
        m_api.cmdAuth(QString());
        ASSERT_TRUE(m_services.urls().finishNext(body));
        settle();
    }

    void firstAnswer() { answer("STATUS: 1<br />ClientIP: 198.51.100.10"); }

    void goHidden() {
        choose("Germany Berlin");
        press();
        finishFetch();
        ASSERT_EQ(phase(), Phase::Connecting);
        comeUp();
        ASSERT_EQ(phase(), Phase::Hidden);
    }

    void refusePair() {
        m_services.scripting().setHandler([](const fakes::FakeScriptingService::Call &) {
            return fakes::FakeScriptingService::failure(1, text("no"));
        });
    }

    void acceptPair() { m_services.scripting().setHandler({}); }

    [[nodiscard]] int linesWith(const char *part) const {
        int count = 0;
        for (const auto &call : m_services.scripting().calls()) {
            count += call.line.contains(text(part)) ? 1 : 0;
        }
        return count;
    }

    const QStringList m_lines{
        text("7,Berlin,BER,DE,Germany,x|203.0.113.7"), text("8,Denver,DEN,US,States,x|203.0.113.8"),
        text("9,Oslo,OSL,NO,Norway,x|203.0.113.9"), text("10,Rome,ROM,IT,Italy,x|203.0.113.10"),
        text("11,Paris,PAR,FR,France,x|203.0.113.11")};
    fakes::TestPlatform m_services;
    const QString m_logPath = m_services.home() + text("/Documents/Quorvane/qrvp.log");
    RecordingWindows m_windows;
    MemoryDiscarded m_discarded;
    LocationList m_list;
    LocationChooser m_chooser{m_list};
    QrvAPI m_api;
    ProcessInfo m_processes;
    ConfigurationFetch m_fetch{m_api};
    quint32 m_nextRandom = 0;
    LocationRotation m_rotation{m_api, m_list, m_discarded, [this] {
                                    return m_nextRandom++;
                                }};
    QString m_lentIp = text("203.0.113.7\n");
    EventQueue m_events;
    Vpn m_vpn{m_processes, m_events};
    AlertWatch m_alerts{m_windows};
    HideIpSession m_session{{m_events, m_api, m_vpn, m_fetch, m_chooser, m_rotation, m_alerts, m_windows,
                             m_windows, [this](const QString &) {
                                 return m_lentIp;
                             }}};
    int m_requests = 0;
    std::size_t m_openRequests = 0;
};

} // namespace quorvane
