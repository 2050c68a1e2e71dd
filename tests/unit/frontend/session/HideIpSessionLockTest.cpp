// The network lock around a session, when the user wants it.
#include "HideIpSessionFixture.h"

namespace quorvane {

namespace {

const QString couldNotClose =
    text("later|Traffic outside the tunnel could not be blocked, so your IP is not hidden.|");
const QString question = text("ask|Traffic outside the tunnel is still blocked since Quorvane last ran.");

class HideIpSessionLockTest : public HideIpSessionTest {
protected:
    HideIpSessionLockTest() {
        m_services.scripting().setHandler([this](const fakes::FakeScriptingService::Call &call) {
            const bool isLock = call.line.startsWith(text("networklock "));
            if (isLock && m_refuses) {
                return fakes::FakeScriptingService::failure(6, text("no nftables"));
            }
            if (isLock) {
                m_order.append(call.line.section(u' ', 1, 1));
                m_services.networkLock().closed = call.line.contains(text("-close"));
            } else if (call.line.contains(text("--config"))) {
                m_order.append(text("tunnel"));
            }
            return fakes::FakeScriptingService::success(text(""));
        });
        m_services.preferences().setValue(text("networkLock"), true);
    }

    [[nodiscard]] bool isClosed() const { return m_services.networkLock().closed; }

    /// The program starts after a run that left the lock closed.
    void startLocked(Answer answer) {
        m_services.networkLock().closed = true;
        m_windows.answer = answer;
        m_session.begin([] {});
        settle();
    }

