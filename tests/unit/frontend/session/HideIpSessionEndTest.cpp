// How attempts and tunnels end: stops, failures, the change timer, refused kills, the end of the program.
#include "HideIpSessionFixture.h"

namespace quorvane {

namespace {

using HideIpSessionEndTest = HideIpSessionTest;

constexpr char giveUp[] = "later|Location is not available.|Please try a different location.";

TEST_F(HideIpSessionEndTest, PressOffReturnsToNotHidden) {
    firstAnswer();
    goHidden();
    m_services.processes().setNames({"openvpn"});
    m_services.scripting().clear();
    press();
    EXPECT_EQ(m_services.scripting().calls().size(), 1U);
    EXPECT_EQ(shown().line1, (DisplayState::Line{warning, Tone::Warning, true}));
    EXPECT_EQ(shown().currentIp, text("198.51.100.10"));
    EXPECT_EQ(shown().hideButton,
              (DisplayState::Button{text("Quorvane"), true, false, text("Hides your real IP")}));
    EXPECT_EQ(shown().hideItem, (DisplayState::Item{text("Quorvane"), true}));
    EXPECT_TRUE(shown().flagImage.isNull());
    EXPECT_FALSE(shown().flagVisible);
    EXPECT_EQ(shown().stateImage, text("appmain"));
    EXPECT_EQ(shown().trayImage, text("Tray"));
    EXPECT_FALSE(shown().line21.visible);
    EXPECT_FALSE(shown().line22.visible);
    EXPECT_FALSE(shown().line3.visible);
    EXPECT_FALSE(shown().changeIpVisible);
    EXPECT_FALSE(shown().discardIpVisible);
    EXPECT_TRUE(shown().advancedEnabled);
    EXPECT_TRUE(shown().changeItemEnabled);
    EXPECT_FALSE(shown().copyItemEnabled);
    EXPECT_FALSE(SessionState::shared().hidden);
    EXPECT_EQ(m_services.preferences().value(text("quorvane")), QVariant(false));
    EXPECT_FALSE(m_services.preferences().value(text("hide")).isValid());
    EXPECT_GE(m_services.preferences().synchronizations(), 1);
}

TEST_F(HideIpSessionEndTest, HotKeysDoNothingInTheWrongState) {
    firstAnswer();
    m_windows.events.clear();
    hotKey(&HideIpSession::stopQuorvane); // not hidden
    EXPECT_EQ(phase(), Phase::NotHidden);
    goHidden();
    hotKey(&HideIpSession::quorvane); // hidden
    EXPECT_EQ(phase(), Phase::Hidden);
    EXPECT_EQ(m_requests, 1);
}

TEST_F(HideIpSessionEndTest, HotKeysDoNothingWhileTheButtonIsDisabled) {
    hotKey(&HideIpSession::quorvane);
    EXPECT_EQ(phase(), Phase::Starting);
    SessionState::shared().hidden = true;
    hotKey(&HideIpSession::stopQuorvane);
    EXPECT_TRUE(SessionState::shared().hidden);
}

TEST_F(HideIpSessionEndTest, StopHidesTheRotationButtons) {
    goHidden();
    hotKey(&HideIpSession::stopQuorvane);
    EXPECT_FALSE(SessionState::shared().hidden);
    EXPECT_FALSE(shown().changeIpVisible);
    EXPECT_FALSE(shown().discardIpVisible);
}

TEST_F(HideIpSessionEndTest, MenuItemFlipsTheButton) {
    firstAnswer();
    hotKey(&HideIpSession::quorvaneMenuItemPressed);
    EXPECT_EQ(m_requests, 1);
    finishFetch();
    comeUp();
    hotKey(&HideIpSession::quorvaneMenuItemPressed);
    EXPECT_FALSE(SessionState::shared().hidden);
}

TEST_F(HideIpSessionEndTest, FixedLocationIsNotRetried) {
    choose("Germany Berlin");
    press();
    m_windows.events.clear();
    finishFetch(false);
    EXPECT_EQ(m_windows.events, QStringList{text(giveUp)});
    EXPECT_EQ(sessionLog(), QByteArray("connection error Germany Berlin\n"));
    EXPECT_EQ(shown().line1, (DisplayState::Line{warning, Tone::Warning, true}));
    EXPECT_EQ(shown().hideButton,
              (DisplayState::Button{text("Quorvane"), true, false, text("Hides your real IP")}));
    EXPECT_EQ(shown().hideItem, (DisplayState::Item{text("Quorvane"), true}));
    EXPECT_TRUE(shown().changeItemEnabled);
    EXPECT_TRUE(shown().advancedEnabled);
    EXPECT_EQ(shown().stateImage, text("appmain"));
    EXPECT_EQ(shown().trayImage, text("Tray"));
    EXPECT_TRUE(shown().flagImage.isNull());
    EXPECT_FALSE(m_windows.animating);
}

TEST_F(HideIpSessionEndTest, GivingUpLeavesTheHiddenFlagAndTheCopyItem) {
    goHidden();
    fail();
    EXPECT_TRUE(SessionState::shared().hidden);
    EXPECT_TRUE(shown().copyItemEnabled);
    EXPECT_FALSE(m_services.preferences().value(text("quorvane")).isValid());
    EXPECT_EQ(shown().stateImage, text("appmain"));
}

TEST_F(HideIpSessionEndTest, AutomaticChangeIsAttemptedFourTimesInAll) {
    setAutomatic(true);
    press();
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(m_session.failedConnections(), i);
        finishFetch(false);
    }
    EXPECT_EQ(m_requests, 4);
    EXPECT_EQ(m_windows.count(giveUp), 1);
    EXPECT_EQ(m_session.failedConnections(), 0);
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(m_services.logSink().lines().contains(text("rndLocationCounter= %1").arg(i)));
    }
}

