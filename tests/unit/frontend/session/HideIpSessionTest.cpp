#include "HideIpSessionFixture.h"

namespace quorvane {

namespace {

TEST_F(HideIpSessionTest, PressWithoutInternetAlertsAndSwitchesOff) {
    m_api.setInetConnect(false);
    m_services.processes().setNames({"openvpn"});
    press();
    EXPECT_EQ(m_windows.events,
              QStringList{text("alert|Quorvane|No Internet connection detected, please check your Internet "
                               "settings.\n")});
    EXPECT_FALSE(shown().hideButton.on);
    EXPECT_EQ(linesWith("killall"), 1); // the tunnel is stopped
    EXPECT_TRUE(m_services.logSink().lines().contains(text("quorvaneButtonPressed no inet")));
}

TEST_F(HideIpSessionTest, TunnelIsStoppedAfterTheAlertIsDismissed) {
    m_api.setInetConnect(false);
    m_services.processes().setNames({"openvpn"});
    m_windows.keepsOpen = true;
    press();
    EXPECT_EQ(linesWith("killall"), 0);
    m_windows.close();
    settle();
    EXPECT_EQ(linesWith("killall"), 1);
}

TEST_F(HideIpSessionTest, StopWithoutInternetLeavesNoHiddenDisplay) {
    goHidden();
    m_api.setInetConnect(false);
    press();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_FALSE(SessionState::shared().hidden);
}

TEST_F(HideIpSessionTest, PressWithoutServersAlertsAndLeavesTheTunnel) {
    m_api.model().setServerList({});
    m_services.processes().setNames({"openvpn"});
    press();
    EXPECT_EQ(m_windows.events, QStringList{text("alert|Quorvane|No available server detected.\n")});
    EXPECT_FALSE(shown().hideButton.on);
    EXPECT_TRUE(m_services.scripting().calls().empty());
    EXPECT_TRUE(m_services.logSink().lines().contains(text("quorvaneButtonPressed no vpn server list")));
}

TEST_F(HideIpSessionTest, NoInternetIsCheckedBeforeNoServers) {
    m_api.setInetConnect(false);
    m_api.model().setServerList({});
    press();
    EXPECT_EQ(m_windows.events.size(), 1);
    EXPECT_TRUE(m_windows.events.first().contains(text("No Internet")));
}

TEST_F(HideIpSessionTest, PressOnSearches) {
    press();
    EXPECT_EQ(linesWith("ls "), 1);
    EXPECT_EQ(m_requests, 1);
    EXPECT_EQ(phase(), Phase::Fetching);
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
    EXPECT_TRUE(m_windows.animating);
}

TEST_F(HideIpSessionTest, PressIsNotBlockedByTheTestOfThePair) {
    m_session.quorvaneButtonPressed(true);
    EXPECT_EQ(phase(), Phase::Checking);
    EXPECT_FALSE(shown().hideButton.enabled);
    EXPECT_EQ(m_services.background().pending(), 1U);
    EXPECT_TRUE(m_services.scripting().calls().empty());
    settle();
    EXPECT_EQ(phase(), Phase::Fetching);
}

TEST_F(HideIpSessionTest, MissingCredentialsDropTheAttemptAndLeaveControlsDisabled) {
    refusePair();
    m_windows.keepsOpen = true;
    press();
    EXPECT_EQ(m_windows.events, QStringList{text("dialog")});
    EXPECT_EQ(phase(), Phase::Dropped);
    EXPECT_NE(shown().stateImage, text("appwait"));
    EXPECT_FALSE(shown().hideButton.enabled);
    EXPECT_FALSE(shown().advancedEnabled);
    EXPECT_FALSE(shown().hideItem.enabled);
    EXPECT_FALSE(shown().changeItemEnabled);
    EXPECT_FALSE(m_windows.animating);
    EXPECT_EQ(m_requests, 0);
    deliverQueued(); // the refused command resets the session while the dialog is open
    settle();
    EXPECT_EQ(phase(), Phase::NotHidden);
    m_windows.close();
    settle();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(m_requests, 0);
}

TEST_F(HideIpSessionTest, SameIpReusesTheStoredConfiguration) {
    m_services.preferences().setValue(text("useSameIP"), true);
    QFile configuration(m_services.home() + text("/configuration"));
    ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
    m_services.preferences().setValue(text("vpnConfigPath"), configuration.fileName());
    press();
    EXPECT_EQ(m_requests, 0);
    EXPECT_TRUE(shown().advancedEnabled);
    EXPECT_TRUE(m_services.logSink().lines().contains(text("startVpn with button started")));
    EXPECT_EQ(linesWith("--config"), 1);
    EXPECT_EQ(shown().hideItem.title, text("Stop Hiding IP"));
    EXPECT_TRUE(m_windows.animating);
}

TEST_F(HideIpSessionTest, WithoutAConfigurationTheAttemptReportsItAndCanBeStopped) {
    m_services.preferences().setValue(text("useSameIP"), true);
    m_services.preferences().setValue(text("vpnConfigPath"), text("/no/such/file"));
    press();
    EXPECT_EQ(phase(), Phase::Unconfigured);
    EXPECT_EQ(shown().line1.text, searchingText);
    EXPECT_TRUE(shown().line3.visible);
    EXPECT_EQ(shown().line3.text, text("There is no VPN configuration to connect with. Choose a location to "
                                       "get a new one."));
    EXPECT_EQ(shown().hideButton,
              (DisplayState::Button{text("Stop Hiding IP"), true, true, text("Stops hiding your real IP")}));
    press();
    EXPECT_FALSE(shown().line3.visible);
    EXPECT_EQ(shown().hideButton,
              (DisplayState::Button{text("Quorvane"), true, false, text("Hides your real IP")}));
    EXPECT_FALSE(m_windows.animating);
}

TEST_F(HideIpSessionTest, StartingTheTunnelSwitchesTheButtonOn) {
    hotKey(&HideIpSession::changeIpMenuItemPressed); // leaves the button as it is
    EXPECT_FALSE(shown().hideButton.on);
    finishFetch();
    EXPECT_EQ(phase(), Phase::Connecting);
    EXPECT_EQ(shown().hideItem.title, text("Stop Hiding IP"));
    EXPECT_TRUE(shown().hideButton.on);
    EXPECT_EQ(shown().hideButton.title, text("Quorvane"));
    EXPECT_TRUE(shown().advancedEnabled);
    EXPECT_FALSE(shown().line3.visible);
}

TEST_F(HideIpSessionTest, SuccessShowsTheLentAddress) {
    firstAnswer();
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
    EXPECT_EQ(shown().hideButton,
              (DisplayState::Button{text("Stop Hiding IP"), true, true, text("Stops hiding your real IP")}));
    EXPECT_TRUE(shown().hideItem.enabled);
    EXPECT_TRUE(shown().changeItemEnabled);
    EXPECT_TRUE(shown().changeIpVisible);
    EXPECT_TRUE(shown().discardIpVisible);
    EXPECT_FALSE(m_windows.animating);
    EXPECT_TRUE(SessionState::shared().hidden);
    EXPECT_EQ(SessionState::shared().currentIp, text("203.0.113.7\n"));
    EXPECT_EQ(SessionState::shared().currentLocation, text("Germany Berlin"));
    EXPECT_EQ(SessionState::shared().currentCountryCode, text("de"));
    EXPECT_TRUE(sessionLog().endsWith("connection success Germany Berlin\n"));
}

TEST_F(HideIpSessionTest, AddressIsReadBesideTheWindowAndWhatArrivesMeanwhileComesAfterIt) {
    choose("Germany Berlin");
    press();
    finishFetch();
    m_session.showIp();
    EXPECT_EQ(phase(), Phase::Connecting);
    m_session.stopQuorvane(); // while the address is being read: the IP is hidden when it is handled
    EXPECT_EQ(phase(), Phase::Connecting);
    settle();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_TRUE(sessionLog().endsWith("connection success Germany Berlin\n"));
}

TEST_F(HideIpSessionTest, TunnelThatIsUpIsShownBeforeTheEventsThatWait) {
    choose("Germany Berlin");
    press();
    finishFetch();
    m_events.post([this]() -> Task<> {
        m_session.setDefaultControls();
        m_session.showIp();
        co_return;
    });
    settle();
    EXPECT_EQ(phase(), Phase::NotHidden);
}

TEST_F(HideIpSessionTest, LookUpsUseTheAddressWithoutItsLineFeed) {
    m_services.preferences().setValue(text("useSameIP"), true); // no item was picked in this run
    QFile configuration(m_services.home() + text("/configuration"));
    ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
    m_services.preferences().setValue(text("vpnConfigPath"), configuration.fileName());
    press();
    comeUp();
    EXPECT_EQ(SessionState::shared().currentCountryCode, text("de"));
    EXPECT_EQ(shown().line22.text, text("Berlin BER"));
}

TEST_F(HideIpSessionTest, UnknownCountryShowsTheUnknownFlag) {
    choose("Norway Oslo");
    press();
    finishFetch();
    comeUp();
    EXPECT_EQ(shown().flagImage, text("xx"));
    EXPECT_EQ(SessionState::shared().currentCountryCode, text("no"));
}

TEST_F(HideIpSessionTest, EmptyLentAddressFindsNoLocation) {
    m_services.preferences().setValue(text("useSameIP"), true);
    QFile configuration(m_services.home() + text("/configuration"));
    ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
    m_services.preferences().setValue(text("vpnConfigPath"), configuration.fileName());
    m_lentIp = QString();
    press();
    comeUp();
    EXPECT_EQ(shown().flagImage, text("xx"));
    EXPECT_TRUE(shown().currentIp.isEmpty());
    EXPECT_TRUE(shown().line22.text.isEmpty());
}

TEST_F(HideIpSessionTest, TunnelThatIsUpIsShownUntilALaterAttemptStartsItsOwn) {
    choose("Germany Berlin");
    press();
    finishFetch();
    hotKey(&HideIpSession::getNewIP); // the dialog's start, for instance
    EXPECT_EQ(phase(), Phase::Fetching);
    comeUp();
    EXPECT_EQ(phase(), Phase::Hidden);
    EXPECT_FALSE(m_windows.animating);
    finishFetch();
    EXPECT_EQ(phase(), Phase::Connecting);
    EXPECT_EQ(shown().line1.text, searchingText);
    EXPECT_FALSE(shown().hideButton.enabled);
    EXPECT_TRUE(m_windows.animating);
}

TEST_F(HideIpSessionTest, TunnelThatWasEndedIsNotShown) {
    choose("Germany Berlin");
    press();
    finishFetch();
    hotKey(&HideIpSession::setDefaultControls);
    comeUp();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_FALSE(SessionState::shared().hidden);
}

TEST_F(HideIpSessionTest, AddressIsNotTakenForTheRealOneWhileATunnelCannotBeKilled) {
    firstAnswer();
    goHidden();
    m_services.processes().setNames({"init", "openvpn"});
    refusePair();
    hotKey(&HideIpSession::setDefaultControls);
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_FALSE(shown().refreshEnabled);
    answer("STATUS: 1<br />ClientIP: 203.0.113.7");
    EXPECT_EQ(m_session.originalIP(), text("198.51.100.10"));
}

} // namespace

} // namespace quorvane
