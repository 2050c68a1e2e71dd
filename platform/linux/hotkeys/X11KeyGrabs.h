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

/// Key combinations taken from the whole X display, whichever window has the focus, over a connection of
/// its own. Main thread; handlers are called from the event loop.
///
/// Keys are X key codes, so a change of the keyboard layout moves nothing. Modifiers are X masks without
/// the lock keys: each combination is taken with every state of Caps Lock and Num Lock. A key that is held
/// counts as one press.
class X11KeyGrabs {
public:
    struct Combination {
        quint8 key;
        quint16 modifiers;

        bool operator==(const Combination &) const = default;
    };

    struct Handlers {
        std::function<void(Combination)> pressed;
        /// A combination could not be kept when the lock keys changed; it is no longer taken.
        std::function<void(Combination)> lost;
    };

    /// An empty name means the display of the environment.
    X11KeyGrabs(const QByteArray &display, Handlers toTell);
    ~X11KeyGrabs();
    X11KeyGrabs(const X11KeyGrabs &) = delete;
    X11KeyGrabs &operator=(const X11KeyGrabs &) = delete;

    /// False without a display, or once the connection to it is lost.
    [[nodiscard]] bool isOpen() const { return m_connection != nullptr; }

    /// None, TakenElsewhere, UnknownKey (not on this keyboard) or NotAvailable; takes all or nothing.
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
    void followKeyboard();
    void closeWhenBroken();

    const Handlers m_handlers;
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    std::unique_ptr<QSocketNotifier> m_notifier;
    /// Answers and events share the socket: what came in with an answer is read on the next turn.
    QTimer m_readSoon;
    QTimer m_followSoon;
    quint32 m_root = 0;
    quint8 m_keyboardEvent = 0;
    quint16 m_numLock = 0;
    QList<Combination> m_taken;
    QSet<quint8> m_keysDown;
};

} // namespace quorvane::platform