TEST_F(HideIpSessionEndTest, RandomLocationThatStaysSelectedIsAttemptedFourTimesInAll) {
    m_services.preferences().setValue(text("requireUS"), true); // such a pick leaves the selection
    press();
    for (int i = 0; i < 4; ++i) {
        finishFetch(false);
    }
    EXPECT_EQ(m_requests, 4);
    EXPECT_EQ(m_windows.count(giveUp), 1);
}

TEST_F(HideIpSessionEndTest, SuccessAndPressForgetFailures) {
    setAutomatic(true);
    press();
    fail();
    fail();
    EXPECT_EQ(m_session.failedConnections(), 2);
    m_services.background().finishAt(0); // the superseded ones
    m_services.background().finishAt(0);
    m_openRequests = 1;
    finishFetch();
    comeUp();
    EXPECT_EQ(m_session.failedConnections(), 0);
    fail();
    EXPECT_EQ(m_session.failedConnections(), 1);
    m_session.quorvaneButtonPressed(true);
    EXPECT_EQ(m_session.failedConnections(), 0);
}

TEST_F(HideIpSessionEndTest, NoNetworkAtThePickIsAFailureThatLeavesNoAnimation) {
    choose("Germany Berlin");
    m_api.setInetConnect(false);
    hotKey(&HideIpSession::getNewIP);
    EXPECT_EQ(m_windows.count(giveUp), 1);
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(shown().trayImage, text("Tray"));
    EXPECT_FALSE(m_windows.animating);
    EXPECT_TRUE(m_services.logSink().lines().contains(text("downloadCertificateForSelectedItem no inet")));
}

TEST_F(HideIpSessionEndTest, UnitedStatesOnlyWithoutSuchALocationLeavesNoAnimation) {
    m_list.removeTitle(text("States Denver"));
    m_services.preferences().setValue(text("requireUS"), true);
    press();
    EXPECT_EQ(m_windows.count(giveUp), 1); // after three further attempts
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_FALSE(m_windows.animating);
}

TEST_F(HideIpSessionEndTest, LateResultOfAnAttemptThatWasResetIsDropped) {
    press();
    hotKey(&HideIpSession::setDefaultControls);
    finishFetch();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(linesWith("--config"), 0);
}

TEST_F(HideIpSessionEndTest, LateReportOfAFailureStrikesTheAttemptThatThereIs) {
    choose("Germany Berlin");
    press();
    finishFetch();
    hotKey(&HideIpSession::setDefaultControls);
    press();
    EXPECT_EQ(phase(), Phase::Fetching);
    fail();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(m_windows.count(giveUp), 1);
}

