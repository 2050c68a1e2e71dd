#include "PortalFixture.h"

namespace quorvane::platform {

namespace {

using Answer = FakePortal::Answer;

class PortalProblemsTest : public PortalFixture {};

TEST_F(PortalProblemsTest, RefusedSessionWithdrawsEverything) {
    m_portal->toCreate = Answer::No;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::Declined}}));
    EXPECT_EQ(m_portal->count("BindShortcuts"), 0);
}

TEST_F(PortalProblemsTest, FailedCallsWithdrawEverything) {
    m_portal->toBind = Answer::Error;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::Declined}}));
    ASSERT_TRUE(spinUntil([this] { return m_portal->closed.size() == 1; }));
    EXPECT_TRUE(m_service->isAvailable());
    m_refused.clear();
    m_portal->toCreate = Answer::Error;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::NotAvailable}}));
    EXPECT_FALSE(m_service->isAvailable());
}

TEST_F(PortalProblemsTest, PortalWithoutShortcutsIsNotAvailable) {
    m_portal->hasShortcuts = false;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::NotAvailable}}));
    EXPECT_FALSE(m_service->isAvailable());
    EXPECT_EQ(m_service->registerHotKey(codeOf1, HotKeyService::command, {}).error,
              HotKeyError::NotAvailable);
}

TEST_F(PortalProblemsTest, ProbeAloneShowsThatThereAreNoShortcuts) {
    m_portal->hasShortcuts = false;
    EXPECT_TRUE(spinUntil([this] { return !m_service->isAvailable(); }));
}

TEST_F(PortalProblemsTest, NoPortalAtAllIsNotAvailable) {
    m_portal.reset();
    EXPECT_TRUE(spinUntil([this] { return !m_service->isAvailable(); }));
    EXPECT_TRUE(m_refused.isEmpty());
    m_portal = std::make_unique<FakePortal>(m_address);
    EXPECT_TRUE(spinUntil([this] { return m_service->isAvailable(); }))
        << "a portal that starts later is used";
    registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    EXPECT_TRUE(fires(idOfHide, 1));
}

TEST_F(PortalProblemsTest, PortalThatStartsLaterIsReportedOnceWhenItHasShortcuts) {
    m_portal.reset();
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::NotAvailable}}));
    m_portal = std::make_unique<FakePortal>(m_address, false);
    ASSERT_TRUE(spinUntil([this] { return m_portal->count("Get") == 1; }));
    ASSERT_TRUE(spinUntil([this] { return !m_service->isAvailable(); }));
    EXPECT_EQ(m_appearances, 0);
    m_portal.reset();
    m_portal = std::make_unique<FakePortal>(m_address);
    ASSERT_TRUE(spinUntil([this] { return m_appearances > 0; }));
    EXPECT_TRUE(m_service->isAvailable());
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    EXPECT_TRUE(fires(idOfHide, 1));
    EXPECT_EQ(m_appearances, 1);
}

TEST_F(PortalProblemsTest, PortalThatIsThereFromTheStartOrStartsAnewDoesNotAppear) {
    registerTwo();
    m_portal.reset();
    m_portal = std::make_unique<FakePortal>(m_address);
    ASSERT_TRUE(waitForBinding());
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_EQ(m_appearances, 0);
}

TEST_F(PortalProblemsTest, NoBusIsNotAvailable) {
    PortalHotKeyService unconnected({QStringLiteral("unix:path=/nowhere/bus"), QString()});
    QList<Refusal> answers;
    unconnected.installRefusalHandler([&answers](HotKeyReference reference, HotKeyError error) {
        answers.append({reference, error});
    });
    const auto answer = unconnected.registerHotKey(codeOf1, HotKeyService::command, {0, 1});
    ASSERT_EQ(answer.error, HotKeyError::None);
    EXPECT_TRUE(spinUntil([&] { return !answers.isEmpty(); }));
    EXPECT_EQ(answers, QList<Refusal>({{answer.reference, HotKeyError::NotAvailable}}));
    EXPECT_FALSE(unconnected.isAvailable());
}

TEST_F(PortalProblemsTest, PortalThatNeverAnswersTheProbeIsNotAvailable) {
    m_portal->toProbe = Answer::Never;
    m_service = make(50);
    EXPECT_TRUE(spinUntil([this] { return !m_service->isAvailable(); }));
}

TEST_F(PortalProblemsTest, SessionRequestTimesOut) {
    m_portal->toCreate = Answer::Never;
    m_service = make(50);
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    EXPECT_EQ(m_portal->count("CreateSession"), 0) << "the call does not wait";
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::NotAvailable}}));
    EXPECT_FALSE(m_service->isAvailable());
    const QString late = m_portal->session;
    m_portal->answerCreation();
    EXPECT_TRUE(spinUntil([&] { return m_portal->closed == QStringList(late); }));
    EXPECT_EQ(m_portal->count("BindShortcuts"), 0);
    EXPECT_EQ(m_refused.size(), 1);
}

