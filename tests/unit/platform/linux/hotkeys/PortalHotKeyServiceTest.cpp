#include "PortalFixture.h"

#include <QElapsedTimer>

namespace quorvane::platform {

namespace {

using Answer = FakePortal::Answer;

class PortalHotKeyServiceTest : public PortalFixture {};

TEST_F(PortalHotKeyServiceTest, OneDialogForRegistrationsCloseTogether) {
    m_service->setDescription(1, QStringLiteral("Hide IP"));
    EXPECT_TRUE(m_service->isAvailable());
    registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOfF1, HotKeyService::control, 2);
    registerKey(codeOfUp, HotKeyService::command, 3);
    registerKey(0, HotKeyService::shift, 4);
    registerKey(codeOf2, HotKeyService::command + HotKeyService::shift + HotKeyService::control, 5);
    EXPECT_TRUE(m_portal->calls.isEmpty()) << "the portal is not called within the call";
    ASSERT_TRUE(waitForBinding());
    QStringList triggers;
    for (const FakePortal::Shortcut &shortcut : std::as_const(m_portal->shortcuts)) {
        triggers.append(shortcut.trigger);
    }
    EXPECT_EQ(triggers,
              QStringList({QStringLiteral("LOGO+1"), QStringLiteral("CTRL+F1"), QStringLiteral("LOGO+Up"),
                           QStringLiteral("SHIFT+a"), QStringLiteral("CTRL+SHIFT+LOGO+2")}));
    EXPECT_EQ(m_portal->shortcuts.at(0).description, QStringLiteral("Hide IP"));
    EXPECT_FALSE(m_portal->shortcuts.at(1).description.isEmpty());
    EXPECT_EQ(m_portal->applicationId, QStringLiteral("com.tallowind.Quorvane"));
    quint32 action = 0;
    const QStringList ids = m_portal->ids();
    for (const QString &id : ids) {
        EXPECT_TRUE(fires(id, ++action)) << id.toStdString();
    }
    EXPECT_EQ(m_portal->count("BindShortcuts"), 1);
    EXPECT_EQ(m_portal->count("CreateSession"), 1);
    EXPECT_TRUE(m_refused.isEmpty());
}

TEST_F(PortalHotKeyServiceTest, CreatesNoSessionWhileNothingIsWanted) {
    ASSERT_TRUE(spinUntil([this] { return m_portal->count("Get") == 1; }));
    const HotKeyReference passing = registerKey(codeOf1, HotKeyService::command, 1);
    EXPECT_EQ(m_service->unregisterHotKey(passing), HotKeyError::None);
    deliverQueued();
    // A later call on the same connection shows that no such call came before it.
    m_service = make();
    ASSERT_TRUE(spinUntil([this] { return m_portal->count("Get") == 2; }));
    EXPECT_EQ(m_portal->count("CreateSession"), 0);
}

TEST_F(PortalHotKeyServiceTest, OwnRegistryIsCheckedFirst) {
    registerKey(codeOf1, HotKeyService::command, 1);
    EXPECT_EQ(m_service->registerHotKey(codeOf1, HotKeyService::command, {0, 2}).error,
              HotKeyError::AlreadyHeld);
    EXPECT_EQ(m_service->registerHotKey(1, HotKeyService::command, {}).error, HotKeyError::UnknownKey);
    EXPECT_EQ(m_service->unregisterHotKey(77), HotKeyError::UnknownReference);
    ASSERT_TRUE(waitForBinding());
    EXPECT_EQ(m_portal->ids(), QStringList(idOfHide));
}

TEST_F(PortalHotKeyServiceTest, ChangedListMeansANewSessionAfterTheOldOne) {
    registerTwo();
    const QString before = m_portal->session;
    EXPECT_EQ(m_service->unregisterHotKey(m_hide), HotKeyError::None);
    EXPECT_EQ(m_service->unregisterHotKey(m_hide), HotKeyError::UnknownReference);
    registerKey(codeOfF1, HotKeyService::control, 2);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_EQ(m_portal->closed, QStringList(before));
    EXPECT_LT(m_portal->calls.lastIndexOf(QStringLiteral("Close")),
              m_portal->calls.lastIndexOf(QStringLiteral("CreateSession")));
    EXPECT_EQ(m_portal->ids(), QStringList({QStringLiteral("hotkey-2-4096-122"), idOfStop}));
    EXPECT_TRUE(fires(idOfStop, 3));
    m_portal->activate(idOfHide);
    EXPECT_TRUE(fires(QStringLiteral("hotkey-2-4096-122"), 2)) << "the unregistered key has no effect";
}

TEST_F(PortalHotKeyServiceTest, SameListAgainIsNoChange) {
    registerTwo();
    m_service->unregisterHotKey(m_hide);
    const HotKeyReference again = registerKey(codeOf1, HotKeyService::command, 1);
    EXPECT_NE(again, m_hide);
    EXPECT_TRUE(fires(idOfHide, 1));
    EXPECT_EQ(m_portal->count("BindShortcuts"), 1);
    EXPECT_TRUE(m_portal->closed.isEmpty());
}

TEST_F(PortalHotKeyServiceTest, UnregisteringTheLastKeyEndsTheSession) {
    registerTwo();
    const QString before = m_portal->session;
    m_service->unregisterHotKey(m_hide);
    m_service->unregisterHotKey(m_stop);
    ASSERT_TRUE(spinUntil([&] { return m_portal->closed == QStringList(before); }));
    registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_TRUE(fires(idOfHide, 1));
}

TEST_F(PortalHotKeyServiceTest, ChangeWhileTheDialogIsOpenClosesIt) {
    m_portal->toBind = Answer::Never;
    registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    const QString dialog = m_portal->bindRequest;
    const QString before = m_portal->session;
    m_portal->toBind = Answer::Yes;
    registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_EQ(m_portal->closed, QStringList({dialog, before}));
    EXPECT_EQ(m_portal->ids(), QStringList({idOfHide, idOfStop}));
    EXPECT_TRUE(fires(idOfHide, 1));
    EXPECT_TRUE(m_refused.isEmpty());
}

TEST_F(PortalHotKeyServiceTest, RefusalByTheUserWithdrawsEverything) {
    m_portal->toBind = Answer::No;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    m_stop = registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::Declined}, {m_stop, HotKeyError::Declined}}));
    EXPECT_EQ(m_service->unregisterHotKey(m_hide), HotKeyError::UnknownReference);
    EXPECT_TRUE(m_service->isAvailable());
    m_portal->toBind = Answer::Yes;
    registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_TRUE(fires(idOfHide, 1));
}