    QStringList m_order;
    bool m_refuses = false;
};

TEST_F(HideIpSessionLockTest, WithoutTheWishNoLineIsAboutIt) {
    m_services.preferences().setValue(text("networkLock"), QVariant());
    firstAnswer();
    goHidden();
    press();
    EXPECT_EQ(linesWith("networklock"), 0);
    EXPECT_FALSE(shown().lockNotice.visible);
}

TEST_F(HideIpSessionLockTest, IsClosedBeforeTheRequestAndLiftedByTheStop) {
    firstAnswer();
    choose("Germany Berlin");
    press();
    EXPECT_TRUE(isClosed());
    EXPECT_EQ(m_openRequests, 1U);
    EXPECT_EQ(linesWith("networklock -close home api.quorvane.test:443/198.51.100.7"), 1);
    finishFetch();
    comeUp();
    EXPECT_EQ(m_order, (QStringList{text("-close"), text("tunnel")}));
    EXPECT_EQ(shown().lockNotice.text, text("Traffic outside the tunnel is blocked."));
    EXPECT_TRUE(shown().lockNotice.visible);
    EXPECT_FALSE(shown().liftVisible) << "a stop lifts it";
    press();
    EXPECT_FALSE(isClosed());
    EXPECT_FALSE(shown().lockNotice.visible);
    EXPECT_EQ(phase(), Phase::NotHidden);
}

TEST_F(HideIpSessionLockTest, HomeNetworkIsBlockedTooIfWanted) {
    m_services.preferences().setValue(text("lockHomeNetwork"), true);
    firstAnswer();
    goHidden();
    EXPECT_EQ(linesWith("networklock -close alone "), 1);
}

TEST_F(HideIpSessionLockTest, StaysClosedWhileTheAddressIsChanged) {
    firstAnswer();
    goHidden();
    for (const auto operation :
         {&HideIpSession::changeIpButtonPressed, &HideIpSession::discardIpButtonPressed,
          &HideIpSession::changeIpMenuItemPressed}) {
        hotKey(operation);
        finishFetch();
        comeUp();
        EXPECT_EQ(phase(), Phase::Hidden);
    }
    EXPECT_FALSE(m_order.contains(text("-lift")));
    EXPECT_TRUE(isClosed());
}

TEST_F(HideIpSessionLockTest, StaysClosedWhileAnotherLocationIsChosen) {
    firstAnswer();
    goHidden();
    m_chooser.choose(m_list.idAt(m_list.currentRow() + 1));
    settleQueued();
    EXPECT_FALSE(m_order.contains(text("-lift")));
    EXPECT_TRUE(isClosed());
}

TEST_F(HideIpSessionLockTest, StaysClosedWhenAChangeFindsNoNetwork) {
    firstAnswer();
    goHidden();
    m_api.setInetConnect(false);
    hotKey(&HideIpSession::changeIpButtonPressed);
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(shown().liftVisible);
}

TEST_F(HideIpSessionLockTest, StaysClosedAfterAGiveUpUntilTheUserLiftsIt) {
    firstAnswer();
    choose("Germany Berlin");
    press();
    finishFetch(false);
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(shown().liftVisible);
    hotKey(&HideIpSession::liftLockPressed);
    EXPECT_FALSE(isClosed());
    EXPECT_FALSE(shown().liftVisible);
}

TEST_F(HideIpSessionLockTest, StaysClosedWhenTheTunnelIsLost) {
    m_services.preferences().setValue(text("noReconnect"), true);
    firstAnswer();
    goHidden();
    m_services.tunnelWatch().lose(platform::TunnelLoss::ProcessEnded);
    settle();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(shown().liftVisible);
}

TEST_F(HideIpSessionLockTest, IsNotLiftedByTheButtonWhileAnAttemptHasBegun) {
    firstAnswer();
    choose("Germany Berlin");
    press();
    hotKey(&HideIpSession::liftLockPressed);
    EXPECT_TRUE(isClosed());
}

TEST_F(HideIpSessionLockTest, StopByHotKeyLiftsIt) {
    firstAnswer();
    goHidden();
    hotKey(&HideIpSession::stopHotKeyPressed);
    EXPECT_FALSE(isClosed());
}

TEST_F(HideIpSessionLockTest, StopOfAnAttemptThatWaitsLiftsIt) {
    m_services.preferences().setValue(text("useSameIP"), true);
    firstAnswer();
    choose("Germany Berlin");
    press();
    ASSERT_EQ(phase(), Phase::Unconfigured);
    EXPECT_TRUE(isClosed());
    press();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_FALSE(isClosed());
}

TEST_F(HideIpSessionLockTest, AnAttemptFailsBeforeAnythingElseWhenItCannotBeClosed) {
    firstAnswer();
    m_refuses = true;
    choose("Germany Berlin");
    press();
    settleQueued();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(m_windows.events.count(couldNotClose + text("no nftables")), 1);
    EXPECT_EQ(m_requests, 0);
    EXPECT_EQ(linesWith("--config"), 0);
    EXPECT_TRUE(shown().hideButton.enabled);
    m_refuses = false;
    goHidden();
    EXPECT_TRUE(isClosed());
}

TEST_F(HideIpSessionLockTest, AnAttemptFailsWithoutAnAddressOfTheService) {
    m_services.networkLock().found = {};
    firstAnswer();
    press();
    EXPECT_EQ(
        m_windows.events.count(couldNotClose + text("The address of the Quorvane server was not found.")), 1);
    EXPECT_EQ(m_requests, 0);
    EXPECT_EQ(linesWith("networklock"), 0);
}

TEST_F(HideIpSessionLockTest, AChangeThatCannotRenewItEndsTheTunnelAndStaysClosed) {
    firstAnswer();
    goHidden();
    m_refuses = true;
    hotKey(&HideIpSession::changeIpMenuItemPressed);
    settleQueued();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(shown().liftVisible);
}

TEST_F(HideIpSessionLockTest, AStopThatCannotLiftItSaysSoAndStaysTrue) {
    firstAnswer();
    goHidden();
    m_refuses = true;
    press();
    settleQueued();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(
        m_windows.count("later|The block of traffic outside the tunnel could not be lifted.|no nftables"), 1);
    EXPECT_TRUE(shown().lockNotice.visible);
    EXPECT_TRUE(shown().liftVisible);
}

TEST_F(HideIpSessionLockTest, EndOfTheProgramLiftsIt) {
    firstAnswer();
    goHidden();
    bool ended = false;
    m_session.end([&ended] { ended = true; });
    settle();
    EXPECT_TRUE(ended);
    EXPECT_FALSE(isClosed());
    EXPECT_EQ(m_services.workspace().notifications.size(), 0U);
}

TEST_F(HideIpSessionLockTest, EndOfTheProgramLiftsItAlsoWhileItIsBeingClosed) {
    firstAnswer();
    choose("Germany Berlin");
    m_session.quorvaneButtonPressed(true);
    m_services.background().finishAt(0); // the test of the pair
    EXPECT_FALSE(isClosed());
    bool ended = false;
    m_session.end([&ended] { ended = true; });
    settle();
    EXPECT_TRUE(ended);
    EXPECT_FALSE(isClosed());
    EXPECT_EQ(m_order.last(), text("-lift"));
}

TEST_F(HideIpSessionLockTest, EndThatCannotLiftItNotifiesTheUser) {
    firstAnswer();
    goHidden();
    m_refuses = true;
    m_session.end([] {});
    settle();
    ASSERT_EQ(m_services.workspace().notifications.size(), 1U);
    EXPECT_TRUE(m_services.workspace().notifications.front().text.contains(text("quorvane --unlock")));
}

TEST_F(HideIpSessionLockTest, ALockThatIsLeftIsLiftedIfTheUserWants) {
    startLocked(Answer::First);
    EXPECT_EQ(m_windows.events.count(question), 1);
    EXPECT_FALSE(isClosed());
    EXPECT_FALSE(shown().lockNotice.visible);
}

TEST_F(HideIpSessionLockTest, ALockThatIsLeftStaysWithoutAnAnswer) {
    startLocked(Answer::None);
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(shown().liftVisible);
}

TEST_F(HideIpSessionLockTest, ALockThatIsLeftIsResumedAtTheFirstAnswer) {
    choose("Germany Berlin");
    startLocked(Answer::Second);
    EXPECT_EQ(phase(), Phase::Starting);
    answer("STATUS: 0<br />ClientIP: 198.51.100.10");
    EXPECT_EQ(phase(), Phase::Fetching);
    EXPECT_TRUE(isClosed());
}

TEST_F(HideIpSessionLockTest, ALockThatIsLeftIsResumedAtOnceAfterTheFirstAnswer) {
    choose("Germany Berlin");
    m_windows.keepsOpen = true;
    startLocked(Answer::Second);
    firstAnswer();
    EXPECT_EQ(phase(), Phase::NotHidden);
    m_windows.close();
    settle();
    EXPECT_EQ(phase(), Phase::Fetching);
}

TEST_F(HideIpSessionLockTest, AnAnswerDuringAnAttemptLiftsNothing) {
    m_windows.keepsOpen = true;
    startLocked(Answer::First);
    firstAnswer();
    goHidden();
    m_windows.close();
    settle();
    EXPECT_TRUE(isClosed());
    EXPECT_EQ(phase(), Phase::Hidden);
}

TEST_F(HideIpSessionLockTest, WithoutALeftLockNothingIsAsked) {
    m_session.begin([] {});
    settle();
    EXPECT_EQ(m_windows.events.count(question), 0);
}

TEST_F(HideIpSessionLockTest, WindowFollowsALockThatIsLiftedElsewhere) {
    m_session.begin([] {});
    settle();
    firstAnswer();
    goHidden();
    m_services.networkLock().closed = false;
    m_services.networkLock().observer();
    settle();
    EXPECT_FALSE(shown().lockNotice.visible);
    EXPECT_EQ(phase(), Phase::Hidden);
}

} // namespace

} // namespace quorvane
