#pragma once

#include <QString>

#include <functional>

namespace quorvane::platform {

/// Identifies one hot key to its owner: `id` identifies the action, `signature` is four characters, the first
/// in the high byte.
struct HotKeyIdentifier {
    quint32 signature = 0;
    quint32 id = 0;

    bool operator==(const HotKeyIdentifier &) const = default;
};

/// Identifies one registration; never reused while the program runs. 0 means none.
using HotKeyReference = quint64;

enum class HotKeyError {
    None,
    /// This program has already registered the combination.
    AlreadyHeld,
    /// Another program uses the combination.
    TakenElsewhere,
    /// This desktop has no service for global hot keys.
    NotAvailable,
    /// The key code or a modifier is not known.
    UnknownKey,
    /// There is no registration with this reference, or it has ended.
    UnknownReference,
    /// The desktop refused, or the user in its dialog.
    Declined,
};

struct HotKeyRegistration {
    HotKeyError error = HotKeyError::None;
    /// 0 unless `error` is None.
    HotKeyReference reference = 0;
};

/// System-wide key combinations. Main thread; handlers are called from the event loop, never from within a
/// call of these functions.
///
/// Key codes are virtual key codes of the ANSI keyboard, by position, not by layout; modifiers are the sum of
/// `command` (the Super key), `shift` and `control`.
class HotKeyService {
public:
    static constexpr quint32 command = 256;
    static constexpr quint32 shift = 512;
    static constexpr quint32 control = 4096;

    using EventHandler = std::function<void(const HotKeyIdentifier &)>;
    using RefusalHandler = std::function<void(HotKeyReference, HotKeyError)>;
    using AppearanceHandler = std::function<void()>;

    virtual ~HotKeyService() = default;

    /// Whether this desktop offers global hot keys at all.
    [[nodiscard]] virtual bool isAvailable() const = 0;
    /// Refuses a combination that this program has already registered, whatever its identifier: one press
    /// starts one action.
    [[nodiscard]] virtual HotKeyRegistration registerHotKey(quint32 keyCode, quint32 modifiers,
                                                            HotKeyIdentifier identifier) = 0;
    virtual HotKeyError unregisterHotKey(HotKeyReference reference) = 0;
    /// Called once for each press of a registered combination, however long the key is held.
    virtual void installEventHandler(EventHandler handler) = 0;
    /// Called when the desktop withdraws a registration: one that it had not yet decided on, or one that it
    /// no longer allows. The reference is then no longer valid.
    virtual void installRefusalHandler(RefusalHandler handler) = 0;

    /// Called when the desktop has begun to offer hot keys after it was known not to. Registrations that were
    /// refused or withdrawn before have to be made again.
    virtual void installAppearanceHandler(AppearanceHandler handler) { Q_UNUSED(handler) }

    /// Sets the description of the hot keys with this id, for a desktop that lists them to the user; called
    /// before they are registered. Does nothing where the desktop shows no such list.
    virtual void setDescription(quint32 id, const QString &text) {
        Q_UNUSED(id)
        Q_UNUSED(text)
    }
};

} // namespace quorvane::platform
