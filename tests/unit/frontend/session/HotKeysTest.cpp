#include "frontend/session/HotKeys.h"

#include "fakes/TestPlatform.h"
#include "tests/unit/Printing.h"

#include <QList>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

using fakes::FakeHotKeyService;
using platform::HotKeyError;
using platform::HotKeyReference;
using Action = HotKeys::Action;
using Kind = FakeHotKeyService::Call::Kind;
using Problem = HotKeys::Problem;

constexpr quint32 cmd = 256;
constexpr quint32 ctrl = 4096;
constexpr quint32 digit1 = 18;
constexpr quint32 digit2 = 19;

class HotKeysTest : public testing::Test {
protected:
    HotKeysTest() {
        for (const Action action : HotKeys::actions) {
            choose(action, -1);
        }
        m_keys->install([this](quint32 id) { m_pressed.append(id); }, [this] { ++m_changes; });
    }

    void choose(Action action, int tag) const {
        m_services.preferences().setValue(platform::keyOf(HotKeys::preference(action)), tag);
    }

    void chooseAndRegister(Action action, int tag) {
        choose(action, tag);
        m_keys->registerStored();
    }

    [[nodiscard]] FakeHotKeyService &desktop() const { return m_services.hotKeys(); }

    [[nodiscard]] QList<quint32> registeredIds() const {
        QList<quint32> ids;
        for (const auto &call : desktop().calls()) {
            if (call.kind == Kind::Register) {
                ids.append(call.identifier.id);
            }
        }
        return ids;
    }

    [[nodiscard]] qsizetype releases() const {
        return std::count_if(desktop().calls().begin(), desktop().calls().end(),
                             [](const auto &call) { return call.kind == Kind::Unregister; });
    }

    fakes::TestPlatform m_services;
    std::unique_ptr<HotKeys> m_keys = std::make_unique<HotKeys>();
    QList<quint32> m_pressed;
    int m_changes = 0;
};

TEST_F(HotKeysTest, ActionsHaveTheirKeysSignaturesAndNumbers) {
    const QList<QString> preferenceKeys = {
        QStringLiteral("hideIpHotKey"), QStringLiteral("changeIpHotKey"), QStringLiteral("stopHideIpHotKey"),
        QStringLiteral("discardIpHotKey"), QStringLiteral("bringUpWindowHotKey")};
    const QList<quint32> signatures = {0x73696731, 0x73696732, 0x73696733, 0x73696734, 0x73696735};
    for (qsizetype i = 0; i < preferenceKeys.size(); ++i) {
        const Action action = HotKeys::actions[static_cast<std::size_t>(i)];
        EXPECT_EQ(platform::keyOf(HotKeys::preference(action)), preferenceKeys[i]);
        EXPECT_EQ(HotKeys::identifier(action).signature, signatures[i]);
        EXPECT_EQ(HotKeys::identifier(action).id, static_cast<quint32>(i) + 1);
    }
}

TEST_F(HotKeysTest, NothingIsRegisteredWithAllFiveAtNone) {
    m_keys->registerStored();
    EXPECT_TRUE(desktop().held().isEmpty());
    EXPECT_TRUE(registeredIds().isEmpty());
    for (quint32 keyCode = 0; keyCode < 128; ++keyCode) {
        EXPECT_EQ(desktop().press(keyCode, cmd), 0);
    }
    EXPECT_TRUE(m_pressed.isEmpty());
}

TEST_F(HotKeysTest, StoredTagsAreRegisteredInTheOrderOfTheActions) {
    int tag = 31;
    for (const Action action : HotKeys::actions) {
        choose(action, tag++);
    }
    m_keys->registerStored();
    EXPECT_EQ(registeredIds(), (QList<quint32>{1, 2, 3, 4, 5}));
    const auto &second = desktop().calls()[1];
    EXPECT_EQ(second.keyCode, digit1);
    EXPECT_EQ(second.modifiers, ctrl);
    EXPECT_EQ(second.identifier, HotKeys::identifier(Action::ChangeIp));
}

TEST_F(HotKeysTest, PressesReportTheNumberWhateverTheSignature) {
    for (const quint32 id : {1U, 2U, 3U, 4U, 5U}) {
        desktop().deliver({0xdeadbeef, id});
    }
    EXPECT_EQ(m_pressed, (QList<quint32>{1, 2, 3, 4, 5}));
}

