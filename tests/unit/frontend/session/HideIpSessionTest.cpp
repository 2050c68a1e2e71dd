#include "HideIpSessionFixture.h"

namespace quorvane {

namespace {

TEST_F(HideIpSessionTest, PressWithoutInternetAlertsAndSwitchesOff) {
    m_api.setInetConnect(false);
    m_services.processes().setNames({"openvpn"});
    press();
    EXPECT_EQ(m_environment.events,
              QStringList{text("alert|Quorvane|No Internet connection detected, please check your Internet "
                               "settings.\n")});
    EXPECT_FALSE(shown().hideButton.on);
    EXPECT_EQ(m_services.scripting().calls().size(), 1U); // the tunnel is stopped
    EXPECT_TRUE(m_services.logSink().lines().contains(text("quorvaneButtonPressed no inet")));
}

TEST_F(HideIpSessionTest, PressWithoutServersAlertsAndLeavesTheTunnel) {
    m_api.model().setServerList({});
    m_services.processes().setNames({"openvpn"});
    press();
    EXPECT_EQ(m_environment.events, QStringList{text("alert|Quorvane|No available server detected.\n")});
    EXPECT_FALSE(shown().hideButton.on);
    EXPECT_TRUE(m_services.scripting().calls().empty());
    EXPECT_TRUE(m_services.logSink().lines().contains(text("quorvaneButtonPressed no vpn server list")));
}

TEST_F(HideIpSessionTest, NoInternetIsCheckedBeforeNoServers) {
    m_api.setInetConnect(false);
    m_api.model().setServerList({});
    press();
    EXPECT_EQ(m_environment.events.size(), 1);
    EXPECT_TRUE(m_environment.events.first().contains(text("No Internet")));
}

TEST_F(HideIpSessionTest, PressOnSearches) {
    press();
    EXPECT_EQ(m_environment.events, (QStringList{text("auth"), text("download")}));
    EXPECT_EQ(shown().line1, (DisplayState::Line{searchingText, Tone::Quiet, true}));
    EXPECT_FALSE(shown().line21.visible);
    EXPECT_FALSE(shown().line22.visible);
    EXPECT_FALSE(shown().line3.visible);
    EXPECT_FALSE(shown().flagVisible);
    EXPECT_EQ(shown().stateImage, text("appwait"));
    EXPECT_FALSE(shown().hideButton.enabled);
    EXPECT_FALSE(shown().changeItemEnabled);
    EXPECT_FALSE(shown().hideItem.enabled);
    EXPECT_FALSE(shown().advancedEnabled);
    EXPECT_FALSE(shown().changeIpVisible);
    EXPECT_FALSE(shown().discardIpVisible);
    EXPECT_TRUE(m_environment.animating);
}

TEST_F(HideIpSessionTest, MissingCredentialsDropTheAttemptAndLeaveControlsDisabled) {
    m_environment.credentialsMissing = true;
    press();
    EXPECT_EQ(m_environment.events, QStringList{text("auth")});
    EXPECT_NE(shown().stateImage, text("appwait"));
    EXPECT_FALSE(shown().hideButton.enabled);
    EXPECT_FALSE(shown().advancedEnabled);
    EXPECT_FALSE(shown().hideItem.enabled);
    EXPECT_FALSE(shown().changeItemEnabled);
    EXPECT_FALSE(m_environment.animating);
}

TEST_F(HideIpSessionTest, SameIpReusesTheStoredConfiguration) {
    m_services.preferences().setValue(text("useSameIP"), true);
    press();
    EXPECT_EQ(m_environment.events, QStringList{text("auth")});
    EXPECT_TRUE(shown().advancedEnabled);
    EXPECT_FALSE(m_services.logSink().lines().contains(text("startVpn with button started")));
    deliverQueued();
    EXPECT_TRUE(m_services.logSink().lines().contains(text("startVpn with button started")));
    EXPECT_EQ(shown().hideItem.title, text("Stop Hiding IP"));
    EXPECT_TRUE(m_environment.animating);
}

TEST_F(HideIpSessionTest, WithoutAConfigurationTheAttemptReportsItAndCanBeStopped) {
    m_services.preferences().setValue(text("useSameIP"), true);
    m_services.preferences().setValue(text("vpnConfigPath"), text("/no/such/file"));
    press();
    deliverQueued();
    EXPECT_EQ(shown().line1.text, searchingText);
    EXPECT_TRUE(shown().line3.visible);
    EXPECT_EQ(shown().line3.text, text("There is no VPN configuration to connect with. Choose a location to "
                                       "get a new one."));
    EXPECT_EQ(shown().hideButton, (DisplayState::Button{text("Stop Hiding IP"), true, true}));
    press();
    EXPECT_FALSE(shown().line3.visible);
    EXPECT_EQ(shown().hideButton, (DisplayState::Button{text("Quorvane"), true, false}));
    EXPECT_FALSE(m_environment.animating);
}

TEST_F(HideIpSessionTest, StartingTheTunnelSwitchesTheButtonOn) {
    QFile configuration(m_services.home() + text("/configuration"));
    ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
    m_services.preferences().setValue(text("vpnConfigPath"), configuration.fileName());
    m_display.switchedOn(false);
    m_session.startVpn();
    EXPECT_EQ(shown().hideItem.title, text("Stop Hiding IP"));
    EXPECT_TRUE(shown().hideButton.on);
    EXPECT_EQ(shown().hideButton.title, text("Quorvane"));
    EXPECT_FALSE(shown().line3.visible);
}

TEST_F(HideIpSessionTest, SuccessShowsTheLentAddress) {
    answer("STATUS: 1<br />ClientIP: 198.51.100.10");
    goHidden();
    EXPECT_EQ(shown().currentIp, text("203.0.113.7\n")); // exactly as the script printed it
    EXPECT_EQ(shown().line1, (DisplayState::Line{text("You are currently hiding your real IP 198.51.100.10"),
                                                 Tone::Plain, true}));
    EXPECT_EQ(shown().flagImage, text("de"));
    EXPECT_TRUE(shown().flagVisible);
    EXPECT_TRUE(shown().line21.visible);
    EXPECT_EQ(shown().line22.text, text("Germany Berlin"));
    EXPECT_TRUE(shown().line22.visible);
    EXPECT_EQ(shown().stateImage, text("applock"));
    EXPECT_EQ(shown().trayImage, text("TrayLock"));
    EXPECT_EQ(shown().hideButton, (DisplayState::Button{text("Stop Hiding IP"), true, true}));
    EXPECT_TRUE(shown().hideItem.enabled);
    EXPECT_TRUE(shown().changeItemEnabled);
    EXPECT_TRUE(shown().changeIpVisible);
    EXPECT_TRUE(shown().discardIpVisible);
    EXPECT_FALSE(m_environment.animating);
    EXPECT_TRUE(SessionState::shared().hidden);
    EXPECT_EQ(SessionState::shared().currentIp, text("203.0.113.7\n"));
    EXPECT_EQ(SessionState::shared().currentLocation, text("Germany Berlin"));
    EXPECT_EQ(SessionState::shared().currentCountryCode, text("de"));
    EXPECT_EQ(sessionLog(), QByteArray("connection success Random Location\n"));
}

TEST_F(HideIpSessionTest, SuccessWithoutAnItemLooksTheAddressUpWithoutItsLineFeed) {
    m_session.startVpn();
    m_session.showIp();
    EXPECT_EQ(SessionState::shared().currentCountryCode, text("de"));
    EXPECT_EQ(shown().line22.text, text("Berlin BER"));
}

TEST_F(HideIpSessionTest, UnknownCountryShowsTheUnknownFlag) {
    m_environment.lastData = std::make_shared<QrvVpnData>();
    m_environment.lastData->countryCode = text("QQ");
    m_session.showIp();
    EXPECT_EQ(shown().flagImage, text("xx"));
    EXPECT_EQ(SessionState::shared().currentCountryCode, text("qq"));
}

TEST_F(HideIpSessionTest, EmptyLentAddressFindsNoLocationAndLeavesTheLine) {
    goHidden();
    m_environment.lastTitle = QString();
    m_environment.lastData = nullptr;
    m_services.addResource(text("extractip.sh"), "exit 1\n");
    m_session.showIp();
    EXPECT_EQ(shown().line22.text, text("Germany Berlin"));
    EXPECT_EQ(shown().flagImage, text("xx"));
    EXPECT_TRUE(shown().currentIp.isEmpty());
}

TEST_F(HideIpSessionTest, SuccessLineIsNotWrittenWithoutALogFile) {
    ASSERT_TRUE(QFile::remove(m_logPath));
    goHidden();
    EXPECT_FALSE(QFile::exists(m_logPath));
}

TEST_F(HideIpSessionTest, PressOffReturnsToNotHidden) {
    answer("STATUS: 1<br />ClientIP: 198.51.100.10");
    goHidden();
    m_services.processes().setNames({"openvpn"});
    m_services.scripting().clear();
    press();
    EXPECT_EQ(m_services.scripting().calls().size(), 1U);
    EXPECT_EQ(shown().line1, (DisplayState::Line{warning, Tone::Warning, true}));
    EXPECT_EQ(shown().currentIp, text("198.51.100.10"));
    EXPECT_EQ(shown().hideButton, (DisplayState::Button{text("Quorvane"), true, false}));
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

TEST_F(HideIpSessionTest, HotKeysDoNothingInTheWrongState) {
    m_display.answerHandled();
    m_session.stopQuorvane(); // not hidden
    EXPECT_TRUE(m_environment.events.isEmpty());
    goHidden();
    m_environment.events.clear();
    m_session.quorvane(); // hidden
    EXPECT_TRUE(m_environment.events.isEmpty());
    EXPECT_TRUE(SessionState::shared().hidden);
}

TEST_F(HideIpSessionTest, HotKeysDoNothingWhileTheButtonIsDisabled) {
    m_session.quorvane();
    EXPECT_TRUE(m_environment.events.isEmpty());
    SessionState::shared().hidden = true;
    m_session.stopQuorvane();
    EXPECT_TRUE(SessionState::shared().hidden);
}

TEST_F(HideIpSessionTest, StopHidesTheRotationButtons) {
    goHidden();
    m_session.stopQuorvane();
    EXPECT_FALSE(SessionState::shared().hidden);
    EXPECT_FALSE(shown().changeIpVisible);
    EXPECT_FALSE(shown().discardIpVisible);
}

TEST_F(HideIpSessionTest, MenuItemFlipsTheButton) {
    m_display.answerHandled();
    m_session.quorvaneMenuItemPressed();
    EXPECT_EQ(m_environment.count("download"), 1);
    m_session.showIp();
    m_session.quorvaneMenuItemPressed();
    EXPECT_FALSE(SessionState::shared().hidden);
}

TEST_F(HideIpSessionTest, FixedLocationIsNotRetried) {
    m_environment.selected = text("Germany Berlin");
    press();
    m_environment.events.clear();
    m_session.connectionError();
    EXPECT_EQ(m_environment.events,
              QStringList{text("later|Location is not available.|Please try a different location.")});
    EXPECT_EQ(sessionLog(), QByteArray("connection error Germany Berlin\n"));
    EXPECT_EQ(shown().line1, (DisplayState::Line{warning, Tone::Warning, true}));
    EXPECT_EQ(shown().hideButton, (DisplayState::Button{text("Quorvane"), true, false}));
    EXPECT_EQ(shown().hideItem, (DisplayState::Item{text("Quorvane"), true}));
    EXPECT_TRUE(shown().changeItemEnabled);
    EXPECT_TRUE(shown().advancedEnabled);
    EXPECT_EQ(shown().stateImage, text("appmain"));
    EXPECT_EQ(shown().trayImage, text("Tray"));
    EXPECT_TRUE(shown().flagImage.isNull());
    EXPECT_FALSE(m_environment.animating);
}

TEST_F(HideIpSessionTest, GivingUpLeavesTheHiddenFlag) {
    goHidden();
    m_environment.selected = text("Germany Berlin");
    m_session.connectionError();
    EXPECT_TRUE(SessionState::shared().hidden);
    EXPECT_FALSE(m_services.preferences().value(text("quorvane")).isValid());
}

TEST_F(HideIpSessionTest, RandomLocationIsAttemptedFourTimesInAll) {
    press();
    for (int i = 0; i < 4; ++i) {
        m_session.connectionError();
    }
    EXPECT_EQ(m_environment.count("download"), 4);
    EXPECT_EQ(m_environment.count("later|Location is not available.|Please try a different location."), 1);
    EXPECT_EQ(m_session.failedConnections(), 0);
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(m_services.logSink().lines().contains(text("rndLocationCounter= %1").arg(i)));
    }
}

TEST_F(HideIpSessionTest, AutomaticChangeIsAttemptedFourTimesWhateverIsSelected) {
    m_environment.selected = text("Germany Berlin");
    m_environment.automatic = true;
    press();
    for (int i = 0; i < 4; ++i) {
        m_session.connectionError();
    }
    EXPECT_EQ(m_environment.count("download"), 4);
    EXPECT_EQ(m_environment.count("later|Location is not available.|Please try a different location."), 1);
}

TEST_F(HideIpSessionTest, SuccessAndPressForgetFailures) {
    press();
    m_session.connectionError();
    m_session.connectionError();
    EXPECT_EQ(m_session.failedConnections(), 2);
    m_session.showIp();
    EXPECT_EQ(m_session.failedConnections(), 0);
    m_session.connectionError();
    EXPECT_EQ(m_session.failedConnections(), 1);
    m_session.quorvaneButtonPressed();
    EXPECT_EQ(m_session.failedConnections(), 0);
}

TEST_F(HideIpSessionTest, TimerIsArmedOnlyWhileHiddenWithTheBoxOnAndAnInterval) {
    for (const bool hidden : {false, true}) {
        for (const bool on : {false, true}) {
            for (const int minutes : {0, 1, 99}) {
                SessionState::shared().hidden = hidden;
                m_environment.automatic = on;
                m_services.preferences().setValue(text("changeIpInterval"), minutes);
                m_session.settingsDidChange();
                EXPECT_EQ(m_session.changeTimerArmed(), hidden && on && minutes > 0);
                EXPECT_EQ(m_services.delayedCalls().pending().size(), m_session.changeTimerArmed() ? 1U : 0U);
                EXPECT_EQ(shown().interval, minutes);
                EXPECT_EQ(shown().intervalEnabled, on);
                if (m_session.changeTimerArmed()) {
                    EXPECT_EQ(m_services.delayedCalls().pending()[0].delay, 60.0 * minutes);
                }
            }
        }
    }
}

TEST_F(HideIpSessionTest, TimerStopsAndStartsOnceAndIsRearmedBySuccess) {
    m_environment.automatic = true;
    m_services.preferences().setValue(text("changeIpInterval"), 2);
    goHidden();
    EXPECT_TRUE(m_session.changeTimerArmed());
    m_environment.events.clear();
    m_services.delayedCalls().advance(119.0);
    EXPECT_TRUE(m_environment.events.isEmpty());
    m_services.delayedCalls().advance(1.0);
    EXPECT_EQ(m_environment.events, (QStringList{text("auth"), text("download")}));
    EXPECT_FALSE(SessionState::shared().hidden); // an automatic change resets first
    EXPECT_FALSE(m_session.changeTimerArmed());
    m_services.delayedCalls().advance(1000.0);
    EXPECT_EQ(m_environment.count("download"), 1);
    m_session.showIp();
    EXPECT_TRUE(m_session.changeTimerArmed());
}

TEST_F(HideIpSessionTest, AResetAndAFailureForgetAnAttemptThatWaits) {
    m_environment.waiting = true;
    m_session.setDefaultControls();
    EXPECT_FALSE(m_environment.waiting);
    m_environment.waiting = true;
    m_environment.selected = text("Germany Berlin"); // a fixed location is not tried again
    m_session.connectionError();
    EXPECT_FALSE(m_environment.waiting);
}

TEST_F(HideIpSessionTest, EndingTheTunnelLeavesAnAttemptThatWaits) {
    m_environment.waiting = true;
    m_session.terminateVpn();
    EXPECT_TRUE(m_environment.waiting);
}

TEST_F(HideIpSessionTest, TerminatingCancelsTheTimer) {
    m_environment.automatic = true;
    m_services.preferences().setValue(text("changeIpInterval"), 2);
    goHidden();
    m_session.terminateVpn();
    EXPECT_FALSE(m_session.changeTimerArmed());
    EXPECT_TRUE(m_services.delayedCalls().pending().empty());
}

TEST_F(HideIpSessionTest, NewAddressWhileHiddenKeepsTheHiddenFlag) {
    goHidden();
    m_session.getNewIP();
    EXPECT_TRUE(SessionState::shared().hidden);
    EXPECT_EQ(shown().line1.text, searchingText);
}

} // namespace

} // namespace quorvane