TEST_F(PortalProblemsTest, GarbageIsARefusal) {
    const QList<QVariantList> garbageAnswers{
        {},
        {QStringLiteral("yes")},
        {0U},
        {QVariantMap(), 0U},
        {0U, QVariantMap()},
        {0U, QVariantMap{{QStringLiteral("session_handle"), 7}, {QStringLiteral("shortcuts"), 7}}},
        {0U, QVariantMap{{QStringLiteral("session_handle"), QStringLiteral("no path")},
                         {QStringLiteral("shortcuts"), QStringList{idOfHide}}}},
        {0U, QVariantMap{{QStringLiteral("session_handle"), QStringLiteral("/a//b")},
                         {QStringLiteral("shortcuts"), QVariantMap{{idOfHide, 1}}}}},
        {0U, QVariantMap{}, 1U},
    };
    for (const QVariantList &garbage : garbageAnswers) {
        m_portal->garbage = garbage;
        for (Answer *const step : {&m_portal->toCreate, &m_portal->toBind}) {
            *step = Answer::Garbage;
            m_refused.clear();
            m_hide = registerKey(codeOf1, HotKeyService::command, 1);
            EXPECT_TRUE(waitForRefusals({{m_hide, HotKeyError::Declined}}));
            *step = Answer::Yes;
        }
    }
    m_refused.clear();
    const int before = m_portal->count("BindShortcuts");
    registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding(before + 1));
    EXPECT_TRUE(fires(idOfHide, 1));
    EXPECT_TRUE(m_refused.isEmpty());
}

TEST_F(PortalProblemsTest, UnknownActivationsAreIgnored) {
    registerTwo();
    m_portal->activate(QStringLiteral("hotkey-9-256-18"));
    m_portal->activate(QString());
    m_portal->activateIn(QStringLiteral("/org/freedesktop/portal/desktop/session/other/one"), idOfHide);
    m_portal->sendActivated({});
    m_portal->sendActivated({idOfHide, m_portal->session});
    m_portal->sendActivated({QVariant::fromValue(QDBusObjectPath(m_portal->session)), 1U});
    EXPECT_TRUE(fires(idOfStop, 3));
}

TEST_F(PortalProblemsTest, OtherProgramsCannotPressOurKeys) {
    registerTwo();
    auto otherProgram = QDBusConnection::connectToBus(m_address, QStringLiteral("otherProgram"));
    QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                     QStringLiteral("org.freedesktop.portal.GlobalShortcuts"),
                                                     QStringLiteral("Activated"));
    signal << QVariant::fromValue(QDBusObjectPath(m_portal->session)) << idOfHide << qulonglong{1}
           << QVariantMap();
    ASSERT_TRUE(otherProgram.send(signal));
    // The bus has received it before any message that is sent from now on.
    ASSERT_TRUE(
        otherProgram.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.portal.Desktop")));
    EXPECT_TRUE(fires(idOfStop, 3));
    QDBusConnection::disconnectFromBus(QStringLiteral("otherProgram"));
}

TEST_F(PortalProblemsTest, ClosedSessionWithdrawsEverything) {
    registerTwo();
    const QString before = m_portal->session;
    m_portal->closeSession();
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::Declined}, {m_stop, HotKeyError::Declined}}));
    m_portal->activateIn(before, idOfHide);
    registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_TRUE(fires(idOfStop, 3));
}

TEST_F(PortalProblemsTest, RestartedPortalReceivesTheListAgain) {
    registerTwo();
    m_portal.reset();
    m_portal = std::make_unique<FakePortal>(m_address);
    ASSERT_TRUE(waitForBinding());
    EXPECT_EQ(m_portal->ids(), QStringList({idOfHide, idOfStop}));
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_TRUE(m_refused.isEmpty());
    EXPECT_EQ(m_service->unregisterHotKey(m_hide), HotKeyError::None);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_EQ(m_portal->ids(), QStringList(idOfStop));
}

TEST_F(PortalProblemsTest, RequestThatEndsThePortalIsNotRepeated) {
    m_portal->toBind = Answer::Never;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    m_portal.reset();
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::NotAvailable}}));
    m_portal = std::make_unique<FakePortal>(m_address);
    ASSERT_TRUE(spinUntil([this] { return m_portal->count("Get") == 1; }));
    EXPECT_EQ(m_portal->count("CreateSession"), 0);
    registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding());
    EXPECT_TRUE(fires(idOfStop, 3));
}

TEST_F(PortalProblemsTest, PortalThatDoesNotCloseOnlyDelays) {
    m_service = make(maximumWaitMilliseconds);
    m_portal->toClose = Answer::Never;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_EQ(m_portal->ids(), QStringList({idOfHide, idOfStop}));
}

} // namespace

} // namespace quorvane::platform
