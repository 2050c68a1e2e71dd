#include "PortalFixture.h"

namespace quorvane::platform {

namespace {

using Answer = FakePortal::Answer;

/// The list goes with the request for a session; BindShortcuts follows for what the session then lacks.
class PortalListTest : public PortalFixture {
protected:
    [[nodiscard]] bool waitForList(int number = 1) {
        return spinUntil([&] { return m_portal->count("ListShortcuts") == number; });
    }
};

TEST_F(PortalListTest, SessionIsRequestedWithTheShortcuts) {
    m_portal->acceptsOffered = true;
    m_service->setDescription(1, QStringLiteral("Hide IP"));
    registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForList());
    ASSERT_EQ(m_portal->offered.size(), 2);
    EXPECT_EQ(m_portal->offered.at(0).id, idOfHide);
    EXPECT_EQ(m_portal->offered.at(0).description, QStringLiteral("Hide IP"));
    EXPECT_EQ(m_portal->offered.at(0).trigger, QStringLiteral("LOGO+1"));
    EXPECT_EQ(m_portal->offered.at(1).trigger, QStringLiteral("LOGO+2"));
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_EQ(m_portal->count("BindShortcuts"), 0) << "nothing is bound twice, no window opens";
    EXPECT_TRUE(m_refused.isEmpty());
}

TEST_F(PortalListTest, OnlyMissingShortcutsAreBound) {
    m_portal->acceptsOffered = true;
    m_portal->notAccepted = QStringList{idOfStop};
    registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding());
    EXPECT_EQ(m_portal->ids(), QStringList(idOfStop));
    EXPECT_TRUE(fires(idOfHide, 1));
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_TRUE(m_refused.isEmpty());
}

TEST_F(PortalListTest, RefusalOfTheMissingOnesLeavesTheOthers) {
    m_portal->acceptsOffered = true;
    m_portal->notAccepted = QStringList{idOfStop};
    for (const Answer answer : {Answer::No, Answer::Error, Answer::Garbage}) {
        m_portal->toBind = answer;
        m_refused.clear();
        m_hide = registerKey(codeOf1, HotKeyService::command, 1);
        m_stop = registerKey(codeOf2, HotKeyService::command, 3);
        ASSERT_TRUE(waitForRefusals({{m_stop, HotKeyError::Declined}}));
        EXPECT_TRUE(fires(idOfHide, 1));
        m_service->unregisterHotKey(m_hide);
        const auto sessions = m_portal->closed.size();
        ASSERT_TRUE(spinUntil([&] { return m_portal->closed.size() > sessions; }));
    }
}

TEST_F(PortalListTest, PortalThatCannotListReceivesAllShortcuts) {
    for (const Answer answer : {Answer::Error, Answer::No, Answer::Garbage}) {
        m_portal->toList = answer;
        m_hide = registerKey(codeOf1, HotKeyService::command, 1);
        const int before = m_portal->count("BindShortcuts");
        ASSERT_TRUE(waitForBinding(before + 1));
        EXPECT_EQ(m_portal->ids(), QStringList(idOfHide));
        EXPECT_TRUE(fires(idOfHide, 1));
        m_service->unregisterHotKey(m_hide);
        const auto sessions = m_portal->closed.size();
        ASSERT_TRUE(spinUntil([&] { return m_portal->closed.size() > sessions; }));
    }
    EXPECT_TRUE(m_refused.isEmpty());
}

TEST_F(PortalListTest, ListThatNeverComesTimesOut) {
    m_portal->toList = Answer::Never;
    m_service = make(50);
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::NotAvailable}}));
    EXPECT_TRUE(spinUntil([this] { return m_portal->closed.contains(m_portal->session); }));
    EXPECT_EQ(m_portal->count("BindShortcuts"), 0);
}

TEST_F(PortalListTest, ChangeWhileTheSessionIsListedMeansANewSession) {
    m_portal->acceptsOffered = true;
    m_portal->toList = Answer::Never;
    registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForList());
    m_portal->toList = Answer::Yes;
    registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForList(2));
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_EQ(m_portal->count("CreateSession"), 2);
    EXPECT_EQ(m_portal->count("BindShortcuts"), 0);
}

} // namespace

} // namespace quorvane::platform
