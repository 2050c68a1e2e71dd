// The effects of the service's answers on the session.
#include "HideIpSessionFixture.h"

namespace quorvane {

namespace {

constexpr char noAddress[] =
    "alert|Error|There was a problem connecting to the Quorvane server, please check "
    "your Internet connection or firewall settings.";
constexpr char places[] = "<br />LOCATIONS: DE;BER;Berlin;0<br />VPNUser: u2<br />VPNPass: p2"
                          "<br />Server: 7,Berlin,BER,DE,Germany,x|203.0.113.17"
                          "<br />Server: 8,Denver,DEN,US,States,x|203.0.113.8"
                          "<br />Server: 8,Denver,DEN,US,States,x|203.0.113.18";

TEST_F(HideIpSessionTest, AnswerShowsTheRealAddressAndEnablesTheControls) {
    answer(QByteArray("STATUS: 0<br />ClientIP: 198.51.100.10") + places);
    EXPECT_EQ(m_session.originalIP(), text("198.51.100.10"));
    EXPECT_EQ(shown().currentIp, text("198.51.100.10"));
    EXPECT_EQ(SessionState::shared().currentIp, text("198.51.100.10"));
    EXPECT_EQ(m_windows.events, QStringList{text("show")});
    EXPECT_EQ(m_list.count(), 4);
    EXPECT_TRUE(shown().hideButton.enabled);
    EXPECT_TRUE(shown().changeItemEnabled);
    EXPECT_TRUE(shown().hideItem.enabled);
    EXPECT_FALSE(shown().spinning);
    EXPECT_EQ(shown().trayImage, text("Tray"));
    EXPECT_EQ(phase(), Phase::NotHidden);
}

TEST_F(HideIpSessionTest, BackgroundStartShowsNoWindow) {
    m_windows.background = true;
    answer("STATUS: 0<br />ClientIP: 198.51.100.10<br />LOCATIONS: DE;BER;Berlin;0");
    EXPECT_EQ(m_windows.count("show"), 0);
}

TEST_F(HideIpSessionTest, AnswerWithoutLocationsShowsNoWindow) {
    firstAnswer();
    EXPECT_TRUE(m_windows.events.isEmpty());
    EXPECT_TRUE(shown().hideButton.enabled); // every answer enables them at its end
}

TEST_F(HideIpSessionTest, AnswerWithoutAnAddressShowsZeroesAndAnAlertAndContinues) {
    answer("STATUS: 0<br />LOCATIONS: DE;BER;Berlin;0");
    EXPECT_EQ(m_windows.events, (QStringList{text(noAddress), text("show")}));
    EXPECT_EQ(shown().currentIp, text("0.0.0.0"));
    EXPECT_EQ(m_session.originalIP(), text("0.0.0.0"));
    EXPECT_TRUE(shown().hideButton.enabled);
}

TEST_F(HideIpSessionTest, FailedRequestShowsZeroesAndTheAlertOnceControlsStay) {
    m_api.cmdAuth(QString());
    ASSERT_TRUE(m_services.urls().failNext({platform::UrlError::Kind::Refused, text("refused")}));
    EXPECT_EQ(m_windows.events, QStringList{text(noAddress)});
    EXPECT_EQ(shown().currentIp, text("0.0.0.0"));
    EXPECT_FALSE(shown().hideButton.enabled);
    EXPECT_TRUE(shown().spinning);
}

TEST_F(HideIpSessionTest, AnswerOfAnotherKindEndsTheApplication) {
    m_api.setParameters(QString(), text("=x"));
    ASSERT_TRUE(m_services.urls().finishNext("STATUS: 0"));
    EXPECT_EQ(m_windows.count("terminate"), 1);
}

TEST_F(HideIpSessionTest, HiddenAtStartPressesTwice) {
    SessionState::shared().hidden = true;
    answer(QByteArray("STATUS: 0<br />ClientIP: 198.51.100.10") + places);
    EXPECT_EQ(m_requests, 2);
    EXPECT_EQ(m_windows.count("frames"), 2);
    EXPECT_TRUE(shown().hideButton.on);
    EXPECT_TRUE(m_windows.animating);
}

TEST_F(HideIpSessionTest, HiddenAtStartWithAnotherStatusPressesOnce) {
    SessionState::shared().hidden = true;
    answer(QByteArray("STATUS: 1<br />ClientIP: 198.51.100.10") + places);
    EXPECT_EQ(m_requests, 1);
}

TEST_F(HideIpSessionTest, OverlappingRequestsWithABadFirstAnswerDoNotEndTheApplication) {
    for (const char *bad : {"", "\xff\xfe", "Connection to the Quorvane API successful."}) {
        m_api.cmdAuth(QString());
        m_api.cmdAuth(QString());
        ASSERT_TRUE(m_services.urls().finishNext(bad));
        ASSERT_TRUE(
            m_services.urls().finishNext(QByteArray("STATUS: 0<br />ClientIP: 198.51.100.10") + places));
        settle();
        EXPECT_EQ(m_windows.count("terminate"), 0);
        EXPECT_EQ(m_windows.count(noAddress), 0);
        EXPECT_EQ(m_list.count(), 4);
    }
}

TEST_F(HideIpSessionTest, SecondRefreshWaitsForTheFirst) {
    firstAnswer();
    const std::size_t before = m_services.urls().downloads().size();
    m_session.refreshLocationsPressed();
    m_session.refreshLocationsPressed();
    m_session.refreshLocationsPressed();
    EXPECT_EQ(m_services.urls().downloads().size(), before + 1);
    ASSERT_TRUE(m_services.urls().finishNext("")); // no answer at all
    EXPECT_EQ(m_services.urls().downloads().size(), before + 2);
    ASSERT_TRUE(m_services.urls().finishNext(QByteArray("STATUS: 1<br />ClientIP: 198.51.100.10") + places));
    EXPECT_EQ(m_services.urls().downloads().size(), before + 2);
    EXPECT_EQ(m_list.count(), 4);
}

TEST_F(HideIpSessionTest, RefreshIsOfferedUnlessATunnelIsInUse) {
    firstAnswer();
    EXPECT_TRUE(shown().refreshEnabled);
    EXPECT_TRUE(shown().refreshHint.isNull());
    goHidden();
    const std::size_t before = m_services.urls().downloads().size();
    EXPECT_FALSE(shown().refreshEnabled);
    EXPECT_EQ(shown().refreshHint, text("Locations can be refreshed while your IP is not hidden."));
    m_session.refreshLocationsPressed();
    EXPECT_EQ(m_services.urls().downloads().size(), before);
    fail(); // gives up; the hidden flag stays
    EXPECT_TRUE(SessionState::shared().hidden);
    EXPECT_TRUE(shown().refreshEnabled);
}

TEST_F(HideIpSessionTest, AnswerWhileATunnelIsInUseRenewsTheListAndNothingElse) {
    firstAnswer();
    goHidden();
    m_windows.events.clear();
    const DisplayState before = shown();
    const int requests = m_requests;
    answer(QByteArray("STATUS: 0<br />ClientIP: 203.0.113.7") + places);
    EXPECT_EQ(m_list.count(), 4);
    EXPECT_EQ(m_list.title(m_list.currentRow()), text("Germany Berlin"));
    EXPECT_EQ(shown(), before);
    EXPECT_EQ(m_session.originalIP(), text("198.51.100.10"));
    EXPECT_EQ(m_requests, requests);
    EXPECT_TRUE(m_windows.events.isEmpty());
    EXPECT_FALSE(m_windows.animating);
}

TEST_F(HideIpSessionTest, AnswerWhileATunnelIsStartingLeavesTheAttempt) {
    firstAnswer();
    press();
    answer(QByteArray("STATUS: 0<br />ClientIP: 198.51.100.99") + places);
    EXPECT_EQ(phase(), Phase::Fetching);
    EXPECT_EQ(m_requests, 1);
    EXPECT_TRUE(m_windows.animating);
    EXPECT_EQ(m_session.originalIP(), text("198.51.100.10"));
    EXPECT_FALSE(shown().hideButton.enabled);
}

TEST_F(HideIpSessionTest, FailedRefreshKeepsTheKnownAddressAndSaysSoOnce) {
    firstAnswer();
    m_session.refreshLocationsPressed();
    ASSERT_TRUE(m_services.urls().failNext({platform::UrlError::Kind::Refused, text("refused")}));
    EXPECT_EQ(m_windows.events, QStringList{text(noAddress)});
    EXPECT_EQ(shown().currentIp, text("198.51.100.10"));
    m_windows.events.clear();
    m_session.refreshLocationsPressed();
    ASSERT_TRUE(m_services.urls().finishNext(QByteArray("STATUS: 1<br />ClientIP: ") + places));
    EXPECT_EQ(m_windows.count(noAddress), 1);
    EXPECT_EQ(shown().currentIp, text("198.51.100.10"));
    EXPECT_EQ(m_session.originalIP(), text("198.51.100.10"));
    EXPECT_EQ(m_list.count(), 4);
}

TEST_F(HideIpSessionTest, AddressOfAnAnswerThatWasNotTakenIsNotTakenWithTheNextOne) {
    firstAnswer();
    goHidden();
    answer(QByteArray("STATUS: 1<br />ClientIP: 203.0.113.7") + places);
    press();
    m_session.refreshLocationsPressed();
    ASSERT_TRUE(m_services.urls().finishNext(QByteArray("STATUS: 1") + places)); // without an address
    settle();
    EXPECT_EQ(m_session.originalIP(), text("198.51.100.10"));
    EXPECT_EQ(m_windows.count(noAddress), 1);
}

TEST_F(HideIpSessionTest, AnswerThatWaitedUntilTheTunnelEndedIsJudgedByItsArrival) {
    firstAnswer();
    m_session.refreshLocationsPressed();
    goHidden();
    m_services.processes().setNames({"init", "openvpn"});
    m_session.setDefaultControls(); // awaits the kill
    ASSERT_EQ(phase(), Phase::Hidden);
    ASSERT_TRUE(m_services.urls().finishNext(QByteArray("STATUS: 1<br />ClientIP: 203.0.113.7") + places));
    settle();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(m_session.originalIP(), text("198.51.100.10"));
    EXPECT_EQ(m_list.count(), 4);
}

TEST_F(HideIpSessionTest, ChosenPlaceStaysChosenByTitleAndFirstAddress) {
    answer(QByteArray("STATUS: 1<br />ClientIP: 198.51.100.10") + places);
    m_list.setCurrentRow(3); // the second of the two with this title
    answer(QByteArray("STATUS: 1<br />ClientIP: 198.51.100.10") + places);
    EXPECT_EQ(m_list.currentRow(), 3);
    answer("STATUS: 1<br />ClientIP: 198.51.100.10<br />Server: 8,Denver,DEN,US,States,x|203.0.113.99");
    EXPECT_EQ(m_list.title(m_list.currentRow()), text("States Denver"));
    answer("STATUS: 1<br />ClientIP: 198.51.100.10<br />Server: 7,Berlin,BER,DE,Germany,x|203.0.113.7");
    EXPECT_EQ(m_list.currentRow(), 0);
}

TEST_F(HideIpSessionTest, FirstAnswerDuringAnAttemptLeavesTheAttempt) {
    choose("Germany Berlin");
    hotKey(&HideIpSession::getNewIP);
    ASSERT_EQ(phase(), Phase::Fetching);
    answer(QByteArray("STATUS: 0<br />ClientIP: 203.0.113.7") + places);
    EXPECT_EQ(phase(), Phase::Fetching);
    EXPECT_EQ(m_session.originalIP(), text("0.0.0.0"));
    EXPECT_EQ(m_list.count(), 4);
    EXPECT_TRUE(m_windows.animating);
    EXPECT_FALSE(shown().hideButton.enabled);
    EXPECT_FALSE(shown().spinning);
}

TEST_F(HideIpSessionTest, AttemptThatBeganWhileTheAlertOfAnAnswerWasOpenGoesOn) {
    firstAnswer();
    m_windows.keepsOpen = true;
    answer(QByteArray("STATUS: 0<br />ClientIP: ") + places);
    ASSERT_EQ(m_windows.open.size(), 1);
    choose("Germany Berlin");
    hotKey(&HideIpSession::quorvane);
    ASSERT_EQ(phase(), Phase::Fetching);
    m_windows.close();
    settle();
    EXPECT_EQ(phase(), Phase::Fetching);
    EXPECT_TRUE(m_windows.animating);
    EXPECT_FALSE(shown().hideButton.enabled);
    EXPECT_EQ(m_list.count(), 4);
}

TEST_F(HideIpSessionTest, AlertOfAnAnswerLetsOtherEventsPass) {
    m_windows.keepsOpen = true;
    answer("STATUS: 1<br />LOCATIONS: DE;BER;Berlin;0");
    EXPECT_TRUE(shown().spinning);
    m_session.setRequiredUS(true);
    hotKey(&HideIpSession::setDefaultControls);
    EXPECT_EQ(phase(), Phase::NotHidden);
    m_windows.close();
    settle();
    EXPECT_FALSE(shown().spinning);
}

} // namespace

} // namespace quorvane
