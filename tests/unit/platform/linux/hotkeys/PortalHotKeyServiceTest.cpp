#include "platform/linux/hotkeys/PortalHotKeyService.h"
#include "FakePortal.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/platform/linux/DesktopBus.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>
#include <utility>

namespace quorvane::platform {

namespace {

using platform::HotKeyError;
using platform::HotKeyIdentifier;
using platform::HotKeyReference;
using platform::HotKeyService;
using platform::PortalHotKeyService;
using platform::PortalShortcuts;
using Answer = FakePortal::Answer;
using Refusal = std::pair<HotKeyReference, HotKeyError>;

constexpr quint32 codeOf1 = 18;
constexpr quint32 codeOf2 = 19;
constexpr quint32 codeOfF1 = 122;
constexpr quint32 codeOfUp = 126;
/// For answers that do arrive: long enough for a busy machine.
constexpr int maximumWaitMilliseconds = 1500;
const QString idOfHide = QStringLiteral("hotkey-1-256-18");
const QString idOfStop = QStringLiteral("hotkey-3-256-19");

class PortalHotKeyServiceTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(DesktopBus::isUp());
        m_portal = std::make_unique<FakePortal>(m_address);
        ASSERT_TRUE(m_portal->started);
        m_service = make();
    }

    [[nodiscard]] std::unique_ptr<PortalHotKeyService> make(int answerMilliseconds = 30000) {
        auto made = std::make_unique<PortalHotKeyService>(PortalShortcuts::Settings{
            m_address, QStringLiteral("com.tallowind.Quorvane"), answerMilliseconds});
        made->installEventHandler([this](const HotKeyIdentifier &identifier) { m_fired += identifier.id; });
        made->installRefusalHandler([this](HotKeyReference reference, HotKeyError error) {
            m_refused.append({reference, error});
        });
        return made;
    }

    HotKeyReference registerKey(quint32 keyCode, quint32 modifiers, quint32 id) {
        const auto answer = m_service->registerHotKey(keyCode, modifiers, {0, id});
        EXPECT_EQ(answer.error, HotKeyError::None);
        return answer.reference;
    }

    [[nodiscard]] bool waitForBinding(int number = 1) {
        return spinUntil([&] { return m_portal->count("BindShortcuts") == number; });
    }

    /// Registers keys of two actions, and waits until they are bound and work.
    void registerTwo() {
        m_hide = registerKey(codeOf1, HotKeyService::command, 1);
        m_stop = registerKey(codeOf2, HotKeyService::command, 3);
        ASSERT_TRUE(waitForBinding());
        ASSERT_TRUE(fires(idOfHide, 1));
    }

    /// Whether an activation, and no other event, reaches the handler. Because messages on the bus keep their
    /// order, everything sent before has also arrived then.
    [[nodiscard]] bool fires(const QString &id, quint32 action) {
        m_fired.clear();
        m_portal->activate(id);
        return spinUntil([&] { return !m_fired.isEmpty(); }) && m_fired == QList<quint32>{action};
    }

    [[nodiscard]] bool waitForRefusals(const QList<Refusal> &expected) {
        return spinUntil([&] { return m_refused.size() >= expected.size(); }) && m_refused == expected;
    }

    DesktopBus m_desktop;
    const QString m_address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    std::unique_ptr<FakePortal> m_portal;
    std::unique_ptr<PortalHotKeyService> m_service;
    QList<quint32> m_fired;
    QList<Refusal> m_refused;
    HotKeyReference m_hide = 0;
    HotKeyReference m_stop = 0;
};

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

TEST_F(PortalHotKeyServiceTest, RefusedSessionWithdrawsEverything) {
    m_portal->toCreate = Answer::No;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::Declined}}));
    EXPECT_EQ(m_portal->count("BindShortcuts"), 0);
}

TEST_F(PortalHotKeyServiceTest, FailedCallsWithdrawEverything) {
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

TEST_F(PortalHotKeyServiceTest, PortalWithoutShortcutsIsNotAvailable) {
    m_portal->hasShortcuts = false;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::NotAvailable}}));
    EXPECT_FALSE(m_service->isAvailable());
    EXPECT_EQ(m_service->registerHotKey(codeOf1, HotKeyService::command, {}).error,
              HotKeyError::NotAvailable);
}

TEST_F(PortalHotKeyServiceTest, ProbeAloneShowsThatThereAreNoShortcuts) {
    m_portal->hasShortcuts = false;
    EXPECT_TRUE(spinUntil([this] { return !m_service->isAvailable(); }));
}

TEST_F(PortalHotKeyServiceTest, NoPortalAtAllIsNotAvailable) {
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

TEST_F(PortalHotKeyServiceTest, NoBusIsNotAvailable) {
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

TEST_F(PortalHotKeyServiceTest, PortalThatNeverAnswersTheProbeIsNotAvailable) {
    m_portal->toProbe = Answer::Never;
    m_service = make(50);
    EXPECT_TRUE(spinUntil([this] { return !m_service->isAvailable(); }));
}

TEST_F(PortalHotKeyServiceTest, SessionRequestTimesOut) {
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

TEST_F(PortalHotKeyServiceTest, GarbageIsARefusal) {
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

TEST_F(PortalHotKeyServiceTest, UnknownActivationsAreIgnored) {
    registerTwo();
    m_portal->activate(QStringLiteral("hotkey-9-256-18"));
    m_portal->activate(QString());
    m_portal->activateIn(QStringLiteral("/org/freedesktop/portal/desktop/session/other/one"), idOfHide);
    m_portal->sendActivated({});
    m_portal->sendActivated({idOfHide, m_portal->session});
    m_portal->sendActivated({QVariant::fromValue(QDBusObjectPath(m_portal->session)), 1U});
    EXPECT_TRUE(fires(idOfStop, 3));
}

TEST_F(PortalHotKeyServiceTest, OtherProgramsCannotPressOurKeys) {
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

TEST_F(PortalHotKeyServiceTest, ClosedSessionWithdrawsEverything) {
    registerTwo();
    const QString before = m_portal->session;
    m_portal->closeSession();
    ASSERT_TRUE(waitForRefusals({{m_hide, HotKeyError::Declined}, {m_stop, HotKeyError::Declined}}));
    m_portal->activateIn(before, idOfHide);
    registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_TRUE(fires(idOfStop, 3));
}

TEST_F(PortalHotKeyServiceTest, RestartedPortalReceivesTheListAgain) {
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

TEST_F(PortalHotKeyServiceTest, RequestThatEndsThePortalIsNotRepeated) {
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

TEST_F(PortalHotKeyServiceTest, PortalThatDoesNotCloseOnlyDelays) {
    m_service = make(maximumWaitMilliseconds);
    m_portal->toClose = Answer::Never;
    m_hide = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    registerKey(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_EQ(m_portal->ids(), QStringList({idOfHide, idOfStop}));
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
