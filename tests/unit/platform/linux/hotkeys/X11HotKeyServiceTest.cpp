#include "platform/linux/hotkeys/X11HotKeyService.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/platform/linux/TestDisplay.h"

#include <QAbstractEventDispatcher>
#include <QTimer>

#include <gtest/gtest.h>
#include <utility>

namespace quorvane::platform {

namespace {

using platform::HotKeyError;
using platform::HotKeyIdentifier;
using platform::HotKeyReference;
using platform::HotKeyRegistration;
using platform::HotKeyService;
using platform::X11HotKeyService;

struct Position {
    quint32 keyCode;
    quint8 key;
};

const QList<Position> positions{
    {0, 38},   {29, 19},  {18, 10},  {19, 11},  {20, 12},  {21, 13},   {23, 14},   {22, 15},   {26, 16},
    {28, 17},  {25, 18},  {122, 67}, {120, 68}, {99, 69},  {118, 70},  {96, 71},   {97, 72},   {98, 73},
    {100, 74}, {101, 75}, {109, 76}, {103, 95}, {111, 96}, {125, 116}, {123, 113}, {124, 114}, {126, 111},
};

constexpr quint32 codeOf1 = 18;
constexpr quint32 codeOf2 = 19;
constexpr quint32 codeOfF1 = 122;
constexpr quint8 key1 = 10;
constexpr quint8 key2 = 11;
constexpr quint8 keyF1 = 67;
constexpr quint8 superKey = 133;
constexpr quint8 shiftKey = 50;
constexpr quint8 controlKey = 37;
constexpr quint8 altKey = 64;
constexpr quint8 capsLockKey = 66;
constexpr quint8 numLockKey = 77;
constexpr quint8 menuKey = 135;
constexpr int capsLockMask = 2;
constexpr int numLockMask = 16;
constexpr int mod3Mask = 32;
constexpr int superMask = 64;
const QList<int> lockStates{0, capsLockMask, numLockMask, capsLockMask | numLockMask};

class X11HotKeyServiceTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_other.isConnected()) << "no X server";
        m_service.installEventHandler(
            [this](const HotKeyIdentifier &identifier) { m_fired += identifier.id; });
        m_service.installRefusalHandler([this](HotKeyReference reference, HotKeyError error) {
            m_refused.append({reference, error});
        });
    }

    /// Registers a hot key; returns its reference, 0 when it was refused.
    HotKeyReference registerKey(quint32 keyCode, quint32 modifiers, quint32 id) {
        return m_service.registerHotKey(keyCode, modifiers, {0, id}).reference;
    }

    /// Waits for the last of the hot keys; returns whether exactly these have been pressed.
    [[nodiscard]] bool firesOnly(const QList<quint32> &ids) {
        return spinUntil([&] { return m_fired.size() >= ids.size(); }) && m_fired == ids;
    }

    TestDisplay m_display;
    OtherClient m_other{m_display.name()};
    X11HotKeyService m_service{m_display.name()};
    QList<quint32> m_fired;
    QList<std::pair<HotKeyReference, HotKeyError>> m_refused;
};

TEST_F(X11HotKeyServiceTest, EveryKeyFiresWithEachModifier) {
    const QList<std::pair<quint32, quint8>> modifiers{{HotKeyService::command, superKey},
                                                      {HotKeyService::shift, shiftKey},
                                                      {HotKeyService::control, controlKey}};
    QList<quint32> expected;
    for (const auto &[modifier, modifierKey] : modifiers) {
        for (const Position &position : positions) {
            expected += static_cast<quint32>(expected.size()) + 1;
            ASSERT_NE(registerKey(position.keyCode, modifier, expected.last()), 0U)
                << position.keyCode << " with " << modifier;
            m_other.pressTogether({modifierKey, position.key});
            ASSERT_TRUE(firesOnly(expected)) << position.keyCode << " with " << modifier;
        }
    }
}

TEST_F(X11HotKeyServiceTest, ModifiersAreCombined) {
    registerKey(codeOf1, HotKeyService::command + HotKeyService::shift + HotKeyService::control, 7);
    m_other.pressTogether({superKey, shiftKey, controlKey, key1});
    EXPECT_TRUE(firesOnly({7}));
}

