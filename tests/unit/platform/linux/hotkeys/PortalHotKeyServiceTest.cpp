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
/// For answers that do come: long enough for a busy machine.
constexpr int patience = 1500;
const QString idOfHide = QStringLiteral("hotkey-1-256-18");
const QString idOfStop = QStringLiteral("hotkey-3-256-19");

class PortalHotKeyServiceTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(DesktopBus::isUp());
        portal = std::make_unique<FakePortal>(address);
        ASSERT_TRUE(portal->started);
        service = make();
    }

    [[nodiscard]] std::unique_ptr<PortalHotKeyService> make(int answerMilliseconds = 30000) {
        auto made = std::make_unique<PortalHotKeyService>(
            PortalShortcuts::Settings{address, QStringLiteral("com.tallowind.Quorvane"), answerMilliseconds});
        made->installEventHandler([this](const HotKeyIdentifier &identifier) { fired += identifier.id; });
        made->installRefusalHandler([this](HotKeyReference reference, HotKeyError error) {
            refused.append({reference, error});
        });
        return made;
    }

    HotKeyReference hold(quint32 keyCode, quint32 modifiers, quint32 id) {
        const auto answer = service->registerHotKey(keyCode, modifiers, {0, id});
        EXPECT_EQ(answer.error, HotKeyError::None);
        return answer.reference;
    }

    [[nodiscard]] bool waitForBinding(int number = 1) {
        return spinUntil([&] { return portal->count("BindShortcuts") == number; });
    }

    /// Held keys of two actions, bound and known to fire.
    void holdTwo() {
        hide = hold(codeOf1, HotKeyService::command, 1);
        stop = hold(codeOf2, HotKeyService::command, 3);
        ASSERT_TRUE(waitForBinding());
        ASSERT_TRUE(fires(idOfHide, 1));
    }

    /// Whether an activation reaches the handler, and nothing else has; the order on the bus tells it for
    /// whatever was sent before.
    [[nodiscard]] bool fires(const QString &id, quint32 action) {
        fired.clear();
        portal->activate(id);
        return spinUntil([&] { return !fired.isEmpty(); }) && fired == QList<quint32>{action};
    }

    [[nodiscard]] bool waitForRefusals(const QList<Refusal> &expected) {
        return spinUntil([&] { return refused.size() >= expected.size(); }) && refused == expected;
    }

    DesktopBus desktop;
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    std::unique_ptr<FakePortal> portal;
    std::unique_ptr<PortalHotKeyService> service;
    QList<quint32> fired;
    QList<Refusal> refused;
    HotKeyReference hide = 0;
    HotKeyReference stop = 0;
};

TEST_F(PortalHotKeyServiceTest, OneDialogForRegistrationsCloseTogether) {
    service->setDescription(1, QStringLiteral("Hide IP"));
    EXPECT_TRUE(service->isAvailable());
    hold(codeOf1, HotKeyService::command, 1);
    hold(codeOfF1, HotKeyService::control, 2);
    hold(codeOfUp, HotKeyService::command, 3);
    hold(0, HotKeyService::shift, 4);
    hold(codeOf2, HotKeyService::command + HotKeyService::shift + HotKeyService::control, 5);
    EXPECT_TRUE(portal->calls.isEmpty()) << "nothing happens within the call";
    ASSERT_TRUE(waitForBinding());
    QStringList triggers;
    for (const FakePortal::Shortcut &shortcut : std::as_const(portal->shortcuts)) {
        triggers.append(shortcut.trigger);
    }
    EXPECT_EQ(triggers,
              QStringList({QStringLiteral("LOGO+1"), QStringLiteral("CTRL+F1"), QStringLiteral("LOGO+Up"),
                           QStringLiteral("SHIFT+a"), QStringLiteral("CTRL+SHIFT+LOGO+2")}));
    EXPECT_EQ(portal->shortcuts.at(0).description, QStringLiteral("Hide IP"));
    EXPECT_FALSE(portal->shortcuts.at(1).description.isEmpty());
    EXPECT_EQ(portal->applicationId, QStringLiteral("com.tallowind.Quorvane"));
    quint32 action = 0;
    const QStringList ids = portal->ids();
    for (const QString &id : ids) {
        EXPECT_TRUE(fires(id, ++action)) << id.toStdString();
    }
    EXPECT_EQ(portal->count("BindShortcuts"), 1);
    EXPECT_EQ(portal->count("CreateSession"), 1);
    EXPECT_TRUE(refused.isEmpty());
}

