#include "DisplayState.h"

#include "LocationList.h"

#include <QCoreApplication>

namespace quorvane {

namespace {

/// Texts of the session's display.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(quorvane::DisplayState)

public:
    static QString status(Look look, const QString &realAddress) {
        switch (look) {
        case Look::NotHidden:
            return tr("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!");
        case Look::Searching:
            return tr("Searching for an available IP...");
        case Look::Hidden:
            return tr("You are currently hiding your real IP %1").arg(realAddress);
        }
        return {};
    }

    static QString notice(Phase phase) {
        if (phase == Phase::Waiting) {
            return tr("Every location has been used in this rotation. Refresh the locations or switch \"US "
                      "only\" to begin a new one.");
        }
        return tr("There is no VPN configuration to connect with. Choose a location to get a new one.");
    }

    static QString stopTitle() { return tr("Stop Hiding IP"); }

    static QString hideHint(const SessionFacts &facts) {
        if (!isPressable(facts)) {
            return tr("Cannot be pressed at the moment");
        }
        return facts.switchedOn ? tr("Stops hiding your real IP") : tr("Hides your real IP");
    }

    static QString addressNotice() { return tr("No answer through the tunnel yet"); }

    static QString step(int number) {
        switch (number) {
        case 1:
            return tr("Step 1 of 3: checking the administrator");
        case 2:
            return tr("Step 2 of 3: getting a configuration");
        default:
            return tr("Step 3 of 3: starting the tunnel");
        }
    }

    static QString firstUse() { return tr("Choose a location, then press Quorvane."); }

    static QString lockNotice() { return tr("Traffic outside the tunnel is blocked."); }

    static QString refreshHint() { return tr("Locations can be refreshed while your IP is not hidden."); }
};

Tone toneOf(Look look) {
    switch (look) {
    case Look::NotHidden:
        return Tone::Warning;
    case Look::Searching:
        return Tone::Quiet;
    case Look::Hidden:
        return Tone::Plain;
    }
    return Tone::Plain;
}

QString stateImage(Look look) {
    switch (look) {
    case Look::NotHidden:
        return QStringLiteral("appmain");
    case Look::Searching:
        return QStringLiteral("appwait");
    case Look::Hidden:
        return QStringLiteral("applock");
    }
    return {};
}

/// A tunnel that was lost hides nothing, even before that has been handled.
Look trueLook(const SessionFacts &facts) {
    return facts.lost && facts.look == Look::Hidden ? Look::NotHidden : facts.look;
}

/// The step of an attempt that is under way, from 1; 0 if none is, or if an address is still hidden.
int stepOf(Phase phase, Look look) {
    switch (look == Look::Hidden ? Phase::Hidden : phase) {
    case Phase::Checking:
        return 1;
    case Phase::Fetching:
        return 2;
    case Phase::Connecting:
        return 3;
    case Phase::Starting:
    case Phase::NotHidden:
    case Phase::Dropped:
    case Phase::Waiting:
    case Phase::Unusable:
    case Phase::Unconfigured:
    case Phase::Hidden:
    case Phase::Ended:
        return 0;
    }
    return 0;
}

/// The attempt waits for an action of the user, who can stop it.
bool waitsForUser(Phase phase) {
    return phase == Phase::Waiting || phase == Phase::Unconfigured;
}

} // namespace

QString DisplayState::hideTitle() {
    return QStringLiteral("Quorvane");
}

QString DisplayState::stopTitle() {
    return Texts::stopTitle();
}

bool isPressable(const SessionFacts &facts) {
    return facts.controls || waitsForUser(facts.phase);
}

bool isAtRest(const SessionFacts &facts) {
    switch (facts.phase) {
    case Phase::Starting:
    case Phase::NotHidden:
    case Phase::Unusable:
        return true;
    case Phase::Dropped:
        return trueLook(facts) != Look::Hidden;
    case Phase::Checking:
    case Phase::Fetching:
    case Phase::Waiting:
    case Phase::Connecting:
    case Phase::Unconfigured:
    case Phase::Hidden:
    case Phase::Ended:
        return false;
    }
    return false;
}

bool isTunnelInUse(const SessionFacts &facts) {
    if (facts.tunnelRuns) {
        return true;
    }
    switch (facts.phase) {
    case Phase::Checking:
    case Phase::Fetching:
    case Phase::Connecting:
    case Phase::Hidden:
        return true;
    case Phase::Starting:
    case Phase::NotHidden:
    case Phase::Waiting:
    case Phase::Unusable:
    case Phase::Unconfigured:
    case Phase::Ended:
        return false;
    case Phase::Dropped:
        return facts.look == Look::Hidden;
    }
    return false;
}

DisplayState displayOf(const SessionFacts &facts) {
    const Look look = trueLook(facts);
    const bool isHidden = look == Look::Hidden;
    const bool isLost = look != facts.look;
    const bool pressable = isPressable(facts);
    DisplayState state;
    state.look = look;
    state.line1 = {Texts::status(look, facts.realAddress), toneOf(look), true};
    state.line21.visible = isHidden;
    state.line22 = {LocationList::shownTitle(facts.location, facts.flag), Tone::Plain, isHidden};
    if (waitsForUser(facts.phase)) {
        state.line3 = {Texts::notice(facts.phase), Tone::Quiet, true};
    }
    if (const int step = stepOf(facts.phase, look); step > 0) {
        state.stepLine = {Texts::step(step), Tone::Quiet, true};
        state.timed = true;
    } else if (facts.firstUse && facts.phase == Phase::NotHidden) {
        state.stepLine = {Texts::firstUse(), Tone::Plain, true};
    }
    if (isHidden && facts.addressMissing) {
        state.addressNotice = {Texts::addressNotice(), Tone::Quiet, true};
    }
    if (facts.locked) {
        state.lockNotice = {Texts::lockNotice(), Tone::Quiet, true};
        state.liftVisible = isAtRest(facts);
    }
    state.currentIp = isLost ? facts.realAddress : facts.shownAddress;
    state.flagImage = isLost ? QString() : facts.flag;
    state.flagVisible = isHidden;
    state.stateImage = stateImage(look);
    const QString still = isHidden ? QStringLiteral("TrayLock") : QStringLiteral("Tray");
    state.trayImage = facts.frame.isNull() ? still : facts.frame;
    state.spinning = !facts.answered;
    state.hideButton = {facts.buttonStops ? DisplayState::stopTitle() : DisplayState::hideTitle(), pressable,
                        facts.switchedOn, Texts::hideHint(facts)};
    state.hideItem = {facts.itemStops ? DisplayState::stopTitle() : DisplayState::hideTitle(), pressable};
    state.advancedEnabled = facts.settingsEnabled;
    state.changeIpVisible = isHidden;
    state.discardIpVisible = isHidden;
    state.changeItemEnabled = facts.controls;
    state.copyItemEnabled = facts.copyEnabled;
    state.refreshEnabled = !isTunnelInUse(facts);
    state.refreshHint = state.refreshEnabled ? QString() : Texts::refreshHint();
    state.interval = facts.interval;
    state.changesAutomatically = facts.changesAutomatically;
    state.requiresUs = facts.requiresUs;
    return state;
}

} // namespace quorvane
