// The effects of the service's answers on the session.
#include "HideIpSessionFixture.h"

namespace quorvane {

namespace {

TEST_F(HideIpSessionTest, AnswerShowsTheRealAddressAndEnablesTheControls) {
    answer("STATUS: 0<br />ClientIP: 198.51.100.10<br />LOCATIONS: DE;BER;Berlin;0<br />Server: " +
           m_serverLine.toUtf8());
    EXPECT_EQ(m_session.originalIP(), text("198.51.100.10"));
    EXPECT_EQ(shown().currentIp, text("198.51.100.10"));
    EXPECT_EQ(SessionState::shared().currentIp, text("198.51.100.10"));
    EXPECT_EQ(m_environment.events, (QStringList{text("fill 1"), text("show")}));
    EXPECT_TRUE(shown().hideButton.enabled);
    EXPECT_TRUE(shown().changeItemEnabled);
    EXPECT_TRUE(shown().hideItem.enabled);
    EXPECT_FALSE(shown().spinning);
    EXPECT_EQ(shown().trayImage, text("Tray"));
}

TEST_F(HideIpSessionTest, BackgroundStartShowsNoWindow) {
    m_environment.background = true;
    answer("STATUS: 0<br />ClientIP: 198.51.100.10<br />LOCATIONS: DE;BER;Berlin;0");
    EXPECT_EQ(m_environment.count("show"), 0);
}

TEST_F(HideIpSessionTest, AnswerWithoutLocationsShowsNoWindow) {
    answer("STATUS: 1<br />ClientIP: 198.51.100.10");
    EXPECT_EQ(m_environment.events, QStringList{text("fill 0")});
    EXPECT_TRUE(shown().hideButton.enabled); // every answer enables them at its end
}

TEST_F(HideIpSessionTest, AnswerWithoutAnAddressShowsZeroesAndAnAlertAndContinues) {
    answer("STATUS: 0<br />LOCATIONS: DE;BER;Berlin;0");
    EXPECT_EQ(
        m_environment.events.first(),
        text("alert|Error|There was a problem connecting to the Quorvane server, please check your Internet "
             "connection or firewall settings."));
    EXPECT_EQ(shown().currentIp, text("0.0.0.0"));
    EXPECT_EQ(m_session.originalIP(), text("0.0.0.0"));
    EXPECT_EQ(m_environment.count("show"), 1);
    EXPECT_TRUE(shown().hideButton.enabled);
}

TEST_F(HideIpSessionTest, FailedRequestShowsZeroesAndTheAlertOnceControlsStay) {
    m_session.qrvFailed();
    EXPECT_EQ(m_environment.events.size(), 1);
    EXPECT_TRUE(m_environment.events.first().startsWith(text("alert|Error|There was a problem connecting")));
    EXPECT_EQ(shown().currentIp, text("0.0.0.0"));
    EXPECT_FALSE(shown().hideButton.enabled);
    EXPECT_TRUE(shown().spinning);
}

TEST_F(HideIpSessionTest, AnswerOfAnotherKindEndsTheApplication) {
    m_api.setParameters(QString(), text("=x"));
    ASSERT_TRUE(m_services.urls().finishNext("STATUS: 0"));
    m_session.qrvAnswer();
    EXPECT_EQ(m_environment.count("terminate"), 1);
}

TEST_F(HideIpSessionTest, HiddenAtStartPressesTwice) {
    SessionState::shared().hidden = true;
    answer("STATUS: 0<br />ClientIP: 198.51.100.10<br />LOCATIONS: DE;BER;Berlin;0<br />Server: " +
           m_serverLine.toUtf8());
    EXPECT_EQ(m_environment.count("download"), 2);
    EXPECT_EQ(m_environment.count("frames"), 2);
    EXPECT_TRUE(shown().hideButton.on);
}

TEST_F(HideIpSessionTest, HiddenAtStartWithAnotherStatusPressesOnce) {
    SessionState::shared().hidden = true;
    answer("STATUS: 1<br />ClientIP: 198.51.100.10<br />LOCATIONS: DE;BER;Berlin;0<br />Server: " +
           m_serverLine.toUtf8());
    EXPECT_EQ(m_environment.count("download"), 1);
}

TEST_F(HideIpSessionTest, ContinuingWithTrueDoesNothing) {
    m_session.continueWork(true);
    EXPECT_FALSE(shown().hideButton.enabled);
}

TEST_F(HideIpSessionTest, ReconnectingActsOnlyWhileHidden) {
    m_session.reconectIfIpHidden();
    EXPECT_EQ(m_environment.count("download"), 0);
    SessionState::shared().hidden = true;
    m_session.reconectIfIpHidden();
    EXPECT_EQ(m_environment.count("download"), 1);
}

} // namespace

} // namespace quorvane