TEST_F(PortalHotKeyServiceTest, AsksForNoSessionWhileNothingIsWanted) {
    ASSERT_TRUE(spinUntil([this] { return portal->count("Get") == 1; }));
    const HotKeyReference passing = hold(codeOf1, HotKeyService::command, 1);
    EXPECT_EQ(service->unregisterHotKey(passing), HotKeyError::None);
    deliverQueued();
    // A later call on the same connection: nothing of the kind came before it.
    service = make();
    ASSERT_TRUE(spinUntil([this] { return portal->count("Get") == 2; }));
    EXPECT_EQ(portal->count("CreateSession"), 0);
}

TEST_F(PortalHotKeyServiceTest, OwnRegistryDecidesFirst) {
    hold(codeOf1, HotKeyService::command, 1);
    EXPECT_EQ(service->registerHotKey(codeOf1, HotKeyService::command, {0, 2}).error,
              HotKeyError::AlreadyHeld);
    EXPECT_EQ(service->registerHotKey(1, HotKeyService::command, {}).error, HotKeyError::UnknownKey);
    EXPECT_EQ(service->unregisterHotKey(77), HotKeyError::UnknownReference);
    ASSERT_TRUE(waitForBinding());
    EXPECT_EQ(portal->ids(), QStringList(idOfHide));
}

TEST_F(PortalHotKeyServiceTest, ChangedListMeansANewSessionAfterTheOldOne) {
    holdTwo();
    const QString before = portal->session;
    EXPECT_EQ(service->unregisterHotKey(hide), HotKeyError::None);
    EXPECT_EQ(service->unregisterHotKey(hide), HotKeyError::UnknownReference);
    hold(codeOfF1, HotKeyService::control, 2);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_EQ(portal->closed, QStringList(before));
    EXPECT_LT(portal->calls.lastIndexOf(QStringLiteral("Close")),
              portal->calls.lastIndexOf(QStringLiteral("CreateSession")));
    EXPECT_EQ(portal->ids(), QStringList({QStringLiteral("hotkey-2-4096-122"), idOfStop}));
    EXPECT_TRUE(fires(idOfStop, 3));
    portal->activate(idOfHide);
    EXPECT_TRUE(fires(QStringLiteral("hotkey-2-4096-122"), 2)) << "the released one stays silent";
}

TEST_F(PortalHotKeyServiceTest, SameListAgainIsNoChange) {
    holdTwo();
    service->unregisterHotKey(hide);
    const HotKeyReference again = hold(codeOf1, HotKeyService::command, 1);
    EXPECT_NE(again, hide);
    EXPECT_TRUE(fires(idOfHide, 1));
    EXPECT_EQ(portal->count("BindShortcuts"), 1);
    EXPECT_TRUE(portal->closed.isEmpty());
}

TEST_F(PortalHotKeyServiceTest, LastReleaseGivesTheSessionBack) {
    holdTwo();
    const QString before = portal->session;
    service->unregisterHotKey(hide);
    service->unregisterHotKey(stop);
    ASSERT_TRUE(spinUntil([&] { return portal->closed == QStringList(before); }));
    hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_TRUE(fires(idOfHide, 1));
}

