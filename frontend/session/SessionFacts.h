#pragma once

#include "Phase.h"

#include <QString>

namespace quorvane {

/// What the window shows of a session's phase. A phase without a look of its own (Checking, Dropped, Ended)
/// keeps that of the phase before.
enum class Look { NotHidden, Searching, Hidden };

/// Everything that the display is computed from. HideIpSession changes it; the window and the tray read only
/// what displayOf() makes of it. A value; main thread.
struct SessionFacts {
    Phase phase = Phase::Starting;
    Look look = Look::NotHidden;
    /// The first answer was handled.
    bool answered = false;
    /// The user may press, hide and change. Waiting phases can be stopped in any case.
    bool controls = false;
    bool settingsEnabled = true;
    /// A tunnel was started and not ended: it may be up whatever the phase is, because a new attempt ends it
    /// only when it starts its own, and because a kill can be refused.
    bool tunnelRuns = false;
    /// The tunnel that is shown, or is about to be, was lost; what follows from it is still to be handled.
    bool lost = false;
    /// The tunnel is up, and no address has been read through it yet.
    bool addressMissing = false;
    /// No address was ever lent to this user.
    bool firstUse = false;
    /// The network lock is closed: nothing but a tunnel can be reached.
    bool locked = false;
    /// What the user switched last, or the program in their place.
    bool switchedOn = false;
    /// The titles of the hide button and of the hide item offer to stop.
    bool buttonStops = false;
    bool itemStops = false;
    bool copyEnabled = true;
    /// The address that the service saw; null before the first answer.
    QString realAddress;
    /// The address to show, exactly as it is: the real one or the lent one.
    QString shownAddress;
    /// The last non-empty location of a lent address, and the name of its flag's image.
    QString location;
    QString flag;
    /// The frame of the tray animation; null while it is not running.
    QString frame;
    int interval = 0;
    bool changesAutomatically = false;
    bool requiresUs = false;
};

} // namespace quorvane