TEST_F(X11HotKeyServiceTest, LockKeysDoNotMatter) {
    registerKey(codeOf1, HotKeyService::command, 1);
    m_other.pressTogether({numLockKey});
    m_other.pressTogether({superKey, key1});
    EXPECT_TRUE(firesOnly({1}));
    m_other.pressTogether({capsLockKey});
    m_other.pressTogether({superKey, key1});
    EXPECT_TRUE(firesOnly({1, 1}));
    m_other.pressTogether({numLockKey});
    m_other.pressTogether({superKey, key1});
    EXPECT_TRUE(firesOnly({1, 1, 1}));
}

TEST_F(X11HotKeyServiceTest, OtherModifiersMakeAnotherCombination) {
    registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 2);
    for (const quint8 extra : {controlKey, shiftKey, altKey}) {
        m_other.pressTogether({extra, superKey, key1});
    }
    m_other.pressTogether({key1});
    m_other.pressTogether({superKey, key2});
    EXPECT_TRUE(firesOnly({2}));
}

TEST_F(X11HotKeyServiceTest, HeldKeyFiresOnce) {
    registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 2);
    PressCounter counter(m_display.name());
    m_other.press(superKey);
    m_other.press(key1);
    ASSERT_TRUE(spinUntil([&] { return counter.pressesOf(key1) >= 20; }))
        << "the server repeated the key " << counter.pressesOf(key1) << " times";
    m_other.release(key1);
    m_other.pressTogether({key2});
    EXPECT_TRUE(firesOnly({1, 2}));
    m_other.pressTogether({key1});
    EXPECT_TRUE(firesOnly({1, 2, 1}));
}

TEST_F(X11HotKeyServiceTest, SecondKeyWhileTheFirstIsHeldFiresToo) {
    registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 2);
    m_other.pressTogether({superKey, key1, key2});
    EXPECT_TRUE(firesOnly({1, 2}));
}

TEST_F(X11HotKeyServiceTest, KeyThatIsReleasedAfterTheOneBeforeItFiresAgain) {
    registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 2);
    HeldKeysQueryCounter counter(m_display.name());
    m_other.press(superKey);
    m_other.press(key1);
    m_other.press(key2);
    ASSERT_TRUE(firesOnly({1, 2}));
    m_other.release(key1);
    m_other.release(key2); // not sent to the service: the grab of the first key has ended
    m_other.release(superKey);
    const int before = counter.queries();
    ASSERT_TRUE(spinUntil([&] { return counter.queries() > before; }))
        << "the service does not look which keys are held";
    m_other.pressTogether({superKey, key2});
    EXPECT_TRUE(firesOnly({1, 2, 2}));
}

TEST_F(X11HotKeyServiceTest, KeyThatStaysHeldAfterTheOneBeforeItFiresOnce) {
    registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 2);
    PressCounter counter(m_display.name());
    m_other.press(superKey);
    m_other.press(key1);
    m_other.press(key2);
    m_other.release(key1);
    ASSERT_TRUE(spinUntil([&] { return counter.pressesOf(key2) >= 20; })); // repeated by the server
    m_other.release(key2);
    m_other.pressTogether({key1}); // arrives after the repeats
    EXPECT_TRUE(firesOnly({1, 2, 1}));
}

TEST_F(X11HotKeyServiceTest, CombinationOfAnotherClientIsRefused) {
    OtherClient holder(m_display.name());
    for (const int held : lockStates) {
        ASSERT_TRUE(holder.grab(key1, superMask | held));
        const HotKeyRegistration result = m_service.registerHotKey(codeOf1, HotKeyService::command, {0, 1});
        EXPECT_EQ(result.error, HotKeyError::TakenElsewhere);
        EXPECT_EQ(result.reference, 0U);
        for (const int locks : lockStates) {
            if (locks != held) {
                EXPECT_TRUE(m_other.grab(key1, superMask | locks)) << locks << " is still grabbed";
                m_other.ungrab(key1, superMask | locks);
            }
        }
        holder.ungrab(key1, superMask | held);
    }
    EXPECT_NE(registerKey(codeOf1, HotKeyService::command, 1), 0U);
    EXPECT_TRUE(m_service.isAvailable());
}