TEST_F(HideIpSessionEndTest, TimerIsArmedOnlyWhileHiddenWithTheBoxOnAndAnInterval) {
    for (const bool hidden : {false, true}) {
        for (const bool on : {false, true}) {
            for (const int minutes : {0, 1, 99}) {
                SessionState::shared().hidden = hidden;
                setAutomatic(on);
                m_services.preferences().setValue(text("changeIpInterval"), minutes);
                m_session.settingsDidChange();
                EXPECT_EQ(m_session.changeTimerArmed(), hidden && on && minutes > 0);
                EXPECT_EQ(m_services.delayedCalls().pending().size(), m_session.changeTimerArmed() ? 1U : 0U);
                EXPECT_EQ(shown().interval, minutes);
                EXPECT_EQ(shown().changesAutomatically, on);
                if (m_session.changeTimerArmed()) {
                    EXPECT_EQ(m_services.delayedCalls().pending()[0].delay, 60.0 * minutes);
                }
            }
        }
    }
}

TEST_F(HideIpSessionEndTest, TimerStopsAndStartsOnceAndIsRearmedBySuccess) {
    setAutomatic(true);
    m_services.preferences().setValue(text("changeIpInterval"), 2);
    goHidden();
    EXPECT_TRUE(m_session.changeTimerArmed());
    m_services.delayedCalls().advance(119.0);
    EXPECT_EQ(m_requests, 1);
    m_services.delayedCalls().advance(1.0);
    settle();
    EXPECT_EQ(m_requests, 2);
    EXPECT_FALSE(SessionState::shared().hidden); // an automatic change resets first
    EXPECT_FALSE(m_session.changeTimerArmed());
    m_services.delayedCalls().advance(1000.0);
    EXPECT_EQ(m_requests, 2);
    finishFetch();
    comeUp();
    EXPECT_TRUE(m_session.changeTimerArmed());
}

TEST_F(HideIpSessionEndTest, TerminatingCancelsTheTimer) {
    setAutomatic(true);
    m_services.preferences().setValue(text("changeIpInterval"), 2);
    goHidden();
    hotKey(&HideIpSession::terminateVpn);
    EXPECT_FALSE(m_session.changeTimerArmed());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
}

TEST_F(HideIpSessionEndTest, NewAddressWhileHiddenKeepsTheHiddenFlag) {
    goHidden();
    hotKey(&HideIpSession::getNewIP);
    EXPECT_TRUE(SessionState::shared().hidden);
    EXPECT_EQ(shown().line1.text, searchingText);
    EXPECT_EQ(shown().hideButton.title, text("Stop Hiding IP"));
}

TEST_F(HideIpSessionEndTest, ReconnectingActsOnlyWhileHidden) {
    hotKey(&HideIpSession::reconectIfIpHidden);
    EXPECT_EQ(m_requests, 0);
    SessionState::shared().hidden = true;
    hotKey(&HideIpSession::reconectIfIpHidden);
    EXPECT_EQ(m_requests, 1);
}

TEST_F(HideIpSessionEndTest, ResetsThatFollowARefusedKillWaitLongerEachTime) {
    m_services.processes().setNames({"init", "openvpn"});
    refusePair();
    hotKey(&HideIpSession::setDefaultControls);
    QList<double> delays;
    for (int i = 0; i < 9; ++i) {
        settleQueued();
        ASSERT_EQ(m_services.delayedCalls().pending().size(), 1U);
        delays.append(m_services.delayedCalls().pending()[0].delay);
        m_services.delayedCalls().advance(delays.last());
    }
    EXPECT_EQ(delays, (QList<double>{1, 2, 4, 8, 16, 32, 60, 60, 60}));
    EXPECT_EQ(m_services.logSink().lines().count(text("Stopped? > 0")), 1);
    settleQueued();
    m_session.quorvaneButtonPressed(false); // something changed
    settleQueued();
    ASSERT_EQ(m_services.delayedCalls().pending().size(), 1U) << "the reset that waited was cancelled";
    EXPECT_EQ(m_services.delayedCalls().pending()[0].delay, 1.0); // the first since the press
}

