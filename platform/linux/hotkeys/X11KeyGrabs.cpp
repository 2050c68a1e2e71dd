#include "X11KeyGrabs.h"

#include "platform/linux/x11/XcbMemory.h"

#include <algorithm>
#include <utility>
#include <xcb/xcb.h>
// The header has a field of that name.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicit_ // NOLINT(readability-identifier-naming)
#include <xcb/xkb.h>
#undef explicit
#ifdef __clang__
#pragma clang diagnostic pop
#endif

namespace quorvane::platform {

namespace {

constexpr quint32 numLockSymbol = 0xFF7F;
constexpr quint16 allModifiers = 0xFF;
constexpr int lookMilliseconds = 20;

HotKeyError errorOf(quint8 error) {
    switch (error) {
    case XCB_ACCESS:
        return HotKeyError::TakenElsewhere;
    case XCB_VALUE:
        return HotKeyError::UnknownKey;
    default:
        return HotKeyError::NotAvailable;
    }
}

} // namespace

void X11KeyGrabs::Disconnect::operator()(xcb_connection_t *open) const {
    xcb_disconnect(open);
}

X11KeyGrabs::X11KeyGrabs(const QByteArray &display, Handlers newHandlers)
    : m_handlers(std::move(newHandlers)) {
    int screen = 0;
    m_connection.reset(xcb_connect(display.isEmpty() ? nullptr : display.constData(), &screen));
    if (xcb_connection_has_error(m_connection.get()) != 0 || !prepare(screen)) {
        m_connection.reset();
        return;
    }
    m_notifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { readEvents(); });
    m_readSoon.setSingleShot(true);
    m_updateSoon.setSingleShot(true);
    m_lookAtKeys.setSingleShot(true);
    QObject::connect(&m_readSoon, &QTimer::timeout, &m_readSoon, [this] { readEvents(); });
    QObject::connect(&m_updateSoon, &QTimer::timeout, &m_updateSoon, [this] { updateNumLock(); });
    QObject::connect(&m_lookAtKeys, &QTimer::timeout, &m_lookAtKeys, [this] { dropReleasedKeys(); });
    m_readSoon.start(0);
}

X11KeyGrabs::~X11KeyGrabs() = default;

bool X11KeyGrabs::prepare(int screen) {
    auto roots = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get()));
    for (; screen > 0 && roots.rem > 1; --screen) {
        xcb_screen_next(&roots);
    }
    if (roots.rem == 0) {
        return false;
    }
    m_root = roots.data->root;
    if (!detectRepeats()) {
        return false;
    }
    m_numLock = findNumLock();
    return xcb_connection_has_error(m_connection.get()) == 0;
}