TEST_F(X11HotKeyServiceTest, CombinationIsRefusedToOtherClients) {
    registerKey(codeOf1, HotKeyService::command, 1);
    for (const int locks : lockStates) {
        EXPECT_FALSE(m_other.grab(key1, superMask | locks));
    }
}

TEST_F(X11HotKeyServiceTest, SecondRegistrationIsRefused) {
    ASSERT_NE(registerKey(codeOf1, HotKeyService::command, 1), 0U);
    const HotKeyRegistration again = m_service.registerHotKey(codeOf1, HotKeyService::command, {0, 1});
    EXPECT_EQ(again.error, HotKeyError::AlreadyHeld);
    EXPECT_EQ(again.reference, 0U);
    EXPECT_EQ(m_service.registerHotKey(codeOf1, HotKeyService::command, {5, 2}).error,
              HotKeyError::AlreadyHeld);
    EXPECT_NE(registerKey(codeOf1, HotKeyService::control, 3), 0U);
    m_other.pressTogether({superKey, key1});
    m_other.pressTogether({controlKey, key1});
    EXPECT_TRUE(firesOnly({1, 3}));
}

TEST_F(X11HotKeyServiceTest, UnregisteringKeepsTheOthers) {
    const HotKeyReference first = registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 2);
    registerKey(codeOf1, HotKeyService::control, 3);
    EXPECT_EQ(m_service.unregisterHotKey(first), HotKeyError::None);
    m_other.pressTogether({superKey, key1});
    m_other.pressTogether({superKey, key2});
    m_other.pressTogether({controlKey, key1});
    EXPECT_TRUE(firesOnly({2, 3}));
    for (const int locks : lockStates) {
        EXPECT_TRUE(m_other.grab(key1, superMask | locks));
    }
}

TEST_F(X11HotKeyServiceTest, ReferencesAreValidOnce) {
    const HotKeyReference first = registerKey(codeOf1, HotKeyService::command, 1);
    EXPECT_EQ(m_service.unregisterHotKey(first), HotKeyError::None);
    EXPECT_EQ(m_service.unregisterHotKey(first), HotKeyError::UnknownReference);
    EXPECT_EQ(m_service.unregisterHotKey(0), HotKeyError::UnknownReference);
    const HotKeyReference second = registerKey(codeOf1, HotKeyService::command, 1);
    EXPECT_NE(second, first);
    EXPECT_EQ(m_service.unregisterHotKey(first), HotKeyError::UnknownReference);
    m_other.pressTogether({superKey, key1});
    EXPECT_TRUE(firesOnly({1}));
}

TEST_F(X11HotKeyServiceTest, UnknownKeysAndModifiersAreRefused) {
    EXPECT_EQ(m_service.registerHotKey(1, HotKeyService::command, {}).error, HotKeyError::UnknownKey);
    EXPECT_EQ(m_service.registerHotKey(4294967295, HotKeyService::command, {}).error,
              HotKeyError::UnknownKey);
    EXPECT_EQ(m_service.registerHotKey(codeOf1, 2048, {}).error, HotKeyError::UnknownKey);
    EXPECT_EQ(m_service.registerHotKey(codeOf1, HotKeyService::command + 1, {}).error,
              HotKeyError::UnknownKey);
}

TEST_F(X11HotKeyServiceTest, LayoutDoesNotMatter) {
    registerKey(0, HotKeyService::command, 1);
    registerKey(codeOf1, HotKeyService::command, 2);
    registerKey(codeOfF1, HotKeyService::shift, 3);
    QList<quint32> expected;
    for (const char *layout : {"fr", "ru", "us"}) {
        ASSERT_TRUE(m_display.setLayout({QString::fromLatin1(layout)}));
        m_other.pressTogether({superKey, 38});
        m_other.pressTogether({superKey, key1});
        m_other.pressTogether({shiftKey, keyF1});
        expected += {1, 2, 3};
        EXPECT_TRUE(firesOnly(expected)) << layout;
    }
}