TEST_F(PortalHotKeyServiceTest, ChangeWhileTheDialogIsOpenClosesIt) {
    portal->toBind = Answer::Never;
    hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    const QString dialog = portal->bindRequest;
    const QString before = portal->session;
    portal->toBind = Answer::Yes;
    hold(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_EQ(portal->closed, QStringList({dialog, before}));
    EXPECT_EQ(portal->ids(), QStringList({idOfHide, idOfStop}));
    EXPECT_TRUE(fires(idOfHide, 1));
    EXPECT_TRUE(refused.isEmpty());
}

TEST_F(PortalHotKeyServiceTest, UserWhoSaysNoTakesEverythingBack) {
    portal->toBind = Answer::No;
    hide = hold(codeOf1, HotKeyService::command, 1);
    stop = hold(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForRefusals({{hide, HotKeyError::Declined}, {stop, HotKeyError::Declined}}));
    EXPECT_EQ(service->unregisterHotKey(hide), HotKeyError::UnknownReference);
    EXPECT_TRUE(service->isAvailable());
    portal->toBind = Answer::Yes;
    hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_TRUE(fires(idOfHide, 1));
}

TEST_F(PortalHotKeyServiceTest, ShortcutsThatAreLeftOutAreTakenBackAlone) {
    portal->onlyThese = QStringList{idOfStop};
    hide = hold(codeOf1, HotKeyService::command, 1);
    stop = hold(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForRefusals({{hide, HotKeyError::Declined}}));
    portal->activate(idOfHide);
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_EQ(portal->count("BindShortcuts"), 1) << "no second dialog for what is left";
    EXPECT_EQ(service->unregisterHotKey(stop), HotKeyError::None);
    EXPECT_TRUE(spinUntil([this] { return !portal->closed.isEmpty(); }));
}

TEST_F(PortalHotKeyServiceTest, SessionWithoutAnyShortcutIsGivenBack) {
    portal->onlyThese = QStringList{};
    hide = hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{hide, HotKeyError::Declined}}));
    EXPECT_TRUE(spinUntil([this] { return portal->closed == QStringList(portal->session); }));
}

TEST_F(PortalHotKeyServiceTest, ReplyToAnEarlierRequestIsNotForTheNextOne) {
    portal->toBind = Answer::Silence;
    hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    portal->toBind = Answer::Never;
    hold(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    portal->replyLate();
    portal->answerBinding({idOfHide, idOfStop});
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_TRUE(refused.isEmpty());
}

TEST_F(PortalHotKeyServiceTest, RefusedSessionTakesEverythingBack) {
    portal->toCreate = Answer::No;
    hide = hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{hide, HotKeyError::Declined}}));
    EXPECT_EQ(portal->count("BindShortcuts"), 0);
}

TEST_F(PortalHotKeyServiceTest, FailedCallsTakeEverythingBack) {
    portal->toBind = Answer::Error;
    hide = hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{hide, HotKeyError::Declined}}));
    ASSERT_TRUE(spinUntil([this] { return portal->closed.size() == 1; }));
    EXPECT_TRUE(service->isAvailable());
    refused.clear();
    portal->toCreate = Answer::Error;
    hide = hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{hide, HotKeyError::NotAvailable}}));
    EXPECT_FALSE(service->isAvailable());
}

TEST_F(PortalHotKeyServiceTest, PortalWithoutShortcutsIsNotAvailable) {
    portal->hasShortcuts = false;
    hide = hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForRefusals({{hide, HotKeyError::NotAvailable}}));
    EXPECT_FALSE(service->isAvailable());
    EXPECT_EQ(service->registerHotKey(codeOf1, HotKeyService::command, {}).error, HotKeyError::NotAvailable);
}

TEST_F(PortalHotKeyServiceTest, ProbeAloneTellsThatThereAreNoShortcuts) {
    portal->hasShortcuts = false;
    EXPECT_TRUE(spinUntil([this] { return !service->isAvailable(); }));
}

TEST_F(PortalHotKeyServiceTest, NoPortalAtAllIsNotAvailable) {
    portal.reset();
    EXPECT_TRUE(spinUntil([this] { return !service->isAvailable(); }));
    EXPECT_TRUE(refused.isEmpty());
    portal = std::make_unique<FakePortal>(address);
    EXPECT_TRUE(spinUntil([this] { return service->isAvailable(); })) << "a portal that starts later counts";
    hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    EXPECT_TRUE(fires(idOfHide, 1));
}

TEST_F(PortalHotKeyServiceTest, NoBusIsNotAvailable) {
    PortalHotKeyService lonely({QStringLiteral("unix:path=/nowhere/bus"), QString()});
    QList<Refusal> answers;
    lonely.installRefusalHandler([&answers](HotKeyReference reference, HotKeyError error) {
        answers.append({reference, error});
    });
    const auto answer = lonely.registerHotKey(codeOf1, HotKeyService::command, {0, 1});
    ASSERT_EQ(answer.error, HotKeyError::None);
    EXPECT_TRUE(spinUntil([&] { return !answers.isEmpty(); }));
    EXPECT_EQ(answers, QList<Refusal>({{answer.reference, HotKeyError::NotAvailable}}));
    EXPECT_FALSE(lonely.isAvailable());
}

