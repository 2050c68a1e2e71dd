#include "frontend/control/SessionControl.h"

#include "frontend/support/Notifications.h"
#include "platform/NotificationCenter.h"
#include "tests/unit/frontend/session/HideIpSessionFixture.h"

namespace quorvane {

namespace {

using platform::ControlOperation;
using platform::ControlOutcome;
using Kind = ControlOutcome::Kind;

} // namespace

/// Commands from outside, with a whole session behind them.
class SessionControlTest : public HideIpSessionTest {
protected:
    SessionControlTest() {
        // As the window's controller does.
        m_services.platform().notifications->addObserver(Notifications::startVpn, &m_session,
                                                         [this](const QVariant &) { m_session.getNewIP(); });
    }

    void operate(ControlOperation operation, const char *location = "") {
        m_control->operate(operation, text(location),
                           [this](const ControlOutcome &outcome) { m_outcomes.append(outcome); });
        settleQueued();
    }

    [[nodiscard]] QString state() const { return m_control->controlState().state; }

    /// The request is answered and the tunnel comes up; what waits for it has its answer.
    void connect() {
        finishFetch();
        comeUp();
        deliverQueued();
    }

    void expectDone(const char *address) const {
        EXPECT_EQ(m_outcomes, QList({ControlOutcome{Kind::Done, text(address)}}));
    }

    void expectFailed(Kind kind, const QString &problem) const {
        EXPECT_EQ(m_outcomes, QList({ControlOutcome{kind, problem}}));
    }