TEST_F(X11HotKeyServiceTest, SecondOfTwoLayoutsDoesNotMatter) {
    registerKey(0, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 2);
    ASSERT_TRUE(m_display.setLayout(
        {QStringLiteral("us,ru"), QStringLiteral("-option"), QStringLiteral("grp:menu_toggle")}));
    m_other.pressTogether({menuKey});
    ASSERT_EQ(m_other.layoutInUse(), 1);
    m_other.pressTogether({superKey, 38, key2});
    EXPECT_TRUE(firesOnly({1, 2}));
}

TEST_F(X11HotKeyServiceTest, MouseButtonThatIsHeldDoesNotMatter) {
    registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 2);
    m_other.pressButton(1);
    m_other.pressTogether({superKey, key1, key2});
    m_other.releaseButton(1);
    EXPECT_TRUE(firesOnly({1, 2}));
}

TEST_F(X11HotKeyServiceTest, NumLockMayChangeToAnotherModifier) {
    registerKey(codeOf1, HotKeyService::command, 1);
    // The default keys, but Num Lock on Mod3.
    ASSERT_TRUE(m_other.setModifierKeys({{50, 62}, {66}, {37, 105}, {64}, {}, {77}, {133, 134}, {92}}));
    OtherClient probe(m_display.name());
    EXPECT_TRUE(spinUntil([&] {
        const bool free = probe.grab(key1, superMask | mod3Mask);
        probe.ungrab(key1, superMask | mod3Mask);
        return !free;
    }));
    m_other.pressTogether({numLockKey});
    m_other.pressTogether({superKey, key1});
    EXPECT_TRUE(firesOnly({1}));
    EXPECT_TRUE(probe.grab(key1, superMask | numLockMask)) << "the old variant is still grabbed";
    EXPECT_TRUE(m_refused.isEmpty());
}

TEST_F(X11HotKeyServiceTest, CombinationLostWithTheLockKeysIsWithdrawn) {
    const HotKeyReference first = registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 2);
    ASSERT_TRUE(m_other.grab(key1, superMask | mod3Mask));
    ASSERT_TRUE(m_other.setModifierKeys({{50, 62}, {66}, {37, 105}, {64}, {}, {77}, {133, 134}, {92}}));
    ASSERT_TRUE(spinUntil([&] { return !m_refused.isEmpty(); }));
    EXPECT_EQ(m_refused.size(), 1);
    EXPECT_EQ(m_refused.first(), std::pair(first, HotKeyError::TakenElsewhere));
    EXPECT_EQ(m_service.unregisterHotKey(first), HotKeyError::UnknownReference);
    m_other.pressTogether({superKey, key1});
    m_other.pressTogether({superKey, key2});
    EXPECT_TRUE(firesOnly({2}));
}

TEST_F(X11HotKeyServiceTest, PressesArriveFromTheEventLoopOnly) {
    registerKey(codeOf1, HotKeyService::command, 1);
    deliverQueued();
    m_other.pressTogether({superKey, key1});
    // The replies to this call follow the press on the same connection.
    const HotKeyReference second = registerKey(codeOf2, HotKeyService::command, 2);
    EXPECT_TRUE(m_fired.isEmpty());
    EXPECT_TRUE(firesOnly({1})) << "events that arrived with the replies are handled";
    m_other.pressTogether({superKey, key1});
    EXPECT_EQ(m_service.unregisterHotKey(second), HotKeyError::None);
    EXPECT_EQ(m_fired.size(), 1);
    EXPECT_TRUE(firesOnly({1, 1}));
}

TEST_F(X11HotKeyServiceTest, HandlerMayRunAnEventLoop) {
    registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 2);
    m_service.installEventHandler([this](const HotKeyIdentifier &identifier) {
        m_fired += identifier.id;
        if (identifier.id == 1) {
            m_other.pressTogether({superKey, key2});
            EXPECT_TRUE(spinUntil([this] { return m_fired.size() == 2; }));
        }
    });
    m_other.pressTogether({superKey, key1});
    EXPECT_TRUE(firesOnly({1, 2}));
}

