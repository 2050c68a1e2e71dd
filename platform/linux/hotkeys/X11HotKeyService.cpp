#include "X11HotKeyService.h"

#include "VirtualKeys.h"
#include "X11KeyGrabs.h"

#include <array>
#include <xcb/xproto.h>

namespace quorvane::platform {

namespace {

struct Modifier {
    quint32 ours;
    quint16 mask;
};

constexpr std::array modifierMasks{
    Modifier{HotKeyService::command, XCB_MOD_MASK_4},
    Modifier{HotKeyService::shift, XCB_MOD_MASK_SHIFT},
    Modifier{HotKeyService::control, XCB_MOD_MASK_CONTROL},
};

X11KeyGrabs::Combination combinationOf(const HotKeyRegistry::Entry &entry) {
    quint16 mask = 0;
    for (const Modifier &modifier : modifierMasks) {
        if ((entry.modifiers & modifier.ours) != 0) {
            mask |= modifier.mask;
        }
    }
    return {findVirtualKey(entry.keyCode)->position, mask};
}

} // namespace

struct X11HotKeyService::State {
    [[nodiscard]] std::optional<HotKeyRegistry::Entry> find(X11KeyGrabs::Combination combination) const {
        for (const HotKeyRegistry::Entry &entry : registry.entries()) {
            if (combinationOf(entry) == combination) {
                return entry;
            }
        }
        return std::nullopt;
    }

    void reportPressed(X11KeyGrabs::Combination combination) const {
        const auto entry = find(combination);
        // A copy: the handler may install another.
        const EventHandler handler = pressed;
        if (entry && handler) {
            handler(entry->identifier);
        }
    }

    void reportLost(X11KeyGrabs::Combination combination) {
        const auto entry = find(combination);
        if (!entry) {
            return;
        }
        registry.remove(entry->reference);
        const RefusalHandler handler = refused;
        if (handler) {
            handler(entry->reference, HotKeyError::TakenElsewhere);
        }
    }

    HotKeyRegistry registry;
    EventHandler pressed;
    RefusalHandler refused;
    std::unique_ptr<X11KeyGrabs> grabs;
};

X11HotKeyService::X11HotKeyService(const QByteArray &display)
    : m_display(display), m_state(std::make_unique<State>()) {}

X11HotKeyService::~X11HotKeyService() = default;

X11KeyGrabs &X11HotKeyService::grabs() const {
    if (!m_state->grabs) {
        State *const here = m_state.get();
        m_state->grabs = std::make_unique<X11KeyGrabs>(
            m_display, X11KeyGrabs::Handlers{
                           [here](X11KeyGrabs::Combination combination) { here->reportPressed(combination); },
                           [here](X11KeyGrabs::Combination combination) {
                               here->reportLost(combination);
                           }});
    }
    return *m_state->grabs;
}

bool X11HotKeyService::isAvailable() const {
    return grabs().isOpen();
}

HotKeyRegistration X11HotKeyService::registerHotKey(quint32 keyCode, quint32 modifiers,
                                                    HotKeyIdentifier identifier) {
    HotKeyError error =
        isAvailable() ? m_state->registry.check(keyCode, modifiers) : HotKeyError::NotAvailable;
    if (error == HotKeyError::None) {
        error = grabs().grab(combinationOf({0, keyCode, modifiers, identifier}));
    }
    if (error != HotKeyError::None) {
        return {error, 0};
    }
    return {HotKeyError::None, m_state->registry.add(keyCode, modifiers, identifier)};
}

HotKeyError X11HotKeyService::unregisterHotKey(HotKeyReference reference) {
    const auto entry = m_state->registry.remove(reference);
    if (!entry) {
        return HotKeyError::UnknownReference;
    }
    grabs().ungrab(combinationOf(*entry));
    return HotKeyError::None;
}

void X11HotKeyService::installEventHandler(EventHandler handler) {
    m_state->pressed = std::move(handler);
}

void X11HotKeyService::installRefusalHandler(RefusalHandler handler) {
    m_state->refused = std::move(handler);
}

} // namespace quorvane::platform