/// Makes repeated presses of a held key distinguishable from new presses, and subscribes to changes of the
/// keyboard.
bool X11KeyGrabs::detectRepeats() {
    xcb_connection_t *const c = m_connection.get();
    const auto *const extension = xcb_get_extension_data(c, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0) {
        return false;
    }
    m_keyboardEvent = extension->first_event;
    const auto version = xcb_xkb_use_extension(c, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    constexpr quint32 detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const auto flags = xcb_xkb_per_client_flags(c, XCB_XKB_ID_USE_CORE_KBD, detectable, detectable, 0, 0, 0);
    constexpr quint16 events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr quint16 parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(c, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts, nullptr);
    const auto known = adopt(xcb_xkb_use_extension_reply(c, version, nullptr));
    const auto set = adopt(xcb_xkb_per_client_flags_reply(c, flags, nullptr));
    return known && known->supported != 0 && set && (set->value & detectable) != 0;
}

/// The mask of the modifier of the Num Lock key; 0 when the keyboard has none.
quint16 X11KeyGrabs::findNumLock() const {
    xcb_connection_t *const c = m_connection.get();
    const xcb_setup_t *const setup = xcb_get_setup(c);
    const int keyCount = setup->max_keycode - setup->min_keycode + 1;
    const auto modifiersCookie = xcb_get_modifier_mapping(c);
    const auto symbolsCookie = xcb_get_keyboard_mapping(c, setup->min_keycode, static_cast<quint8>(keyCount));
    const auto modifiers = adopt(xcb_get_modifier_mapping_reply(c, modifiersCookie, nullptr));
    const auto symbols = adopt(xcb_get_keyboard_mapping_reply(c, symbolsCookie, nullptr));
    if (!modifiers || !symbols) {
        return 0;
    }
    const xcb_keycode_t *const keys = xcb_get_modifier_mapping_keycodes(modifiers.get());
    const xcb_keysym_t *const all = xcb_get_keyboard_mapping_keysyms(symbols.get());
    const int width = symbols->keysyms_per_keycode;
    for (int i = 0; i < xcb_get_modifier_mapping_keycodes_length(modifiers.get()); ++i) {
        const int row = keys[i] - setup->min_keycode;
        if (row < 0 || (row + 1) * width > xcb_get_keyboard_mapping_keysyms_length(symbols.get())) {
            continue;
        }
        const xcb_keysym_t *const first = all + row * width;
        if (std::find(first, first + width, numLockSymbol) != first + width) {
            return static_cast<quint16>(1U << static_cast<unsigned>(i / modifiers->keycodes_per_modifier));
        }
    }
    return 0;
}

QList<quint16> X11KeyGrabs::lockStates() const {
    constexpr quint16 capsLock = XCB_MOD_MASK_LOCK;
    if (m_numLock == 0) {
        return {0, capsLock};
    }
    return {0, capsLock, m_numLock, static_cast<quint16>(capsLock | m_numLock)};
}

HotKeyError X11KeyGrabs::grab(Combination combination) {
    if (!isOpen()) {
        return HotKeyError::NotAvailable;
    }
    const HotKeyError error = grabAll(combination);
    if (error == HotKeyError::None) {
        m_grabbed.append(combination);
    }
    m_readSoon.start(0);
    return error;
}

HotKeyError X11KeyGrabs::grabAll(Combination combination) {
    xcb_connection_t *const c = m_connection.get();
    QList<xcb_void_cookie_t> cookies;
    for (const quint16 locks : lockStates()) {
        cookies.append(xcb_grab_key_checked(c, 0, m_root, combination.modifiers | locks, combination.key,
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    HotKeyError error = HotKeyError::None;
    for (const xcb_void_cookie_t cookie : std::as_const(cookies)) {
        const auto refusal = adopt(xcb_request_check(c, cookie));
        if (refusal && error == HotKeyError::None) {
            error = errorOf(refusal->error_code);
        }
    }
    // After the connection is lost, no error is reported for the requests.
    if (xcb_connection_has_error(c) != 0) {
        return HotKeyError::NotAvailable;
    }
    if (error != HotKeyError::None) {
        ungrabAll(combination);
    }
    return error;
}

void X11KeyGrabs::ungrab(Combination combination) {
    if (!m_grabbed.removeOne(combination) || !isOpen()) {
        return;
    }
    ungrabAll(combination);
    m_readSoon.start(0);
}

/// Waits for the server, so that other programs can grab the combination afterwards.
void X11KeyGrabs::ungrabAll(Combination combination) {
    xcb_connection_t *const c = m_connection.get();
    for (const quint16 locks : lockStates()) {
        xcb_ungrab_key(c, combination.key, m_root, combination.modifiers | locks);
    }
    static_cast<void>(adopt(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr)));
}

void X11KeyGrabs::readEvents() {
    // A handler may run an event loop, in which this function is called again, or lose the connection.
    while (m_connection) {
        const auto event = adopt(xcb_poll_for_event(m_connection.get()));
        if (!event) {
            break;
        }
        const quint8 type = event->response_type & 0x7FU;
        const void *const raw = event.get();
        const auto *const key = static_cast<const xcb_key_press_event_t *>(raw);
        if (type == m_keyboardEvent || type == XCB_MAPPING_NOTIFY) {
            m_updateSoon.start(0);
        } else if (type == XCB_KEY_RELEASE) {
            m_keysDown.remove(key->detail);
            if (!m_keysDown.isEmpty()) {
                m_lookAtKeys.start(lookMilliseconds);
            }
        } else if (type == XCB_KEY_PRESS && !m_keysDown.contains(key->detail)) {
            m_keysDown.insert(key->detail);
            const auto locks = static_cast<quint16>(XCB_MOD_MASK_LOCK | m_numLock);
            m_handlers.pressed({key->detail, static_cast<quint16>(key->state & allModifiers & ~locks)});
        }
    }
    closeWhenBroken();
}

/// The server sends key events from the press of a grabbed combination to the release of its key. Other keys
/// that are still held then are released unseen.
void X11KeyGrabs::dropReleasedKeys() {
    if (!isOpen()) {
        return;
    }
    xcb_connection_t *const c = m_connection.get();
    const auto held = adopt(xcb_query_keymap_reply(c, xcb_query_keymap(c), nullptr));
    if (held) {
        m_keysDown.removeIf([&held](quint8 key) {
            constexpr unsigned keysInAByte = 8;
            return (held->keys[key / keysInAByte] >> (key % keysInAByte) & 1U) == 0;
        });
    }
    if (!m_keysDown.isEmpty()) {
        m_lookAtKeys.start(lookMilliseconds);
    }
    m_readSoon.start(0);
}

/// Num Lock may be another modifier now.
void X11KeyGrabs::updateNumLock() {
    if (!isOpen()) {
        return;
    }
    const quint16 present = findNumLock();
    m_readSoon.start(0);
    if (present == m_numLock || xcb_connection_has_error(m_connection.get()) != 0) {
        return;
    }
    const QList<Combination> before = std::exchange(m_grabbed, {});
    for (const Combination combination : before) {
        ungrabAll(combination);
    }
    m_numLock = present;
    QList<Combination> lost;
    for (const Combination combination : before) {
        (grabAll(combination) == HotKeyError::None ? m_grabbed : lost).append(combination);
    }
    for (const Combination combination : std::as_const(lost)) {
        m_handlers.lost(combination);
    }
}

void X11KeyGrabs::closeWhenBroken() {
    if (!m_connection || xcb_connection_has_error(m_connection.get()) == 0) {
        return;
    }
    // Often called by the notifier itself.
    m_notifier->setEnabled(false);
    m_notifier.release()->deleteLater();
    m_readSoon.stop();
    m_updateSoon.stop();
    m_lookAtKeys.stop();
    m_connection.reset();
}

} // namespace quorvane::platform
