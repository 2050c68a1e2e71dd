#pragma once

#include "platform/HotKeyService.h"

#include <QList>

#include <optional>

namespace quorvane::platform {

/// The hot keys that this program holds, each under a reference of its own. Main thread.
class HotKeyRegistry {
public:
    struct Entry {
        HotKeyReference reference;
        quint32 keyCode;
        quint32 modifiers;
        HotKeyIdentifier identifier;
    };

    /// What stands against a registration from our side: None, AlreadyHeld or UnknownKey.
    [[nodiscard]] HotKeyError verdict(quint32 keyCode, quint32 modifiers) const;
    /// Notes a combination that the verdict found free. The reference was never given out before.
    HotKeyReference add(quint32 keyCode, quint32 modifiers, HotKeyIdentifier identifier);
    /// The entry that the reference stood for until now.
    std::optional<Entry> take(HotKeyReference reference);
    [[nodiscard]] std::optional<Entry> find(quint32 keyCode, quint32 modifiers) const;

    [[nodiscard]] const QList<Entry> &entries() const { return m_held; }

private:
    HotKeyReference m_lastReference = 0;
    QList<Entry> m_held;
};

} // namespace quorvane::platform