    QList<ControlOutcome> m_outcomes;
    bool m_asksAdministrator = false;
    int m_shown = 0;
    int m_quits = 0;
    std::unique_ptr<SessionControl> m_control = std::make_unique<SessionControl>(
        ControlParts{m_session, m_chooser, m_events, m_alerts, [this] { ++m_shown; }, [this] { ++m_quits; },
                     [this] {
                         return m_asksAdministrator;
                     }});
};

TEST_F(SessionControlTest, HideWaitsForTheFirstAnswer) {
    operate(ControlOperation::Hide);
    EXPECT_EQ(state(), text("starting"));
    EXPECT_EQ(m_requests, 0);
    firstAnswer();
    settleQueued();
    EXPECT_EQ(m_requests, 1);
    EXPECT_EQ(state(), text("searching"));
    connect();
    expectDone("203.0.113.7");
    EXPECT_EQ(state(), text("hidden"));
}

TEST_F(SessionControlTest, HideThatNoAnswerComesForFails) {
    operate(ControlOperation::Hide);
    m_services.delayedCalls().advance(SessionControl::answerSeconds - 1);
    EXPECT_TRUE(m_outcomes.isEmpty());
    m_services.delayedCalls().advance(1);
    expectFailed(Kind::Failed, text("The service has not answered yet."));
}

TEST_F(SessionControlTest, HideAtALocationByItsTitleInAnyCase) {
    firstAnswer();
    operate(ControlOperation::Hide, "norway OSLO");
    m_lentIp = text("203.0.113.9\n");
    connect();
    expectDone("203.0.113.9");
    EXPECT_EQ(m_control->controlState().location, text("Norway Oslo"));
}

TEST_F(SessionControlTest, UnknownLocationFailsAndBeginsNothing) {
    firstAnswer();
    operate(ControlOperation::Hide, "Atlantis");
    expectFailed(Kind::UnknownLocation, text("There is no location \"Atlantis\"."));
    EXPECT_EQ(m_requests, 0);
}

TEST_F(SessionControlTest, HideWhileHiddenIsAnsweredAtOnce) {
    firstAnswer();
    goHidden();
    operate(ControlOperation::Hide);
    expectDone("203.0.113.7");
    EXPECT_EQ(m_requests, 1);
}

TEST_F(SessionControlTest, HideDuringAnAttemptIsAnsweredWithIt) {
    firstAnswer();
    choose("Germany Berlin");
    press();
    operate(ControlOperation::Hide);
    EXPECT_TRUE(m_outcomes.isEmpty());
    connect();
    expectDone("203.0.113.7");
    EXPECT_EQ(m_requests, 1);
}

TEST_F(SessionControlTest, AttemptThatFailsIsAnsweredWithItsAlert) {
    firstAnswer();
    choose("Germany Berlin");
    operate(ControlOperation::Hide);
    finishFetch(false);
    deliverQueued();
    expectFailed(Kind::Failed, text("Location is not available."));
}

TEST_F(SessionControlTest, AlertThatIsOpenDoesNotDelayTheAnswer) {
    firstAnswer();
    m_api.setInetConnect(false);
    m_windows.keepsOpen = true;
    operate(ControlOperation::Hide);
    expectFailed(Kind::Failed, text("No Internet connection detected, please check your Internet settings."));
    m_windows.close();
}

TEST_F(SessionControlTest, AlertOfAnEarlierAttemptIsNotReported) {
    firstAnswer();
    choose("Germany Berlin");
    press();
    finishFetch(false);
    refusePair();
    operate(ControlOperation::Hide);
    settleQueued();
    expectFailed(Kind::Failed, text("No administrator's name and password were given."));
}

TEST_F(SessionControlTest, AdministratorsDialogIsWaitedFor) {
    firstAnswer();
    choose("Germany Berlin");
    refusePair();
    m_windows.keepsOpen = true;
    m_asksAdministrator = true;
    operate(ControlOperation::Hide);
    EXPECT_EQ(m_windows.count("dialog"), 1);
    EXPECT_TRUE(m_outcomes.isEmpty());
    EXPECT_TRUE(m_control->controlState().asksAdministrator);
    m_services.scripting().setHandler({});
    m_session.getNewIP();
    m_asksAdministrator = false;
    m_windows.close();
    settleQueued();
    EXPECT_TRUE(m_outcomes.isEmpty());
    connect();
    expectDone("203.0.113.7");
}

TEST_F(SessionControlTest, DialogThatIsCancelledFails) {
    firstAnswer();
    refusePair();
    m_windows.keepsOpen = true;
    m_asksAdministrator = true;
    operate(ControlOperation::Hide);
    m_asksAdministrator = false;
    m_windows.close();
    settleQueued();
    ASSERT_EQ(m_outcomes.size(), 1);
    EXPECT_EQ(m_outcomes.first().kind, Kind::Failed);
}

TEST_F(SessionControlTest, StopEndsTheTunnel) {
    firstAnswer();
    goHidden();
    operate(ControlOperation::Stop);
    expectDone("");
    EXPECT_EQ(phase(), Phase::NotHidden);
}

TEST_F(SessionControlTest, StopAtRestIsAnsweredAtOnce) {
    operate(ControlOperation::Stop);
    expectDone("");
}

TEST_F(SessionControlTest, StopDuringAnAttemptWaitsUntilItCanBeStopped) {
    firstAnswer();
    choose("Germany Berlin");
    press();
    operate(ControlOperation::Stop);
    EXPECT_TRUE(m_outcomes.isEmpty());
    connect();
    settleQueued();
    expectDone("");
    EXPECT_EQ(phase(), Phase::NotHidden);
}

TEST_F(SessionControlTest, StopIsAnsweredThoughAnotherAttemptBeginsAtOnce) {
    firstAnswer();
    goHidden();
    m_control->operate(ControlOperation::Stop, {},
                       [this](const ControlOutcome &outcome) { m_outcomes.append(outcome); });
    m_session.changeIpMenuItemPressed();
    settleQueued();
    EXPECT_EQ(phase(), Phase::Fetching);
    expectDone("");
}

TEST_F(SessionControlTest, StopWithoutANetworkIsAnsweredWithTheAlert) {
    firstAnswer();
    goHidden();
    m_api.setInetConnect(false);
    m_windows.keepsOpen = true;
    operate(ControlOperation::Stop);
    expectFailed(Kind::Failed, text("No Internet connection detected, please check your Internet settings."));
}

TEST_F(SessionControlTest, ClosedDialogOfACheckLetsAFailureBeAnswered) {
    firstAnswer();
    choose("Germany Berlin");
    m_windows.keepsOpen = true;
    operate(ControlOperation::Hide);
    refusePair();
    m_session.authWindow();
    m_asksAdministrator = true;
    finishFetch(false);
    deliverQueued();
    EXPECT_TRUE(m_outcomes.isEmpty());
    m_asksAdministrator = false;
    m_windows.close();
    m_control->dialogChanged();
    settleQueued();
    ASSERT_EQ(m_outcomes.size(), 1);
    EXPECT_EQ(m_outcomes.first().kind, Kind::Failed);
}

TEST_F(SessionControlTest, ChangeAndDiscardNeedAHiddenAddress) {
    firstAnswer();
    operate(ControlOperation::Change);
    operate(ControlOperation::Discard);
    const ControlOutcome notHidden{Kind::NotHidden, text("Your IP is not hidden.")};
    EXPECT_EQ(m_outcomes, QList({notHidden, notHidden}));
    EXPECT_EQ(m_requests, 0);
}

TEST_F(SessionControlTest, ChangeIsAnsweredWithTheNextAddress) {
    firstAnswer();
    goHidden();
    operate(ControlOperation::Change);
    EXPECT_TRUE(m_outcomes.isEmpty());
    m_lentIp = text("203.0.113.10\n");
    connect();
    expectDone("203.0.113.10");
    EXPECT_EQ(m_requests, 2);
}

TEST_F(SessionControlTest, DiscardPutsTheAddressOnTheList) {
    firstAnswer();
    goHidden();
    operate(ControlOperation::Discard);
    EXPECT_EQ(m_discarded.rows, QStringList{text("203.0.113.7")});
    m_lentIp = text("203.0.113.9\n");
    connect();
    expectDone("203.0.113.9");
}

TEST_F(SessionControlTest, TwoCommandsAreAnsweredInTheirOrder) {
    firstAnswer();
    choose("Germany Berlin");
    operate(ControlOperation::Hide);
    operate(ControlOperation::Stop);
    connect();
    settleQueued();
    EXPECT_EQ(m_outcomes, QList({ControlOutcome{Kind::Done, text("203.0.113.7")}, ControlOutcome{}}));
}

TEST_F(SessionControlTest, ShowAndQuitActAtOnce) {
    operate(ControlOperation::Show);
    EXPECT_EQ(m_shown, 1);
    operate(ControlOperation::Quit);
    EXPECT_EQ(m_quits, 1);
    EXPECT_EQ(m_outcomes.size(), 2);
}

TEST_F(SessionControlTest, EndOfTheProgramAnswersWhatWaits) {
    operate(ControlOperation::Hide);
    m_control.reset();
    expectFailed(Kind::Failed, text("Quorvane was quit."));
}

TEST_F(SessionControlTest, LocationsAreListedAsSent) {
    firstAnswer();
    choose("Norway Oslo");
    const auto locations = m_control->controlLocations();
    ASSERT_EQ(locations.size(), 6);
    EXPECT_EQ(locations.first().title, text("Random Location"));
    EXPECT_EQ(locations.first().country, QString());
    int selected = 0;
    for (const auto &location : locations) {
        selected += location.selected ? 1 : 0;
        EXPECT_EQ(location.selected, location.title == text("Norway Oslo"));
    }
    EXPECT_EQ(selected, 1);
}

} // namespace quorvane
