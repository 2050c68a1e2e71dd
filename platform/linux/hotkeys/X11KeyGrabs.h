#pragma once

#include "platform/HotKeyService.h"

#include <QList>
#include <QSet>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <memory>

struct xcb_connection_t;

namespace quorvane::platform {

/// Key combinations grabbed on the whole X display, whichever window has the focus, over a separate
/// connection. Main thread; handlers are called from the event loop.
///
/// Keys are X key codes, so a change of the keyboard layout does not affect them. Modifiers are X masks
/// without the lock keys: each combination is grabbed with every state of Caps Lock and Num Lock. A key that
/// is held down counts as one press.
class X11KeyGrabs {
public:
    struct Combination {
        quint8 key;
        quint16 modifiers;

        bool operator==(const Combination &) const = default;
    };

    struct Handlers {
        std::function<void(Combination)> pressed;
        /// A combination could not be grabbed again after the lock keys changed; it is no longer grabbed.
        std::function<void(Combination)> lost;
    };

    /// An empty name means the display of the environment.
    X11KeyGrabs(const QByteArray &display, Handlers newHandlers);
    ~X11KeyGrabs();
    X11KeyGrabs(const X11KeyGrabs &) = delete;
    X11KeyGrabs &operator=(const X11KeyGrabs &) = delete;

    /// False without a display, or once the connection to it is lost.
    [[nodiscard]] bool isOpen() const { return m_connection != nullptr; }

    /// Returns None, TakenElsewhere, UnknownKey (not on this keyboard) or NotAvailable; after an error
    /// nothing of the combination is grabbed.
    [[nodiscard]] HotKeyError grab(Combination combination);
    void ungrab(Combination combination);

private:
    struct Disconnect {
        void operator()(xcb_connection_t *open) const;
    };

    bool prepare(int screen);
    [[nodiscard]] bool detectRepeats();
    [[nodiscard]] quint16 findNumLock() const;
    [[nodiscard]] QList<quint16> lockStates() const;
    [[nodiscard]] HotKeyError grabAll(Combination combination);
    void ungrabAll(Combination combination);
    void readEvents();
    void updateNumLock();
    void dropReleasedKeys();
    void closeWhenBroken();

    const Handlers m_handlers;
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    std::unique_ptr<QSocketNotifier> m_notifier;
    /// Replies and events share the socket: events that were read together with a reply are handled on the
    /// next turn of the event loop.
    QTimer m_readSoon;
    QTimer m_updateSoon;
    /// Runs while keys are held whose release this program may not be sent.
    QTimer m_lookAtKeys;
    quint32 m_root = 0;
    quint8 m_keyboardEvent = 0;
    quint16 m_numLock = 0;
    QList<Combination> m_grabbed;
    QSet<quint8> m_keysDown;
};

} // namespace quorvane::platform
