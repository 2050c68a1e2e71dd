#include "Reference.h"

#include "frontend/session/DisplayState.h"
#include "tests/Text.h"

namespace quorvane::simulation {

void Reference::answerArrived() {
    m_answerIsHandled = true;
    m_answerSinceAttempt = true;
}

void Reference::allHandled() {
    m_answerIsHandled = false;
}

void Reference::attemptBegan() {
    if (m_state == State::Searching && m_animates) {
        return; // a further try, or a later step
    }
    m_state = State::Searching;
    // The last step of an answer enables the controls also for an attempt that the answer itself began.
    m_answerSinceAttempt = m_answerIsHandled;
    m_animates = true;
}

void Reference::addressRead() {
    m_addressRead = true;
}

void Reference::animationEnded(bool forTunnel) {
    m_animates = false;
    if (forTunnel && m_addressRead) {
        m_addressRead = false;
        m_hiddenFlag = true;
        m_state = State::Hidden;
        m_dialogSinceChange = false;
    }
}

void Reference::resetStored() {
    m_hiddenFlag = false;
    m_state = State::NotHidden;
    m_dialogSinceChange = false;
}

void Reference::gaveUp() {
    m_state = State::NotHidden; // the flag stays as it was
    m_dialogSinceChange = false;
}

void Reference::dialogRequested() {
    m_dialogSinceChange = true;
}

QString Reference::differenceFrom(const DisplayState &shown) {
    if (m_answerSeen && shown.spinning) {
        return text("the spinner turns after the first answer");
    }
    m_answerSeen = !shown.spinning;
    if (m_answerSeen && m_state == State::Starting) {
        m_state = State::NotHidden;
    }
    for (const QString &wrong : {wrongPictures(shown), wrongTexts(shown), wrongControls(shown)}) {
        if (!wrong.isNull()) {
            return text("by the table of states: ") + wrong;
        }
    }
    return {};
}

QString Reference::wrongPictures(const DisplayState &shown) const {
    switch (m_state) {
    case State::Starting:
    case State::NotHidden:
        if (shown.stateImage != text("appmain")) {
            return text("not hidden without its picture");
        }
        if (!m_animates && shown.trayImage != text("Tray")) {
            return text("not hidden without its tray picture");
        }
        break;
    case State::Searching:
        if (shown.stateImage != text("appwait")) {
            return text("an attempt without its picture");
        }
        // An answer ends the animation also of an attempt that does not proceed.
        if (!m_animates && !m_answerSinceAttempt) {
            return text("an attempt without its animation");
        }
        break;
    case State::Hidden:
        if (shown.stateImage != text("applock") || shown.trayImage != text("TrayLock")) {
            return text("hidden without its pictures");
        }
        break;
    }
    return shown.spinning == m_answerSeen ? text("the spinner turns exactly until the first answer")
                                          : QString();
}

QString Reference::wrongTexts(const DisplayState &shown) const {
    const bool hidden = m_state == State::Hidden;
    QString begin;
    Tone tone = Tone::Warning;
    switch (m_state) {
    case State::Starting:
    case State::NotHidden:
        begin = text("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!");
        break;
    case State::Searching:
        begin = text("Searching for an available IP...");
        tone = Tone::Quiet;
        break;
    case State::Hidden:
        begin = text("You are currently hiding your real IP ");
        tone = Tone::Plain;
        break;
    }
    if (!shown.line1.visible || !shown.line1.text.startsWith(begin) || shown.line1.tone != tone) {
        return text("another first line");
    }
    if (shown.line21.visible != hidden || shown.line22.visible != hidden || shown.flagVisible != hidden) {
        return text("location and flag are shown exactly while hidden");
    }
    return shown.line3.visible && m_state != State::Searching ? text("a notice without an attempt")
                                                              : QString();
}

QString Reference::wrongControls(const DisplayState &shown) const {
    const bool hidden = m_state == State::Hidden;
    if (shown.changeIpVisible != hidden || shown.discardIpVisible != hidden) {
        return text("change and discard are offered exactly while hidden");
    }
    const QString start = text("Quorvane");
    const QString stop = text("Stop Hiding IP");
    const bool enabled = shown.hideButton.enabled;
    if (enabled != shown.hideItem.enabled) {
        return text("button and item are enabled together");
    }
    switch (m_state) {
    case State::Starting:
        // A start that is to hide enables the controls when the first answer is handled, and presses.
        return (enabled || shown.hideButton.on) && !m_hiddenFlag ? text("the start with a button to press")
                                                                 : QString();
    case State::NotHidden:
        if (shown.hideButton.title != start || shown.hideItem.title != start) {
            return text("not hidden, and the button stops");
        }
        // A press that found no valid pair leaves the button on and the controls disabled, until an answer or
        // a reset.
        return (enabled && !shown.hideButton.on) || m_dialogSinceChange
                   ? QString()
                   : text("not hidden without a button to press");
    case State::Searching:
        // Disabled, unless the attempt waits for the user or an answer came while it did not proceed.
        return enabled && !shown.line3.visible && !m_answerSinceAttempt
                   ? text("an attempt with enabled controls")
                   : QString();
    case State::Hidden:
        // A press that found no network or no list has switched the button itself off.
        if (shown.hideButton.title != stop || shown.hideItem.title != stop) {
            return text("hidden, and the button does not stop");
        }
        return enabled && shown.changeItemEnabled ? QString() : text("hidden without controls");
    }
    return {};
}

} // namespace quorvane::simulation
