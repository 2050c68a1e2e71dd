#pragma once

#include <QString>

#include <functional>

namespace quorvane::platform {

/// Names one hot key to its owner: `id` tells the action, `signature` is four characters, the first in the
/// high byte.
struct HotKeyIdentifier {
    quint32 signature = 0;
    quint32 id = 0;

    bool operator==(const HotKeyIdentifier &) const = default;
};

/// Stands for one registration; never used twice in a run. 0 is none.
using HotKeyReference = quint64;

enum class HotKeyError {
    None,
    /// This program holds the combination already.
    AlreadyHeld,
    /// Another program holds the combination.
    TakenElsewhere,
    /// This desktop has no service for global hot keys.
    NotAvailable,
    /// The key code or the modifiers are not known.
    UnknownKey,
    /// The reference stands for no registration, or no longer.
    UnknownReference,
    /// The desktop, or the user whom it asked, declined.
    Declined,
};

struct HotKeyRegistration {
    HotKeyError error = HotKeyError::None;
    /// 0 unless `error` is None.
    HotKeyReference reference = 0;
};

/// System-wide key combinations. Main thread; handlers are called from the event loop, never from within
/// a call of theirs.
///
/// Key codes are virtual key codes of the ANSI keyboard, by position, not by layout; modifiers are the sum
/// of `command` (the Super key), `shift` and `control`.
class HotKeyService {
public:
    static constexpr quint32 command = 256;
    static constexpr quint32 shift = 512;
    static constexpr quint32 control = 4096;

    using EventHandler = std::function<void(const HotKeyIdentifier &)>;
    using RefusalHandler = std::function<void(HotKeyReference, HotKeyError)>;

    virtual ~HotKeyService() = default;

    /// Whether this desktop offers global hot keys at all.
    [[nodiscard]] virtual bool isAvailable() const = 0;
    /// A combination that this program holds is refused, whatever its identifier: one press acts once.
    [[nodiscard]] virtual HotKeyRegistration registerHotKey(quint32 keyCode, quint32 modifiers,
                                                            HotKeyIdentifier identifier) = 0;
    virtual HotKeyError unregisterHotKey(HotKeyReference reference) = 0;
    /// Called once for each press of a registered combination, however long the key is held.
    virtual void installEventHandler(EventHandler handler) = 0;
    /// Called when the desktop takes back a registration: one that it had not yet decided on, or one that it
    /// no longer lets this program have. The reference is not good any more.
    virtual void installRefusalHandler(RefusalHandler handler) = 0;

    /// What the hot keys with this id do, in the user's words, for a desktop that lists them to the user;
    /// set before they are registered. Nothing where the desktop shows no such list.
    virtual void setDescription(quint32 id, const QString &text) {
        Q_UNUSED(id)
        Q_UNUSED(text)
    }
};

} // namespace quorvane::platform
