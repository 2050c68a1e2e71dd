// An attempt that waits for an unused location.
#include "HideIpSessionFixture.h"

namespace quorvane {

namespace {

class HideIpSessionWaitingTest : public HideIpSessionTest {
protected:
    /// Uses all five locations, one attempt after the other; the next random attempt waits.
    void useEveryLocation() {
        firstAnswer();
        for (int i = 0; i < 5; ++i) {
            hotKey(&HideIpSession::changeIpMenuItemPressed);
            finishFetch();
            comeUp();
        }
    }

    void waitForLocation() {
        useEveryLocation();
        hotKey(&HideIpSession::changeIpMenuItemPressed);
        ASSERT_EQ(phase(), Phase::Waiting);
    }
};

TEST_F(HideIpSessionWaitingTest, ItReportsThatItWaitsAndCanBeStopped) {
    waitForLocation();
    EXPECT_TRUE(shown().line3.text.startsWith(text("Every location has been used")));
    EXPECT_TRUE(shown().hideButton.enabled);
    EXPECT_TRUE(shown().refreshEnabled); // as its notice advises
    press();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_FALSE(shown().line3.visible);
    hotKey(&HideIpSession::resumeIfWaiting);
    EXPECT_EQ(phase(), Phase::NotHidden);
}

TEST_F(HideIpSessionWaitingTest, AnotherListContinuesIt) {
    waitForLocation();
    const int before = m_requests;
    fillList();
    settle();
    EXPECT_EQ(m_requests, before + 1);
    EXPECT_EQ(phase(), Phase::Fetching);
    EXPECT_FALSE(shown().hideButton.enabled);
}

TEST_F(HideIpSessionWaitingTest, RefreshedListContinuesItAndPressesNothing) {
    waitForLocation();
    EXPECT_TRUE(SessionState::shared().hidden);
    const int before = m_requests;
    m_session.refreshLocationsPressed();
    ASSERT_TRUE(
        m_services.urls().finishNext("STATUS: 0<br />ClientIP: 198.51.100.20<br />LOCATIONS: DE;BER;B;0"
                                     "<br />Server: 7,Berlin,BER,DE,Germany,x|203.0.113.7"
                                     "<br />Server: 8,Denver,DEN,US,States,x|203.0.113.8"));
    settle();
    EXPECT_EQ(m_requests, before + 1);
    EXPECT_EQ(phase(), Phase::Fetching);
    EXPECT_EQ(m_session.originalIP(), text("198.51.100.20")); // no tunnel was in use
    EXPECT_EQ(m_rotation.usedItems().size(), 6);              // the pick is not forgotten
}

TEST_F(HideIpSessionWaitingTest, UnitedStatesOnlyContinuesIt) {
    waitForLocation();
    SessionState::shared().hidden = false;
    const int before = m_requests;
    m_session.requireUSBasedIPButtonPressed(true);
    settleQueued();
    EXPECT_EQ(m_requests, before + 1);
}

TEST_F(HideIpSessionWaitingTest, SuccessOfAnotherAttemptEndsItForGood) {
    waitForLocation();
    choose("Germany Berlin");
    m_rotation.setUsedItems({});
    hotKey(&HideIpSession::getNewIP);
    finishFetch();
    comeUp();
    ASSERT_EQ(phase(), Phase::Hidden);
    const int before = m_requests;
    m_services.preferences().setValue(text("countryCode"), text("US"));
    m_session.requireUSBasedIPButtonPressed(true);
    settleQueued();
    EXPECT_EQ(phase(), Phase::Hidden);
    EXPECT_EQ(m_requests, before);
}

TEST_F(HideIpSessionWaitingTest, EndingTheTunnelLeavesIt) {
    waitForLocation();
    hotKey(&HideIpSession::terminateVpn);
    EXPECT_EQ(phase(), Phase::Waiting);
}

TEST_F(HideIpSessionWaitingTest, LastFailureEndsIt) {
    waitForLocation();
    choose("Germany Berlin"); // a fixed location is not tried again
    fail();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_FALSE(shown().line3.visible);
}

} // namespace

} // namespace quorvane
