#pragma once

#include "FakePortal.h"
#include "platform/linux/hotkeys/PortalHotKeyService.h"
#include "tests/unit/EventLoop.h"
#include "tests/unit/platform/linux/DesktopBus.h"

#include <gtest/gtest.h>
#include <utility>

namespace quorvane::platform {

using Refusal = std::pair<HotKeyReference, HotKeyError>;

inline constexpr quint32 codeOf1 = 18;
inline constexpr quint32 codeOf2 = 19;
inline constexpr quint32 codeOfF1 = 122;
inline constexpr quint32 codeOfUp = 126;
/// For answers that do arrive: long enough for a busy machine.
inline constexpr int maximumWaitMilliseconds = 1500;
inline const QString idOfHide = QStringLiteral("hotkey-1-256-18");
inline const QString idOfStop = QStringLiteral("hotkey-3-256-19");

/// The service with a separate portal, both on a session bus of the test.
class PortalFixture : public ::testing::Test {
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
        made->installAppearanceHandler([this] { ++m_appearances; });
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
    int m_appearances = 0;
    HotKeyReference m_hide = 0;
    HotKeyReference m_stop = 0;
};

} // namespace quorvane::platform