TEST_F(HotKeysTest, ChangingACombinationReleasesNothingAndBothAct) {
    chooseAndRegister(Action::HideIp, 2);
    chooseAndRegister(Action::HideIp, 3);
    EXPECT_EQ(desktop().held().size(), 2);
    EXPECT_EQ(releases(), 8); // the four others, at None, twice
    for (const auto &call : desktop().calls()) {
        EXPECT_TRUE(call.kind == Kind::Register || call.reference == 0);
    }
    desktop().press(digit1, cmd);
    desktop().press(digit2, cmd);
    EXPECT_EQ(m_pressed, (QList<quint32>{1, 1}));
}

TEST_F(HotKeysTest, NoneReleasesTheCurrentReferenceOnly) {
    chooseAndRegister(Action::HideIp, 2);
    const HotKeyReference first = m_keys->reference(Action::HideIp);
    chooseAndRegister(Action::HideIp, 3);
    const HotKeyReference second = m_keys->reference(Action::HideIp);
    EXPECT_NE(first, second);
    chooseAndRegister(Action::HideIp, -1);
    ASSERT_EQ(desktop().held().size(), 1);
    EXPECT_EQ(desktop().held().first().reference, first);
    desktop().press(digit1, cmd);
    desktop().press(digit2, cmd);
    EXPECT_EQ(m_pressed, QList<quint32>{1});
}

TEST_F(HotKeysTest, ReferenceStaysAfterNoneAndIsStaleThen) {
    chooseAndRegister(Action::HideIp, 2);
    const HotKeyReference reference = m_keys->reference(Action::HideIp);
    chooseAndRegister(Action::HideIp, -1);
    EXPECT_EQ(m_keys->reference(Action::HideIp), reference);
    chooseAndRegister(Action::ChangeIp, 2); // another action registers the combination
    chooseAndRegister(Action::HideIp, -1);  // the stale reference releases no registration
    ASSERT_EQ(desktop().held().size(), 1);
    EXPECT_EQ(desktop().held().first().identifier.id, 2U);
}

TEST_F(HotKeysTest, ApplyingAgainRegistersUnchangedCombinationsAgainAndKeepsTheReference) {
    chooseAndRegister(Action::HideIp, 2);
    const HotKeyReference reference = m_keys->reference(Action::HideIp);
    m_keys->registerStored();
    EXPECT_EQ(registeredIds(), (QList<quint32>{1, 1}));
    EXPECT_EQ(m_keys->reference(Action::HideIp), reference);
    EXPECT_EQ(m_keys->problem(Action::HideIp), Problem());
    EXPECT_EQ(desktop().press(digit1, cmd), 1);
}

TEST_F(HotKeysTest, RefusedRegistrationKeepsTheOldReferenceAndIsRemembered) {
    chooseAndRegister(Action::HideIp, 2);
    const HotKeyReference reference = m_keys->reference(Action::HideIp);
    desktop().takeElsewhere(digit2, cmd);
    chooseAndRegister(Action::HideIp, 3);
    EXPECT_EQ(m_keys->reference(Action::HideIp), reference);
    EXPECT_EQ(m_keys->problem(Action::HideIp).kind, Problem::Kind::TakenElsewhere);
    EXPECT_EQ(m_services.preferences().integer(platform::keyOf(HotKeys::preference(Action::HideIp))), 3);
    chooseAndRegister(Action::HideIp, 4);
    EXPECT_EQ(m_keys->problem(Action::HideIp), Problem());
}

TEST_F(HotKeysTest, CombinationHeldByAnotherActionIsReportedAsSuch) {
    chooseAndRegister(Action::HideIp, 2);
    choose(Action::HideIp, 3);
    chooseAndRegister(Action::BringUpWindow, 2);
    const Problem expected = {Problem::Kind::HeldByAction, Action::HideIp};
    EXPECT_EQ(m_keys->problem(Action::BringUpWindow), expected);
    desktop().press(digit1, cmd);
    EXPECT_EQ(m_pressed, QList<quint32>{1}); // one press, one action
}