TEST_F(X11HotKeyServiceTest, HandlerMayUnregisterItsKeyAndInstallAnotherHandler) {
    const HotKeyReference first = registerKey(codeOf1, HotKeyService::command, 1);
    registerKey(codeOf2, HotKeyService::command, 2);
    m_service.installEventHandler([this, first](const HotKeyIdentifier &identifier) {
        EXPECT_EQ(m_service.unregisterHotKey(first), HotKeyError::None);
        m_service.installEventHandler([this](const HotKeyIdentifier &next) { m_fired += next.id + 100; });
        m_fired += identifier.id;
    });
    m_other.pressTogether({superKey, key1});
    ASSERT_TRUE(firesOnly({1}));
    m_other.pressTogether({superKey, key1});
    m_other.pressTogether({superKey, key2});
    EXPECT_TRUE(firesOnly({1, 102}));
}

TEST_F(X11HotKeyServiceTest, WorksWithoutHandlers) {
    X11HotKeyService silent(m_display.name());
    ASSERT_EQ(silent.registerHotKey(codeOf1, HotKeyService::command, {0, 1}).error, HotKeyError::None);
    registerKey(codeOf2, HotKeyService::command, 2);
    m_other.pressTogether({superKey, key1});
    m_other.pressTogether({superKey, key2});
    EXPECT_TRUE(firesOnly({2}));
}

TEST_F(X11HotKeyServiceTest, DestroyedServiceUngrabsEverything) {
    {
        X11HotKeyService shortLived(m_display.name());
        ASSERT_EQ(shortLived.registerHotKey(codeOf1, HotKeyService::command, {0, 1}).error,
                  HotKeyError::None);
        ASSERT_FALSE(m_other.grab(key1, superMask));
    }
    EXPECT_TRUE(spinUntil([this] { return m_other.grab(key1, superMask); }));
}

TEST_F(X11HotKeyServiceTest, LostDisplayMakesItUnavailable) {
    const HotKeyReference first = registerKey(codeOf1, HotKeyService::command, 1);
    ASSERT_TRUE(m_service.isAvailable());
    ::testing::internal::CaptureStderr();
    m_display.kill();
    const bool noticed = spinUntil([this] { return !m_service.isAvailable(); });
    const std::string said = ::testing::internal::GetCapturedStderr();
    ASSERT_TRUE(noticed);
    EXPECT_EQ(said, "");
    EXPECT_EQ(m_service.registerHotKey(codeOf2, HotKeyService::command, {}).error, HotKeyError::NotAvailable);
    EXPECT_EQ(m_service.unregisterHotKey(first), HotKeyError::None);
    EXPECT_EQ(m_service.unregisterHotKey(first), HotKeyError::UnknownReference);
    EXPECT_TRUE(m_fired.isEmpty());
    int turns = 0;
    ::testing::internal::CaptureStderr();
    QEventLoop idle;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &idle,
                     [&turns] { ++turns; });
    QTimer::singleShot(300, &idle, &QEventLoop::quit);
    idle.exec();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "") << "the closed connection is still watched";
    EXPECT_LT(turns, 60) << "the lost connection keeps the loop busy";
}

TEST_F(X11HotKeyServiceTest, DisplayLostBetweenTwoCallsIsNoticed) {
    ASSERT_NE(registerKey(codeOf1, HotKeyService::command, 1), 0U);
    m_display.kill();
    EXPECT_EQ(m_service.registerHotKey(codeOf2, HotKeyService::command, {}).error, HotKeyError::NotAvailable);
    EXPECT_TRUE(spinUntil([this] { return !m_service.isAvailable(); }));
}

TEST(X11HotKeyServiceWithoutDisplay, IsNotAvailable) {
    X11HotKeyService service("/nowhere:1");
    EXPECT_FALSE(service.isAvailable());
    EXPECT_EQ(service.registerHotKey(codeOf1, HotKeyService::command, {}).error, HotKeyError::NotAvailable);
    EXPECT_EQ(service.unregisterHotKey(1), HotKeyError::UnknownReference);
}

} // namespace

} // namespace quorvane::platform