TEST_F(HideIpSessionEndTest, WaitingResetDoesNotEndALaterAttempt) {
    choose("Germany Berlin");
    for (const bool stopsBefore : {true, false}) {
        m_services.processes().setNames({"init", "openvpn"});
        refusePair();
        hotKey(&HideIpSession::setDefaultControls);
        settleQueued();
        ASSERT_EQ(m_services.delayedCalls().pending().size(), 1U);
        acceptPair();
        if (stopsBefore) {
            m_session.quorvaneButtonPressed(false);
            settleQueued();
        }
        m_services.processes().setNames({"init"});
        press();
        ASSERT_EQ(phase(), Phase::Fetching) << stopsBefore;
        m_services.delayedCalls().advance(1.0);
        settleQueued();
        EXPECT_EQ(phase(), Phase::Fetching) << stopsBefore;
        m_session.quorvaneButtonPressed(false);
        settleQueued();
    }
}

TEST_F(HideIpSessionEndTest, ResetThatEndedTheTunnelCancelsTheOneThatWaited) {
    m_services.processes().setNames({"init", "openvpn"});
    refusePair();
    hotKey(&HideIpSession::setDefaultControls);
    settleQueued();
    ASSERT_EQ(m_services.delayedCalls().pending().size(), 1U);
    acceptPair();
    hotKey(&HideIpSession::setDefaultControls);
    settleQueued();
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
}

TEST_F(HideIpSessionEndTest, ChosenLocationCancelsTheResetThatWaited) {
    choose("Germany Berlin");
    m_services.processes().setNames({"init", "openvpn"});
    refusePair();
    hotKey(&HideIpSession::setDefaultControls);
    settleQueued();
    acceptPair();
    hotKey(&HideIpSession::getNewIP);
    ASSERT_EQ(phase(), Phase::Fetching);
    m_services.delayedCalls().advance(1.0);
    settleQueued();
    EXPECT_EQ(phase(), Phase::Fetching);
}

TEST_F(HideIpSessionEndTest, AnotherRefusedCommandResetsAtOnce) {
    goHidden();
    refusePair();
    m_session.resetRequested();
    settle();
    EXPECT_EQ(phase(), Phase::NotHidden);
}

TEST_F(HideIpSessionEndTest, NothingIsSentBeforeALeftOverTunnelIsEnded) {
    m_services.processes().setNames({"init", "openvpn"});
    int cleared = 0;
    m_session.begin([&cleared] { ++cleared; });
    EXPECT_EQ(cleared, 0) << "the kill is still awaited";
    settle();
    EXPECT_EQ(linesWith("killall"), 1);
    EXPECT_EQ(cleared, 1);
}

TEST_F(HideIpSessionEndTest, WithoutALeftOverTunnelTheNetworkIsUsedAtOnce) {
    int cleared = 0;
    m_session.begin([&cleared] { ++cleared; });
    EXPECT_EQ(cleared, 1);
    EXPECT_EQ(linesWith("killall"), 0);
}

TEST_F(HideIpSessionEndTest, ALeftOverTunnelThatCannotBeEndedDoesNotKeepTheNetworkUnused) {
    m_services.processes().setNames({"init", "openvpn"});
    refusePair();
    int cleared = 0;
    m_session.begin([&cleared] { ++cleared; });
    settle();
    EXPECT_EQ(cleared, 1);
}

TEST_F(HideIpSessionEndTest, EndOfTheProgramEndsWhatIsAwaitedAndTheTunnel) {
    choose("Germany Berlin");
    press();
    finishFetch();
    m_services.processes().setNames({"init", "openvpn"});
    m_services.scripting().clear();
    m_session.showIp(); // awaits the address
    bool ended = false;
    m_session.end([&ended] { ended = true; });
    EXPECT_FALSE(ended);
    settle();
    EXPECT_TRUE(ended);
    EXPECT_EQ(linesWith("killall"), 1);
    EXPECT_EQ(phase(), Phase::Ended);
    m_session.quorvaneButtonPressed(true);
    m_session.getNewIP();
    m_services.delayedCalls().advance(100.0);
    settle();
    EXPECT_EQ(phase(), Phase::Ended);
    EXPECT_EQ(m_services.scripting().calls().size(), 1U);
}

TEST_F(HideIpSessionEndTest, EndOfTheProgramCancelsALaunchThatHasNotBegun) {
    choose("Germany Berlin");
    press();
    finishFetchOnly();
    bool ended = false;
    m_session.end([&ended] { ended = true; });
    settle();
    EXPECT_TRUE(ended);
    EXPECT_EQ(linesWith("--config"), 0);
}

} // namespace

} // namespace quorvane
