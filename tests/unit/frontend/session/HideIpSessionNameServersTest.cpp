// The name servers around a session, when the user wants them back.
#include "HideIpSessionFixture.h"

namespace quorvane {

namespace {

class HideIpSessionNameServersTest : public HideIpSessionTest {
protected:
    HideIpSessionNameServersTest() {
        m_services.scripting().setHandler([this](const fakes::FakeScriptingService::Call &call) {
            const bool isSet = call.line.startsWith(text("networksetup -setdnsservers "));
            if (isSet && m_refuses) {
                return fakes::FakeScriptingService::failure(1, text("no"));
            }
            if (isSet) {
                m_servers = call.line.section(u' ', 3).trimmed();
                m_order.append(m_servers);
            } else if (call.line.contains(text("--config"))) {
                m_order.append(text("tunnel"));
            }
            return fakes::FakeScriptingService::success(
                call.line.startsWith(text("networksetup -get")) ? m_servers : text(""));
        });
    }

    void want(bool wanted) { m_services.preferences().setValue(text("restoreDns"), wanted); }

    const QString m_ours = text("8.8.8.8 8.8.4.4");
    const QString m_home = text("192.168.1.1");
    QString m_servers = m_home;
    QStringList m_order;
    bool m_refuses = false;
};

TEST_F(HideIpSessionNameServersTest, WithoutTheWishNoLineIsAboutThem) {
    firstAnswer();
    goHidden();
    press();
    EXPECT_EQ(linesWith("networksetup"), 0);
    EXPECT_FALSE(m_services.preferences().value(text("restoreDns")).isValid());
    EXPECT_FALSE(m_services.preferences().value(text("dnsBefore")).isValid());
}

TEST_F(HideIpSessionNameServersTest, AreSetBeforeTheTunnelAndPutBackAfterTheStop) {
    want(true);
    firstAnswer();
    goHidden();
    EXPECT_EQ(m_order, (QStringList{m_ours, m_ours, m_ours, text("tunnel")}));
    m_order.clear();
    press();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(m_servers, m_home);
    EXPECT_FALSE(m_services.preferences().value(text("dnsBefore")).isValid());
    goHidden();
    EXPECT_EQ(m_servers, m_ours) << "the next session has them again";
}

TEST_F(HideIpSessionNameServersTest, StayWhileTheAddressIsChanged) {
    want(true);
    firstAnswer();
    goHidden();
    m_order.clear();
    hotKey(&HideIpSession::changeIpButtonPressed);
    finishFetch();
    comeUp();
    EXPECT_FALSE(m_order.contains(m_home));
    EXPECT_EQ(m_servers, m_ours);
}

TEST_F(HideIpSessionNameServersTest, ArePutBackWhenTheAttemptIsGivenUp) {
    want(true);
    firstAnswer();
    choose("Germany Berlin");
    press();
    finishFetch();
    EXPECT_EQ(m_servers, m_ours);
    fail();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(m_servers, m_home);
}

TEST_F(HideIpSessionNameServersTest, ArePutBackAtTheEndOfTheProgram) {
    want(true);
    firstAnswer();
    goHidden();
    bool ended = false;
    m_session.end([&ended] { ended = true; });
    settle();
    EXPECT_TRUE(ended);
    EXPECT_EQ(m_servers, m_home);
}

TEST_F(HideIpSessionNameServersTest, ARefusalKeepsThemForTheNextTime) {
    want(true);
    firstAnswer();
    goHidden();
    m_refuses = true;
    press();
    settleQueued();
    EXPECT_EQ(phase(), Phase::NotHidden);
    EXPECT_EQ(m_services.preferences().string(text("dnsBefore")),
              text("Ethernet=192.168.1.1|Wi-Fi=192.168.1.1|AirPort=192.168.1.1"));
    m_refuses = false;
    goHidden();
    press();
    EXPECT_EQ(m_servers, m_home);
}

} // namespace

} // namespace quorvane
