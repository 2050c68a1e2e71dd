#include "HotKeys.h"

#include "platform/Platform.h"

#include <algorithm>

namespace quorvane {

using platform::HotKeyError;
using platform::HotKeyIdentifier;
using platform::HotKeyReference;

namespace {

/// Null where the desktop has no such service.
platform::HotKeyService *service() {
    return platform::Platform::current().hotKeys.get();
}

constexpr quint32 signatureOf(quint32 id) {
    constexpr quint32 sig0 = 0x73696730; // the characters s, i, g, 0
    return sig0 + id;
}

} // namespace

HotKeys::HotKeys() = default;

HotKeys::~HotKeys() {
    // The registrations live as long as the process; only the handlers are removed.
    if (platform::HotKeyService *desktop = service()) {
        desktop->installEventHandler({});
        desktop->installRefusalHandler({});
        desktop->installAppearanceHandler({});
    }
}

Preference HotKeys::preference(Action action) {
    switch (action) {
    case Action::HideIp:
        return Preference::HideIpHotKey;
    case Action::ChangeIp:
        return Preference::ChangeIpHotKey;
    case Action::StopHidingIp:
        return Preference::StopHideIpHotKey;
    case Action::DiscardIp:
        return Preference::DiscardIpHotKey;
    case Action::BringUpWindow:
        return Preference::BringUpWindowHotKey;
    }
    Q_UNREACHABLE();
}

HotKeyIdentifier HotKeys::identifier(Action action) {
    const auto id = static_cast<quint32>(action);
    return {signatureOf(id), id};
}

qint32 HotKeys::storedTag(Action action) {
    return HotKeyTable::tagOf(Preferences::editedInteger(preference(action)));
}

bool HotKeys::isAvailable() {
    const platform::HotKeyService *desktop = service();
    return desktop != nullptr && desktop->isAvailable();
}

void HotKeys::install(PressHandler pressed, ChangeHandler onChange) {
    m_changed = std::move(onChange);
    platform::HotKeyService *desktop = service();
    if (desktop == nullptr) {
        return;
    }
    desktop->installEventHandler(
        [pressed = std::move(pressed)](const HotKeyIdentifier &identifier) { pressed(identifier.id); });
    desktop->installRefusalHandler(
        [this](HotKeyReference reference, HotKeyError error) { registrationWithdrawn(reference, error); });
    desktop->installAppearanceHandler([this] {
        registerStored();
        m_changed();
    });
}

void HotKeys::describe(Action action, const QString &text) {
    if (platform::HotKeyService *desktop = service()) {
        desktop->setDescription(identifier(action).id, text);
    }
}

void HotKeys::registerStored() {
    for (const Action action : actions) {
        registerHotKey(storedTag(action), identifier(action), m_references[indexOf(action)]);
    }
}

void HotKeys::registerHotKey(qint32 tag, HotKeyIdentifier htkID, HotKeyReference &htkEvent) {
    platform::HotKeyService *desktop = service();
    if (desktop == nullptr) {
        return;
    }
    setProblem(htkID.id, {});
    if (tag == HotKeyTable::none) {
        if (desktop->unregisterHotKey(htkEvent) == HotKeyError::None) {
            forget(htkEvent);
        }
        return;
    }
    const auto combination = HotKeyTable::combination(tag);
    if (!combination) {
        return;
    }
    const auto answer = desktop->registerHotKey(combination->keyCode, combination->modifiers, htkID);
    if (answer.error == HotKeyError::None) {
        htkEvent = answer.reference;
        m_heldKeys.push_back({*combination, answer.reference, htkID.id});
        return;
    }
    setProblem(htkID.id, problemAfter(answer.error, *combination, htkID.id));
}

HotKeys::Problem HotKeys::problemAfter(HotKeyError error, const HotKeyTable::Combination &combination,
                                       quint32 id) const {
    switch (error) {
    case HotKeyError::TakenElsewhere:
        return {Problem::Kind::TakenElsewhere};
    case HotKeyError::UnknownKey:
        return {Problem::Kind::UnknownKey};
    case HotKeyError::Declined:
        return {Problem::Kind::Declined};
    case HotKeyError::AlreadyHeld: {
        const auto holder = std::find_if(m_heldKeys.begin(), m_heldKeys.end(),
                                         [&](const Held &held) { return held.combination == combination; });
        if (holder != m_heldKeys.end() && holder->id != id && isAction(holder->id)) {
            return {Problem::Kind::HeldByAction, static_cast<Action>(holder->id)};
        }
        return {}; // registered earlier for the same action: it acts
    }
    case HotKeyError::None:
    case HotKeyError::NotAvailable: // reported for the whole desktop, not for one combination
    case HotKeyError::UnknownReference:
        break;
    }
    return {};
}

bool HotKeys::isAction(quint32 id) {
    return id >= 1 && id <= actions.size();
}

void HotKeys::setProblem(quint32 id, const Problem &problem) {
    if (isAction(id)) {
        m_problems[id - 1] = problem;
    }
}

void HotKeys::forget(HotKeyReference reference) {
    std::erase_if(m_heldKeys, [reference](const Held &held) { return held.reference == reference; });
}

void HotKeys::registrationWithdrawn(HotKeyReference reference, HotKeyError error) {
    const auto held = std::find_if(m_heldKeys.begin(), m_heldKeys.end(),
                                   [reference](const Held &entry) { return entry.reference == reference; });
    if (held == m_heldKeys.end()) {
        return;
    }
    const Held lost = *held;
    m_heldKeys.erase(held);
    // Losing an older combination of the action is no problem of the one that is chosen now.
    if (isAction(lost.id) && m_references[lost.id - 1] == reference) {
        setProblem(lost.id, problemAfter(error, lost.combination, lost.id));
    }
    if (m_changed) {
        m_changed();
    }
}

} // namespace quorvane
