// A tunnel that is up: its loss, and an address that does not come.
#include "HideIpSessionFixture.h"

namespace quorvane {

namespace {

using platform::TunnelLoss;

constexpr char giveUp[] = "later|Location is not available.|Please try a different location.";

class HideIpSessionTunnelTest : public HideIpSessionTest {
protected:
    HideIpSessionTunnelTest() {
        firstAnswer();
        m_windows.events.clear();
    }

    void lose(TunnelLoss loss = TunnelLoss::ProcessEnded) {
        m_services.processes().setNames({"init"});
        m_services.tunnelWatch().lose(loss);
    }

    void goHiddenWithProcesses() {
        m_services.processes().setNames({"init"});
        choose("Germany Berlin");
        press();
        finishFetch();
        m_services.processes().setNames({"init", "openvpn-guard", "openvpn"});
        comeUp();
        ASSERT_EQ(phase(), Phase::Hidden);
    }

    void loseAndReconnect() {
        lose();
        settle();
        finishFetch();
        m_services.processes().setNames({"init", "openvpn"});
        comeUp();
    }

    void expectNotHidden() {
        EXPECT_EQ(shown().line1.text, warning);
        EXPECT_EQ(shown().stateImage, text("appmain"));
        EXPECT_EQ(shown().currentIp, text("198.51.100.10"));
        EXPECT_FALSE(shown().flagVisible);
        EXPECT_TRUE(shown().flagImage.isNull());
        EXPECT_FALSE(shown().changeIpVisible);
    }
};

TEST_F(HideIpSessionTunnelTest, LossIsShownAtOnceAndAnotherAttemptBegins) {
    goHidden();
    lose();
    expectNotHidden();
    EXPECT_EQ(shown().trayImage, text("Tray"));
    EXPECT_FALSE(SessionState::shared().hidden);
    settle();
    ASSERT_EQ(m_services.workspace().notifications.size(), 1U);
    EXPECT_EQ(m_services.workspace().notifications[0].title, text("Your real IP is visible"));
    EXPECT_EQ(m_services.workspace().notifications[0].text, text("The tunnel was lost: OpenVPN was killed."));
    EXPECT_EQ(phase(), Phase::Fetching);
    EXPECT_EQ(m_requests, 2);
    EXPECT_EQ(m_list.title(m_list.currentRow()), text("Germany Berlin"));
    finishFetch();
    m_services.processes().setNames({"init", "openvpn"});
    comeUp();
    EXPECT_EQ(phase(), Phase::Hidden);
    EXPECT_TRUE(SessionState::shared().hidden);
    EXPECT_TRUE(m_windows.events.isEmpty());
}

TEST_F(HideIpSessionTunnelTest, LossIsShownWhileAnotherEventIsBeingHandled) {
    goHiddenWithProcesses();
    m_session.authWindow(); // awaits the test of the pair
    ASSERT_TRUE(m_events.isHeld());
    lose(TunnelLoss::DeviceGone);
    EXPECT_EQ(phase(), Phase::Hidden);
    expectNotHidden();
    EXPECT_TRUE(m_services.workspace().notifications.empty());
    settle();
    EXPECT_EQ(phase(), Phase::Fetching);
    ASSERT_EQ(m_services.workspace().notifications.size(), 1U);
    EXPECT_EQ(m_services.workspace().notifications[0].text,
              text("The tunnel was lost: OpenVPN was killed.")); // the device went before its process
}

TEST_F(HideIpSessionTunnelTest, LossIsHandledBeforeThePressesThatWait) {
    goHidden();
    m_session.authWindow();
    m_session.stopQuorvane();
    lose();
    settle();
    EXPECT_EQ(phase(), Phase::Fetching); // not hidden any more, so there was nothing to stop
}

TEST_F(HideIpSessionTunnelTest, WhatIsLeftOfALostTunnelIsEnded) {
    goHiddenWithProcesses();
    m_services.scripting().clear();
    m_services.tunnelWatch().lose(TunnelLoss::RoutesChanged);
    expectNotHidden(); // while it is being ended
    settle();
    EXPECT_EQ(linesWith("killall"), 1);
    EXPECT_EQ(phase(), Phase::Fetching);
    ASSERT_EQ(m_services.workspace().notifications.size(), 1U);
    EXPECT_EQ(m_services.workspace().notifications[0].text,
              text("The tunnel was lost: its routes were changed."));
}

TEST_F(HideIpSessionTunnelTest, TunnelOfAnotherUserThatReplacedALostOneIsNotEnded) {
    m_services.preferences().setValue(text("noReconnect"), true);
    goHiddenWithProcesses();
    m_services.scripting().clear();
    m_services.processes().setNames({"init", "bash", "sh", "openvpn-guard", "openvpn"});
    m_services.tunnelWatch().lose(TunnelLoss::ProcessEnded);
    settle();
    EXPECT_EQ(linesWith("killall"), 0);
    EXPECT_EQ(phase(), Phase::NotHidden);
    ASSERT_EQ(m_services.workspace().notifications.size(), 1U);
    EXPECT_EQ(m_services.workspace().notifications[0].text, text("The tunnel was lost: OpenVPN was killed."));
}

TEST_F(HideIpSessionTunnelTest, WhatCannotBeSeenOfALostTunnelIsEnded) {
    m_services.preferences().setValue(text("noReconnect"), true);
    m_services.processes().setNames({"init", "openvpn"});
    m_services.processes().setShowsOtherUsers(false);
    goHidden();
    m_services.scripting().clear();
    m_services.processes().setNames({"init", "bash", "openvpn"});
    m_services.tunnelWatch().lose(TunnelLoss::DeviceGone);
    settle();
    EXPECT_EQ(linesWith("killall"), 1);
}

TEST_F(HideIpSessionTunnelTest, WithoutReconnectingItStaysNotHidden) {
    m_services.preferences().setValue(text("noReconnect"), true);
    goHidden();
    lose();
    settle();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(m_requests, 1);
    EXPECT_TRUE(shown().hideButton.enabled);
    expectNotHidden();
}

TEST_F(HideIpSessionTunnelTest, ReconnectingIsAttemptedFourTimesInAllWhateverTheLocation) {
    goHidden();
    lose();
    settle();
    for (int attempt = 1; attempt <= 4; ++attempt) {
        EXPECT_EQ(m_requests, 1 + attempt);
        finishFetch(false);
    }
    EXPECT_EQ(m_requests, 5);
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(m_windows.events, QStringList{text(giveUp)});
    EXPECT_FALSE(SessionState::shared().hidden);
    press(); // the rule is the usual one again
    finishFetch(false);
    EXPECT_EQ(m_requests, 6);
    EXPECT_EQ(phase(), Phase::NotHidden);
}

TEST_F(HideIpSessionTunnelTest, TunnelThatIsLostAgainAndAgainIsNotStartedForEver) {
    goHidden();
    for (int loss = 1; loss <= 3; ++loss) {
        loseAndReconnect();
        EXPECT_EQ(m_requests, 1 + loss);
        EXPECT_EQ(phase(), Phase::Hidden);
    }
    lose();
    settle();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(m_requests, 4);
}

TEST_F(HideIpSessionTunnelTest, TunnelThatHeldForAMinuteIsNoLossInARow) {
    goHidden();
    for (int loss = 1; loss <= 6; ++loss) {
        m_services.delayedCalls().advance(60.0);
        loseAndReconnect();
        EXPECT_EQ(m_requests, 1 + loss);
    }
    EXPECT_EQ(phase(), Phase::Hidden);
}

TEST_F(HideIpSessionTunnelTest, StopOrAnotherAddressIsNoLoss) {
    goHidden();
    EXPECT_TRUE(m_services.tunnelWatch().isWatching());
    hotKey(&HideIpSession::discardIpButtonPressed);
    EXPECT_FALSE(m_services.tunnelWatch().isWatching());
    finishFetch();
    EXPECT_FALSE(m_services.tunnelWatch().isWatching());
    comeUp();
    EXPECT_TRUE(m_services.tunnelWatch().isWatching());
    press();
    EXPECT_FALSE(m_services.tunnelWatch().isWatching());
    EXPECT_TRUE(m_services.workspace().notifications.empty());
}

TEST_F(HideIpSessionTunnelTest, TunnelThatCannotBeKilledIsWatchedOn) {
    goHidden();
    m_services.processes().setNames({"init", "openvpn"});
    refusePair();
    m_session.discardIpButtonPressed();
    lose(); // while the kill is being refused
    settle();
    expectNotHidden();
    EXPECT_FALSE(SessionState::shared().hidden);
    EXPECT_EQ(m_services.workspace().notifications.size(), 1U);
}

TEST_F(HideIpSessionTunnelTest, AttemptThatIsDroppedAfterItsTunnelWasEndedIsNotHidden) {
    goHidden();
    m_services.processes().setNames({"init", "openvpn"});
    m_session.discardIpButtonPressed();
    m_services.background().finishAt(0); // the kill
    m_services.processes().setNames({"init"});
    refusePair();
    settle();
    EXPECT_EQ(phase(), Phase::Dropped);
    expectNotHidden();
    EXPECT_FALSE(SessionState::shared().hidden);
    EXPECT_EQ(m_windows.count("dialog"), 1);
}

TEST_F(HideIpSessionTunnelTest, LossWhileTheAddressIsBeingRead) {
    choose("Germany Berlin");
    press();
    finishFetch();
    m_session.showIp();
    ASSERT_TRUE(m_events.isHeld());
    lose();
    settle();
    EXPECT_EQ(phase(), Phase::Fetching);
    EXPECT_EQ(m_services.workspace().notifications.size(), 1U);
}

TEST_F(HideIpSessionTunnelTest, TunnelThatEndedBeforeItWasShown) {
    m_services.processes().setNames({"init"});
    choose("Germany Berlin");
    press();
    finishFetch();
    comeUp();
    EXPECT_EQ(phase(), Phase::Fetching);
    EXPECT_EQ(m_services.workspace().notifications.size(), 1U);
}

TEST_F(HideIpSessionTunnelTest, LossOfATunnelThatALaterAttemptReplacesIsNotReported) {
    goHidden();
    hotKey(&HideIpSession::getNewIP); // the dialog's start, for instance: the tunnel is up meanwhile
    ASSERT_EQ(phase(), Phase::Fetching);
    lose();
    settle();
    EXPECT_EQ(phase(), Phase::Fetching);
    EXPECT_EQ(shown().line1.text, searchingText);
    EXPECT_TRUE(m_services.workspace().notifications.empty());
    finishFetch();
    m_services.processes().setNames({"init", "openvpn"});
    comeUp();
    EXPECT_EQ(shown().stateImage, text("applock"));
}

TEST_F(HideIpSessionTunnelTest, ProcessesOfTheLaunchAreWatched) {
    m_services.processes().setNames({"init", "openvpn"}); // another program's, and it cannot be killed
    choose("Germany Berlin");
    press();
    finishFetch();
    m_services.processes().setNames({"init", "openvpn", "openvpn-guard", "openvpn"});
    comeUp();
    EXPECT_EQ(m_services.tunnelWatch().watched.size(), 2);
}

TEST_F(HideIpSessionTunnelTest, AddressThatDidNotComeIsRequestedAgainUntilItComes) {
    m_lentIp = text("");
    goHidden();
    EXPECT_TRUE(shown().addressNotice.visible);
    EXPECT_EQ(shown().addressNotice.text, text("No answer through the tunnel yet"));
    EXPECT_EQ(shown().currentIp, text(""));
    EXPECT_EQ(SessionState::shared().currentIp, text(""));
    for (const double seconds : {2.0, 4.0, 8.0, 16.0, 32.0, 60.0, 60.0}) {
        m_services.delayedCalls().advance(seconds - 0.1);
        EXPECT_EQ(m_services.background().pending(), 0U) << seconds;
        m_services.delayedCalls().advance(0.1);
        EXPECT_EQ(m_services.background().pending(), 1U) << seconds;
        EXPECT_FALSE(m_events.isHeld());
        settle();
        EXPECT_TRUE(shown().addressNotice.visible);
    }
    m_lentIp = text("203.0.113.7\n");
    m_services.delayedCalls().advance(60.0);
    settle();
    EXPECT_FALSE(shown().addressNotice.visible);
    EXPECT_EQ(shown().currentIp, text("203.0.113.7\n"));
    EXPECT_EQ(SessionState::shared().currentIp, text("203.0.113.7\n"));
    m_services.delayedCalls().advance(120.0);
    EXPECT_EQ(m_services.background().pending(), 0U);
}

TEST_F(HideIpSessionTunnelTest, AnotherLentAddressIsNotifiedUnlessTheUserStopped) {
    m_lentIp = text("203.0.113.7\n");
    goHidden();
    EXPECT_TRUE(m_services.workspace().notifications.empty());
    hotKey(&HideIpSession::changeIpButtonPressed);
    finishFetch();
    comeUp();
    EXPECT_TRUE(m_services.workspace().notifications.empty()); // the same address again
    m_lentIp = text("203.0.113.8\n");
    hotKey(&HideIpSession::changeIpButtonPressed);
    finishFetch();
    comeUp();
    ASSERT_EQ(m_services.workspace().notifications.size(), 1U);
    EXPECT_EQ(m_services.workspace().notifications[0].title, text("Your IP was changed"));
    EXPECT_EQ(m_services.workspace().notifications[0].text, text("203.0.113.8, Germany Berlin"));
    press();
    m_lentIp = text("203.0.113.9\n");
    press();
    finishFetch();
    comeUp();
    EXPECT_EQ(phase(), Phase::Hidden);
    EXPECT_EQ(m_services.workspace().notifications.size(), 1U);
}

TEST_F(HideIpSessionTunnelTest, AddressThatComesAfterItsTunnelIsDropped) {
    m_lentIp = text("");
    goHidden();
    m_services.delayedCalls().advance(2.0);
    m_lentIp = text("203.0.113.7\n");
    m_session.setDefaultControls();
    settle();
    expectNotHidden();
    EXPECT_FALSE(shown().addressNotice.visible);
    m_services.delayedCalls().advance(120.0);
    EXPECT_EQ(m_services.background().pending(), 0U);
}

} // namespace

} // namespace quorvane