TEST_F(PortalHotKeyServiceTest, PortalThatNeverAnswersTheProbeIsNotAvailable) {
    portal->toProbe = Answer::Never;
    service = make(50);
    EXPECT_TRUE(spinUntil([this] { return !service->isAvailable(); }));
}

TEST_F(PortalHotKeyServiceTest, SessionThatNeverComesIsGivenUp) {
    portal->toCreate = Answer::Never;
    service = make(50);
    hide = hold(codeOf1, HotKeyService::command, 1);
    EXPECT_EQ(portal->count("CreateSession"), 0) << "nobody waits within the call";
    ASSERT_TRUE(waitForRefusals({{hide, HotKeyError::NotAvailable}}));
    EXPECT_FALSE(service->isAvailable());
    const QString late = portal->session;
    portal->answerCreation();
    EXPECT_TRUE(spinUntil([&] { return portal->closed == QStringList(late); }));
    EXPECT_EQ(portal->count("BindShortcuts"), 0);
    EXPECT_EQ(refused.size(), 1);
}

TEST_F(PortalHotKeyServiceTest, UserMayTakeTheTimeOfTheWorld) {
    portal->toBind = Answer::Never;
    service = make(patience);
    hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    QElapsedTimer thinking;
    thinking.start();
    ASSERT_TRUE(spinUntil([&] { return thinking.elapsed() > patience + 200; }));
    EXPECT_TRUE(service->isAvailable());
    EXPECT_TRUE(refused.isEmpty());
    portal->answerBinding({idOfHide});
    EXPECT_TRUE(fires(idOfHide, 1));
}

