#pragma once

#include "platform/HotKeyService.h"

#include <QList>

#include <optional>

namespace quorvane::platform {

/// The hot keys that this program has registered, each with its own reference. Main thread.
class HotKeyRegistry {
public:
    struct Entry {
        HotKeyReference reference;
        quint32 keyCode;
        quint32 modifiers;
        HotKeyIdentifier identifier;
    };

    /// Whether this program can register the combination: None, AlreadyHeld or UnknownKey.
    [[nodiscard]] HotKeyError check(quint32 keyCode, quint32 modifiers) const;
    /// Adds a combination for which check() returned None. The reference was never used before.
    HotKeyReference add(quint32 keyCode, quint32 modifiers, HotKeyIdentifier identifier);
    /// Removes and returns the entry of the reference.
    std::optional<Entry> remove(HotKeyReference reference);
    [[nodiscard]] std::optional<Entry> find(quint32 keyCode, quint32 modifiers) const;

    [[nodiscard]] const QList<Entry> &entries() const { return m_held; }

private:
    HotKeyReference m_lastReference = 0;
    QList<Entry> m_held;
};

} // namespace quorvane::platform