TEST_F(PortalHotKeyServiceTest, OnlyOmittedShortcutsAreWithdrawn) {
    m_portal->onlyBound = QStringList{idOfStop};
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    m_stop = registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::Declined}}));
    m_portal->activate(idOfHide);
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_EQ(m_portal->count("BindShortcuts"), 1) << "no second dialog for the remaining shortcuts";
    EXPECT_EQ(m_service->unregisterHotKey(m_stop), HotKeyError::None);
    EXPECT_TRUE(spinUntil([this] { return !m_portal->closed.isEmpty(); }));
}

TEST_F(PortalHotKeyServiceTest, SessionWithoutShortcutsIsEnded) {
    m_portal->onlyBound = QStringList{};
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::Declined}}));
    EXPECT_TRUE(spinUntil([this] { return m_portal->closed == QStringList(m_portal->session); }));
}

TEST_F(PortalHotKeyServiceTest, ReplyToAnEarlierRequestIsIgnored) {
    m_portal->toBind = Answer::Silence;
    registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    m_portal->toBind = Answer::Never;
    registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    m_portal->replyLate();
    m_portal->answerBinding({idOfHide, idOfStop});
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_TRUE(m_refused.isEmpty());
}

TEST_F(PortalHotKeyServiceTest, UserMayDecideLate) {
    m_portal->toBind = Answer::Never;
    m_service = make(maximumWaitMilliseconds);
    registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(spinUntil([&] { return clock.elapsed() > maximumWaitMilliseconds + 200; }));
    EXPECT_TRUE(m_service->isAvailable());
    EXPECT_TRUE(m_refused.isEmpty());
    m_portal->answerBinding({idOfHide});
    EXPECT_TRUE(fires(idOfHide, 1));
}

TEST_F(PortalHotKeyServiceTest, AnswerAfterUnregisteringChangesNothing) {
    m_portal->toBind = Answer::Never;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    const QString before = m_portal->session;
    EXPECT_EQ(m_service->unregisterHotKey(m_hide), HotKeyError::None);
    ASSERT_TRUE(spinUntil([&] { return m_portal->closed.contains(before); }));
    m_portal->answerBinding({idOfHide});
    m_portal->activateIn(before, idOfHide);
    m_portal->toBind = Answer::Yes;
    registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_TRUE(m_refused.isEmpty());
}

TEST_F(PortalHotKeyServiceTest, UnregisteringWhileTheSessionIsCreatedClosesIt) {
    m_portal->toCreate = Answer::Never;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(spinUntil([this] { return m_portal->count("CreateSession") == 1; }));
    m_service->unregisterHotKey(m_hide);
    deliverQueued();
    m_portal->answerCreation();
    EXPECT_TRUE(spinUntil([this] { return m_portal->closed == QStringList(m_portal->session); }));
    EXPECT_EQ(m_portal->count("BindShortcuts"), 0);
}

TEST_F(PortalHotKeyServiceTest, HandlersMayCallTheService) {
    m_portal->toBind = Answer::No;
    HotKeyReference second = 0;
    m_service->installRefusalHandler([&](HotKeyReference reference, HotKeyError error) {
        m_refused.append({reference, error});
        m_portal->toBind = Answer::Yes;
        m_service->installRefusalHandler({});
        second = registerKey(codeOf2, HotKeyService::command, 3);
    });
    m_service->installEventHandler([&](const HotKeyIdentifier &identifier) {
        m_service->unregisterHotKey(second);
        m_service->installEventHandler({});
        m_fired += identifier.id;
    });
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_TRUE(spinUntil([this] { return m_portal->closed.size() == 2; }));
}

TEST_F(PortalHotKeyServiceTest, ServiceMayEndAtAnyTime) {
    for (const Answer answer : {Answer::Never, Answer::Yes}) {
        m_portal->toCreate = answer;
        m_service = make();
        registerKey(codeOf1, HotKeyService::command, 1);
        const auto before = m_portal->calls.size();
        ASSERT_TRUE(spinUntil([&] { return m_portal->calls.size() >= before + 3; }));
        m_service.reset();
        deliverQueued();
    }
    EXPECT_TRUE(m_fired.isEmpty());
    EXPECT_TRUE(m_refused.isEmpty());
}

} // namespace

} // namespace quorvane::platform
