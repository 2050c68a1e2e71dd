#pragma once

#include "platform/HotKeyService.h"

#include <QHash>
#include <QList>

#include <algorithm>

namespace quorvane::fakes {

/// Records registrations and simulates presses. Main thread.
class FakeHotKeyService final : public platform::HotKeyService {
public:
    struct Call {
        enum class Kind { Register, Unregister };
        Kind kind;
        quint32 keyCode = 0;
        quint32 modifiers = 0;
        platform::HotKeyIdentifier identifier;
        platform::HotKeyReference reference = 0;

        bool operator==(const Call &) const = default;
    };

    struct Held {
        quint32 keyCode;
        quint32 modifiers;
        platform::HotKeyIdentifier identifier;
        platform::HotKeyReference reference;
    };

    [[nodiscard]] bool isAvailable() const override { return m_available; }

    [[nodiscard]] platform::HotKeyRegistration
    registerHotKey(quint32 keyCode, quint32 modifiers, platform::HotKeyIdentifier identifier) override {
        const platform::HotKeyError error = check(keyCode, modifiers);
        const platform::HotKeyReference reference =
            error == platform::HotKeyError::None ? ++m_lastReference : platform::HotKeyReference{0};
        m_recorded.append({Call::Kind::Register, keyCode, modifiers, identifier, reference});
        if (reference != 0) {
            m_heldKeys.append({keyCode, modifiers, identifier, reference});
        }
        return {error, reference};
    }

    platform::HotKeyError unregisterHotKey(platform::HotKeyReference reference) override {
        m_recorded.append({Call::Kind::Unregister, 0, 0, {}, reference});
        return m_heldKeys.removeIf([reference](const Held &held) { return held.reference == reference; }) > 0
                   ? platform::HotKeyError::None
                   : platform::HotKeyError::UnknownReference;
    }

    void installEventHandler(EventHandler handler) override { m_pressed = std::move(handler); }

    void installRefusalHandler(RefusalHandler handler) override { m_refused = std::move(handler); }

    void installAppearanceHandler(AppearanceHandler handler) override { m_appeared = std::move(handler); }

    void setDescription(quint32 id, const QString &text) override { m_descriptions.insert(id, text); }

    void setAvailable(bool available) { m_available = available; }

    /// Makes the service available and reports it, as a desktop does whose service starts late.
    void appear() {
        m_available = true;
        if (m_appeared) {
            m_appeared();
        }
    }

    /// From now on another program uses this combination.
    void takeElsewhere(quint32 keyCode, quint32 modifiers) { m_taken.append({keyCode, modifiers}); }

    /// Simulates one press: calls the handler for every registration of the combination. Returns the number
    /// of calls.
    qsizetype press(quint32 keyCode, quint32 modifiers) {
        qsizetype calls = 0;
        const QList<Held> present = m_heldKeys;
        for (const Held &held : present) {
            if (held.keyCode == keyCode && held.modifiers == modifiers && m_pressed) {
                m_pressed(held.identifier);
                ++calls;
            }
        }
        return calls;
    }

    /// Calls the handler directly, also for identifiers that were never registered.
    void deliver(platform::HotKeyIdentifier identifier) const { m_pressed(identifier); }

    /// Withdraws a registration, as a desktop that decides late does.
    void refuse(platform::HotKeyReference reference, platform::HotKeyError error) {
        m_heldKeys.removeIf([reference](const Held &held) { return held.reference == reference; });
        m_refused(reference, error);
    }

    [[nodiscard]] const QList<Call> &calls() const { return m_recorded; }

    [[nodiscard]] const QList<Held> &held() const { return m_heldKeys; }

    /// The description that the user would read for the hot keys with this id.
    [[nodiscard]] QString description(quint32 id) const { return m_descriptions.value(id); }

    [[nodiscard]] bool hasEventHandler() const { return static_cast<bool>(m_pressed); }

    void clear() { m_recorded.clear(); }

private:
    struct Combination {
        quint32 keyCode;
        quint32 modifiers;

        bool operator==(const Combination &) const = default;
    };

    [[nodiscard]] platform::HotKeyError check(quint32 keyCode, quint32 modifiers) const {
        if (!m_available) {
            return platform::HotKeyError::NotAvailable;
        }
        if (m_taken.contains(Combination{keyCode, modifiers})) {
            return platform::HotKeyError::TakenElsewhere;
        }
        const bool ours = std::any_of(m_heldKeys.begin(), m_heldKeys.end(), [=](const Held &held) {
            return held.keyCode == keyCode && held.modifiers == modifiers;
        });
        return ours ? platform::HotKeyError::AlreadyHeld : platform::HotKeyError::None;
    }

    bool m_available = true;
    platform::HotKeyReference m_lastReference = 0;
    QList<Call> m_recorded;
    QList<Held> m_heldKeys;
    QList<Combination> m_taken;
    QHash<quint32, QString> m_descriptions;
    EventHandler m_pressed;
    RefusalHandler m_refused;
    AppearanceHandler m_appeared;
};

} // namespace quorvane::fakes
