#include "HotKeyRegistry.h"

#include "VirtualKeys.h"

#include <algorithm>

namespace quorvane::platform {

HotKeyError HotKeyRegistry::check(quint32 keyCode, quint32 modifiers) const {
    constexpr quint32 known = HotKeyService::command | HotKeyService::shift | HotKeyService::control;
    if (findVirtualKey(keyCode) == nullptr || (modifiers & ~known) != 0) {
        return HotKeyError::UnknownKey;
    }
    return find(keyCode, modifiers) ? HotKeyError::AlreadyHeld : HotKeyError::None;
}

HotKeyReference HotKeyRegistry::add(quint32 keyCode, quint32 modifiers, HotKeyIdentifier identifier) {
    m_held.append({++m_lastReference, keyCode, modifiers, identifier});
    return m_lastReference;
}

std::optional<HotKeyRegistry::Entry> HotKeyRegistry::remove(HotKeyReference reference) {
    const auto found = std::find_if(m_held.cbegin(), m_held.cend(),
                                    [reference](const Entry &entry) { return entry.reference == reference; });
    if (found == m_held.cend()) {
        return std::nullopt;
    }
    const Entry entry = *found;
    m_held.erase(found);
    return entry;
}

std::optional<HotKeyRegistry::Entry> HotKeyRegistry::find(quint32 keyCode, quint32 modifiers) const {
    const auto found = std::find_if(m_held.cbegin(), m_held.cend(), [=](const Entry &entry) {
        return entry.keyCode == keyCode && entry.modifiers == modifiers;
    });
    return found == m_held.cend() ? std::nullopt : std::optional(*found);
}

} // namespace quorvane::platform
