#include "HideIpSessionFixture.h"

namespace quorvane {

namespace {

TEST_F(HideIpSessionTest, PressWithoutInternetAlertsAndSwitchesOff) {
    api.setInetConnect(false);
    services.processes().setNames({"openvpn"});
    press();
    EXPECT_EQ(environment.events,
              QStringList{text("alert|Quorvane|No Internet connection detected, please check your Internet "
                               "settings.\n")});
    EXPECT_FALSE(shown().hideButton.on);
    EXPECT_EQ(services.scripting().calls().size(), 1U); // the tunnel is stopped
    EXPECT_TRUE(services.logSink().lines().contains(text("quorvaneButtonPressed no inet")));
}

TEST_F(HideIpSessionTest, PressWithoutServersAlertsAndLeavesTheTunnel) {
    api.model().setServerList({});
    services.processes().setNames({"openvpn"});
    press();
    EXPECT_EQ(environment.events, QStringList{text("alert|Quorvane|No available server detected.\n")});
    EXPECT_FALSE(shown().hideButton.on);
    EXPECT_TRUE(services.scripting().calls().empty());
    EXPECT_TRUE(services.logSink().lines().contains(text("quorvaneButtonPressed no vpn server list")));
}

TEST_F(HideIpSessionTest, NoInternetIsCheckedBeforeNoServers) {
    api.setInetConnect(false);
    api.model().setServerList({});
    press();
    EXPECT_EQ(environment.events.size(), 1);
    EXPECT_TRUE(environment.events.first().contains(text("No Internet")));
}

TEST_F(HideIpSessionTest, PressOnSearches) {
    press();
    EXPECT_EQ(environment.events, (QStringList{text("auth"), text("download")}));
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
    EXPECT_TRUE(environment.animating);
}

TEST_F(HideIpSessionTest, MissingCredentialsDropTheAttemptAndLeaveControlsDisabled) {
    environment.credentialsMissing = true;
    press();
    EXPECT_EQ(environment.events, QStringList{text("auth")});
    EXPECT_NE(shown().stateImage, text("appwait"));
    EXPECT_FALSE(shown().hideButton.enabled);
    EXPECT_FALSE(shown().advancedEnabled);
    EXPECT_FALSE(shown().hideItem.enabled);
    EXPECT_FALSE(shown().changeItemEnabled);
    EXPECT_FALSE(environment.animating);
}

TEST_F(HideIpSessionTest, SameIpReusesTheStoredConfiguration) {
    services.preferences().setValue(text("useSameIP"), true);
    press();
    EXPECT_EQ(environment.events, QStringList{text("auth")});
    EXPECT_TRUE(shown().advancedEnabled);
    EXPECT_FALSE(services.logSink().lines().contains(text("startVpn with button started")));
    deliverQueued();
    EXPECT_TRUE(services.logSink().lines().contains(text("startVpn with button started")));
    EXPECT_EQ(shown().hideItem.title, text("Stop Hiding IP"));
    EXPECT_TRUE(environment.animating);
}

TEST_F(HideIpSessionTest, WithoutAConfigurationTheAttemptSaysSoAndCanBeStopped) {
    services.preferences().setValue(text("useSameIP"), true);
    services.preferences().setValue(text("vpnConfigPath"), text("/no/such/file"));
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
    EXPECT_FALSE(environment.animating);
}

TEST_F(HideIpSessionTest, StartingTheTunnelSwitchesTheButtonOn) {
    QFile configuration(services.home() + text("/configuration"));
    ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
    services.preferences().setValue(text("vpnConfigPath"), configuration.fileName());
    display.switchedOn(false);
    session.startVpn();
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
    EXPECT_FALSE(environment.animating);
    EXPECT_TRUE(SessionState::shared().hidden);
    EXPECT_EQ(SessionState::shared().currentIp, text("203.0.113.7\n"));
    EXPECT_EQ(SessionState::shared().currentLocation, text("Germany Berlin"));
    EXPECT_EQ(SessionState::shared().currentCountryCode, text("de"));
    EXPECT_EQ(sessionLog(), QByteArray("connection success Random Location\n"));
}

TEST_F(HideIpSessionTest, SuccessWithoutAnItemLooksTheAddressUpWithoutItsLineFeed) {
    session.startVpn();
    session.showIp();
    EXPECT_EQ(SessionState::shared().currentCountryCode, text("de"));
    EXPECT_EQ(shown().line22.text, text("Berlin BER"));
}

TEST_F(HideIpSessionTest, UnknownCountryShowsTheUnknownFlag) {
    environment.lastData = std::make_shared<QrvVpnData>();
    environment.lastData->countryCode = text("QQ");
    session.showIp();
    EXPECT_EQ(shown().flagImage, text("xx"));
    EXPECT_EQ(SessionState::shared().currentCountryCode, text("qq"));
}

TEST_F(HideIpSessionTest, EmptyLentAddressFindsNoLocationAndLeavesTheLine) {
    goHidden();
    environment.lastTitle = QString();
    environment.lastData = nullptr;
    services.addResource(text("extractip.sh"), "exit 1\n");
    session.showIp();
    EXPECT_EQ(shown().line22.text, text("Germany Berlin"));
    EXPECT_EQ(shown().flagImage, text("xx"));
    EXPECT_TRUE(shown().currentIp.isEmpty());
}

TEST_F(HideIpSessionTest, SuccessLineIsNotWrittenWithoutALogFile) {
    ASSERT_TRUE(QFile::remove(logPath));
    goHidden();
    EXPECT_FALSE(QFile::exists(logPath));
}

TEST_F(HideIpSessionTest, PressOffReturnsToNotHidden) {
    answer("STATUS: 1<br />ClientIP: 198.51.100.10");
    goHidden();
    services.processes().setNames({"openvpn"});
    services.scripting().clear();
    press();
    EXPECT_EQ(services.scripting().calls().size(), 1U);
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
    EXPECT_EQ(services.preferences().value(text("quorvane")), QVariant(false));
    EXPECT_FALSE(services.preferences().value(text("hide")).isValid());
    EXPECT_GE(services.preferences().synchronizations(), 1);
}

TEST_F(HideIpSessionTest, HotKeysDoNothingInTheWrongState) {
    display.answerHandled();
    session.stopQuorvane(); // not hidden
    EXPECT_TRUE(environment.events.isEmpty());
    goHidden();
    environment.events.clear();
    session.quorvane(); // hidden
    EXPECT_TRUE(environment.events.isEmpty());
    EXPECT_TRUE(SessionState::shared().hidden);
}

TEST_F(HideIpSessionTest, HotKeysDoNothingWhileTheButtonIsDisabled) {
    session.quorvane();
    EXPECT_TRUE(environment.events.isEmpty());
    SessionState::shared().hidden = true;
    session.stopQuorvane();
    EXPECT_TRUE(SessionState::shared().hidden);
}

TEST_F(HideIpSessionTest, StopHidesTheRotationButtons) {
    goHidden();
    session.stopQuorvane();
    EXPECT_FALSE(SessionState::shared().hidden);
    EXPECT_FALSE(shown().changeIpVisible);
    EXPECT_FALSE(shown().discardIpVisible);
}

TEST_F(HideIpSessionTest, MenuItemFlipsTheButton) {
    display.answerHandled();
    session.quorvaneMenuItemPressed();
    EXPECT_EQ(environment.count("download"), 1);
    session.showIp();
    session.quorvaneMenuItemPressed();
    EXPECT_FALSE(SessionState::shared().hidden);
}

TEST_F(HideIpSessionTest, FixedLocationGivesUpAtOnce) {
    environment.selected = text("Germany Berlin");
    press();
    environment.events.clear();
    session.connectionError();
    EXPECT_EQ(environment.events,
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
    EXPECT_FALSE(environment.animating);
}

TEST_F(HideIpSessionTest, GivingUpLeavesTheHiddenFlag) {
    goHidden();
    environment.selected = text("Germany Berlin");
    session.connectionError();
    EXPECT_TRUE(SessionState::shared().hidden);
    EXPECT_FALSE(services.preferences().value(text("quorvane")).isValid());
}

TEST_F(HideIpSessionTest, RandomLocationIsTriedFourTimesInAll) {
    press();
    for (int i = 0; i < 4; ++i) {
        session.connectionError();
    }
    EXPECT_EQ(environment.count("download"), 4);
    EXPECT_EQ(environment.count("later|Location is not available.|Please try a different location."), 1);
    EXPECT_EQ(session.failedConnections(), 0);
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(services.logSink().lines().contains(text("rndLocationCounter= %1").arg(i)));
    }
}

TEST_F(HideIpSessionTest, AutomaticChangeIsTriedFourTimesWhateverIsSelected) {
    environment.selected = text("Germany Berlin");
    environment.automatic = true;
    press();
    for (int i = 0; i < 4; ++i) {
        session.connectionError();
    }
    EXPECT_EQ(environment.count("download"), 4);
    EXPECT_EQ(environment.count("later|Location is not available.|Please try a different location."), 1);
}

TEST_F(HideIpSessionTest, SuccessAndPressForgetFailures) {
    press();
    session.connectionError();
    session.connectionError();
    EXPECT_EQ(session.failedConnections(), 2);
    session.showIp();
    EXPECT_EQ(session.failedConnections(), 0);
    session.connectionError();
    EXPECT_EQ(session.failedConnections(), 1);
    session.quorvaneButtonPressed();
    EXPECT_EQ(session.failedConnections(), 0);
}

TEST_F(HideIpSessionTest, TimerIsArmedOnlyWhileHiddenWithTheBoxOnAndAnInterval) {
    for (const bool hidden : {false, true}) {
        for (const bool on : {false, true}) {
            for (const int minutes : {0, 1, 99}) {
                SessionState::shared().hidden = hidden;
                environment.automatic = on;
                services.preferences().setValue(text("changeIpInterval"), minutes);
                session.settingsDidChange();
                EXPECT_EQ(session.changeTimerArmed(), hidden && on && minutes > 0);
                EXPECT_EQ(services.delayedCalls().pending().size(), session.changeTimerArmed() ? 1U : 0U);
                EXPECT_EQ(shown().interval, minutes);
                EXPECT_EQ(shown().intervalEnabled, on);
                if (session.changeTimerArmed()) {
                    EXPECT_EQ(services.delayedCalls().pending()[0].delay, 60.0 * minutes);
                }
            }
        }
    }
}

TEST_F(HideIpSessionTest, TimerStopsAndStartsOnceAndIsRearmedBySuccess) {
    environment.automatic = true;
    services.preferences().setValue(text("changeIpInterval"), 2);
    goHidden();
    EXPECT_TRUE(session.changeTimerArmed());
    environment.events.clear();
    services.delayedCalls().advance(119.0);
    EXPECT_TRUE(environment.events.isEmpty());
    services.delayedCalls().advance(1.0);
    EXPECT_EQ(environment.events, (QStringList{text("auth"), text("download")}));
    EXPECT_FALSE(SessionState::shared().hidden); // an automatic change resets first
    EXPECT_FALSE(session.changeTimerArmed());
    services.delayedCalls().advance(1000.0);
    EXPECT_EQ(environment.count("download"), 1);
    session.showIp();
    EXPECT_TRUE(session.changeTimerArmed());
}

TEST_F(HideIpSessionTest, AResetAndAFailureForgetAnAttemptThatWaits) {
    environment.waiting = true;
    session.setDefaultControls();
    EXPECT_FALSE(environment.waiting);
    environment.waiting = true;
    environment.selected = text("Germany Berlin"); // a fixed location is not tried again
    session.connectionError();
    EXPECT_FALSE(environment.waiting);
}

TEST_F(HideIpSessionTest, EndingTheTunnelLeavesAnAttemptThatWaits) {
    environment.waiting = true;
    session.terminateVpn();
    EXPECT_TRUE(environment.waiting);
}

TEST_F(HideIpSessionTest, TerminatingCancelsTheTimer) {
    environment.automatic = true;
    services.preferences().setValue(text("changeIpInterval"), 2);
    goHidden();
    session.terminateVpn();
    EXPECT_FALSE(session.changeTimerArmed());
    EXPECT_TRUE(services.delayedCalls().pending().empty());
}

TEST_F(HideIpSessionTest, NewAddressWhileHiddenKeepsTheHiddenFlag) {
    goHidden();
    session.getNewIP();
    EXPECT_TRUE(SessionState::shared().hidden);
    EXPECT_EQ(shown().line1.text, searchingText);
}

} // namespace

} // namespace quorvane