TEST_F(PortalHotKeyServiceTest, AnswerAfterTheReleaseChangesNothing) {
    portal->toBind = Answer::Never;
    hide = hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    const QString before = portal->session;
    EXPECT_EQ(service->unregisterHotKey(hide), HotKeyError::None);
    ASSERT_TRUE(spinUntil([&] { return portal->closed.contains(before); }));
    portal->answerBinding({idOfHide});
    portal->activateIn(before, idOfHide);
    portal->toBind = Answer::Yes;
    hold(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_TRUE(refused.isEmpty());
}

TEST_F(PortalHotKeyServiceTest, ReleaseWhileTheSessionIsMadeClosesIt) {
    portal->toCreate = Answer::Never;
    hide = hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(spinUntil([this] { return portal->count("CreateSession") == 1; }));
    service->unregisterHotKey(hide);
    deliverQueued();
    portal->answerCreation();
    EXPECT_TRUE(spinUntil([this] { return portal->closed == QStringList(portal->session); }));
    EXPECT_EQ(portal->count("BindShortcuts"), 0);
}

TEST_F(PortalHotKeyServiceTest, GarbageIsARefusal) {
    const QList<QVariantList> garbages{
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
    for (const QVariantList &garbage : garbages) {
        portal->garbage = garbage;
        for (Answer *const step : {&portal->toCreate, &portal->toBind}) {
            *step = Answer::Garbage;
            refused.clear();
            hide = hold(codeOf1, HotKeyService::command, 1);
            EXPECT_TRUE(waitForRefusals({{hide, HotKeyError::Declined}}));
            *step = Answer::Yes;
        }
    }
    refused.clear();
    const int before = portal->count("BindShortcuts");
    hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding(before + 1));
    EXPECT_TRUE(fires(idOfHide, 1));
    EXPECT_TRUE(refused.isEmpty());
}

TEST_F(PortalHotKeyServiceTest, StrangeActivationsAreIgnored) {
    holdTwo();
    portal->activate(QStringLiteral("hotkey-9-256-18"));
    portal->activate(QString());
    portal->activateIn(QStringLiteral("/org/freedesktop/portal/desktop/session/other/one"), idOfHide);
    portal->sendActivated({});
    portal->sendActivated({idOfHide, portal->session});
    portal->sendActivated({QVariant::fromValue(QDBusObjectPath(portal->session)), 1U});
    EXPECT_TRUE(fires(idOfStop, 3));
}

TEST_F(PortalHotKeyServiceTest, OtherProgramsCannotPressOurKeys) {
    holdTwo();
    auto stranger = QDBusConnection::connectToBus(address, QStringLiteral("stranger"));
    QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                     QStringLiteral("org.freedesktop.portal.GlobalShortcuts"),
                                                     QStringLiteral("Activated"));
    signal << QVariant::fromValue(QDBusObjectPath(portal->session)) << idOfHide << qulonglong{1}
           << QVariantMap();
    ASSERT_TRUE(stranger.send(signal));
    // The bus has it before anything that is sent now.
    ASSERT_TRUE(stranger.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.portal.Desktop")));
    EXPECT_TRUE(fires(idOfStop, 3));
    QDBusConnection::disconnectFromBus(QStringLiteral("stranger"));
}

TEST_F(PortalHotKeyServiceTest, ClosedSessionTakesEverythingBack) {
    holdTwo();
    const QString before = portal->session;
    portal->closeSession();
    ASSERT_TRUE(waitForRefusals({{hide, HotKeyError::Declined}, {stop, HotKeyError::Declined}}));
    portal->activateIn(before, idOfHide);
    hold(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_TRUE(fires(idOfStop, 3));
}

TEST_F(PortalHotKeyServiceTest, RestartedPortalIsGivenTheListAgain) {
    holdTwo();
    portal.reset();
    portal = std::make_unique<FakePortal>(address);
    ASSERT_TRUE(waitForBinding());
    EXPECT_EQ(portal->ids(), QStringList({idOfHide, idOfStop}));
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_TRUE(refused.isEmpty());
    EXPECT_EQ(service->unregisterHotKey(hide), HotKeyError::None);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_EQ(portal->ids(), QStringList(idOfStop));
}

TEST_F(PortalHotKeyServiceTest, PortalThatGoesDownOverARequestIsNotAskedAgain) {
    portal->toBind = Answer::Never;
    hide = hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    portal.reset();
    ASSERT_TRUE(waitForRefusals({{hide, HotKeyError::NotAvailable}}));
    portal = std::make_unique<FakePortal>(address);
    ASSERT_TRUE(spinUntil([this] { return portal->count("Get") == 1; }));
    EXPECT_EQ(portal->count("CreateSession"), 0);
    hold(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding());
    EXPECT_TRUE(fires(idOfStop, 3));
}

TEST_F(PortalHotKeyServiceTest, PortalThatDoesNotCloseDelaysOnly) {
    service = make(patience);
    portal->toClose = Answer::Never;
    hide = hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding());
    hold(codeOf2, HotKeyService::command, 3);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_EQ(portal->ids(), QStringList({idOfHide, idOfStop}));
}

TEST_F(PortalHotKeyServiceTest, HandlersMayCallBack) {
    portal->toBind = Answer::No;
    HotKeyReference second = 0;
    service->installRefusalHandler([&](HotKeyReference reference, HotKeyError error) {
        refused.append({reference, error});
        portal->toBind = Answer::Yes;
        service->installRefusalHandler({});
        second = hold(codeOf2, HotKeyService::command, 3);
    });
    service->installEventHandler([&](const HotKeyIdentifier &identifier) {
        service->unregisterHotKey(second);
        service->installEventHandler({});
        fired += identifier.id;
    });
    hide = hold(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(waitForBinding(2));
    EXPECT_TRUE(fires(idOfStop, 3));
    EXPECT_TRUE(spinUntil([this] { return portal->closed.size() == 2; }));
}

TEST_F(PortalHotKeyServiceTest, ServiceMayEndAtAnyTime) {
    for (const Answer answer : {Answer::Never, Answer::Yes}) {
        portal->toCreate = answer;
        service = make();
        hold(codeOf1, HotKeyService::command, 1);
        const auto before = portal->calls.size();
        ASSERT_TRUE(spinUntil([&] { return portal->calls.size() >= before + 3; }));
        service.reset();
        deliverQueued();
    }
    EXPECT_TRUE(fired.isEmpty());
    EXPECT_TRUE(refused.isEmpty());
}

} // namespace

} // namespace quorvane::platform