TEST_F(HotKeysTest, CombinationThatNoneFreedCanBeUsedByAnotherAction) {
    chooseAndRegister(Action::HideIp, 2);
    choose(Action::HideIp, -1);
    chooseAndRegister(Action::BringUpWindow, 2);
    EXPECT_EQ(m_keys->problem(Action::BringUpWindow), Problem());
    desktop().press(digit1, cmd);
    EXPECT_EQ(m_pressed, QList<quint32>{5});
}

TEST_F(HotKeysTest, StrayTagEighteenRegistersCommandWithKeyCodeZero) {
    chooseAndRegister(Action::HideIp, 18);
    ASSERT_EQ(desktop().held().size(), 1);
    EXPECT_EQ(desktop().held().first().keyCode, 0U);
    EXPECT_EQ(desktop().held().first().modifiers, cmd);
}

TEST_F(HotKeysTest, StrayTagsOutsideTheFamiliesRegisterNothingAndChangeNothing) {
    chooseAndRegister(Action::HideIp, 2);
    const HotKeyReference reference = m_keys->reference(Action::HideIp);
    for (const int tag : {0, 53, 56, 69, 1000, -2}) {
        desktop().clear();
        chooseAndRegister(Action::HideIp, tag);
        EXPECT_TRUE(registeredIds().isEmpty()) << tag;
        EXPECT_EQ(releases(), 4) << tag; // the four others, at None
        EXPECT_EQ(m_keys->reference(Action::HideIp), reference) << tag;
    }
    EXPECT_EQ(desktop().press(digit1, cmd), 1);
}

TEST_F(HotKeysTest, LateRefusalIsRememberedAndReported) {
    chooseAndRegister(Action::DiscardIp, 2);
    desktop().refuse(m_keys->reference(Action::DiscardIp), HotKeyError::TakenElsewhere);
    EXPECT_EQ(m_keys->problem(Action::DiscardIp).kind, Problem::Kind::TakenElsewhere);
    EXPECT_EQ(m_changes, 1);
}

TEST_F(HotKeysTest, LateRefusalOfAnOlderCombinationDoesNotAffectTheChosenOne) {
    chooseAndRegister(Action::DiscardIp, 2);
    const HotKeyReference older = m_keys->reference(Action::DiscardIp);
    chooseAndRegister(Action::DiscardIp, 3);
    desktop().refuse(older, HotKeyError::TakenElsewhere);
    EXPECT_EQ(m_keys->problem(Action::DiscardIp), Problem());
}

TEST_F(HotKeysTest, DesktopWithoutTheServiceHasNoHotKeysAndReportsNoError) {
    EXPECT_TRUE(HotKeys::isAvailable());
    desktop().setAvailable(false);
    EXPECT_FALSE(HotKeys::isAvailable());
    chooseAndRegister(Action::HideIp, 2);
    EXPECT_EQ(m_keys->problem(Action::HideIp), Problem());
    m_keys.reset();
    m_services.platform().hotKeys.reset();
    HotKeys alone;
    alone.install([](quint32) {}, [] {});
    alone.registerStored();
    EXPECT_FALSE(HotKeys::isAvailable());
    EXPECT_EQ(alone.reference(Action::HideIp), 0U);
}

TEST_F(HotKeysTest, StoredTagsAreRegisteredWhenTheServiceAppears) {
    desktop().setAvailable(false);
    chooseAndRegister(Action::HideIp, 2);
    chooseAndRegister(Action::StopHidingIp, 3);
    ASSERT_TRUE(desktop().held().isEmpty());
    desktop().appear();
    EXPECT_EQ(desktop().held().size(), 2);
    EXPECT_EQ(desktop().press(digit1, cmd), 1);
    EXPECT_EQ(desktop().press(digit2, cmd), 1);
    EXPECT_EQ(m_pressed, (QList<quint32>{1, 3}));
    EXPECT_EQ(m_changes, 1);
    m_keys.reset();
    desktop().clear();
    desktop().appear();
    EXPECT_TRUE(desktop().calls().isEmpty());
}

TEST_F(HotKeysTest, RegistrationsOutliveTheirOwnerAndPressesAreThenIgnored) {
    chooseAndRegister(Action::HideIp, 2);
    m_keys.reset();
    EXPECT_EQ(desktop().held().size(), 1);
    EXPECT_EQ(desktop().press(digit1, cmd), 0);
}

} // namespace

} // namespace quorvane
