#pragma once

#include <QList>
#include <QString>
#include <optional>
#include <random>

namespace quorvane::simulation {

/// What can happen to a session from outside, in the order of `names` in Steps.cpp.
enum class Kind {
    Begin,        ///< the start of the program; an earlier run has left the lock closed at argument 15
    Press,        ///< the hide button
    HotKeyHide,   ///< 1
    HotKeyChange, ///< 2, and the tray's change item
    HotKeyStop,   ///< 3
    HotKeyDiscard,
    TrayHide, ///< the tray's hide item
    ChangeButton,
    Choose,      ///< the user chooses row `argument` of the list
    UsOnly,      ///< on when the argument is odd
    ChangeEvery, ///< on when the argument is odd
    SameIp,      ///< on when the argument is odd
    Apply,       ///< the settings were applied
    Interval,    ///< the user enters the argument as the interval
    Protocol,    ///< UDP when the argument is odd
    Stored,      ///< the files contain a configuration when the argument is odd, as after an earlier run
    Reconnect,   ///< a lost tunnel is started again when the argument is odd
    StoredPair,  ///< the user stores the administrator's pair, or removes it
    LockWanted,  ///< the network lock, when the argument is odd
    LockWorks,   ///< from now on it can be closed and lifted when the argument is odd
    Lift,        ///< the window's button that lifts it
    Unlock,      ///< it is lifted in a terminal
    Refresh,     ///< the tray's refresh item
    Answer,      ///< the oldest open request is answered; the argument says how
    FailAnswer,  ///< the oldest open request fails
    Finish,      ///< the piece of background work number `argument` runs and reports its end
    Work,        ///< the piece runs, but its end is not reported yet
    Service,     ///< from now on the service answers configuration requests when the argument is odd
    Address,     ///< from now on the lent address can be read when the argument is odd
    Log,         ///< OpenVPN writes what the argument says
    OpenVpnEnds, ///< by itself
    Guard,       ///< from now on the guard starts OpenVPN when the argument is odd
    Pair,        ///< from now on the administrator's pair is accepted when the argument is odd
    Network,     ///< there is a network when the argument is odd
    Close,       ///< the user closes the modal window; the argument answers a question
    Clock,       ///< time passes; the argument says how much
    Sleep,       ///< the machine sleeps and wakes; OpenVPN is gone when the argument is odd
    Command,     ///< another program's; the argument says which
    StartVpn,    ///< the notification
    CheckPair,   ///< the notification
    UpdateList,  ///< the notification
    Quit
};

struct Step {
    Kind kind;
    unsigned argument;

    bool operator==(const Step &) const = default;
};

using Steps = QList<Step>;

/// Steps as one line each can be read and replayed: "press 3, answer 0, quit 0".
[[nodiscard]] QString written(const Steps &steps);
/// The steps of such a text; absent when it contains anything else.
[[nodiscard]] std::optional<Steps> read(const QString &text);

/// A random walk that begins with the start of the program. Quit is always its last step.
[[nodiscard]] Steps drawn(std::mt19937_64 &random, int count);

} // namespace quorvane::simulation
