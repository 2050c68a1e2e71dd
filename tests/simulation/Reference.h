#pragma once

#include <QString>

namespace quorvane {
struct DisplayState;
}

namespace quorvane::simulation {

/// The session's table of states, written down a second time: a state and what leads from one to another, as
/// it can be observed around the session (the tray animation, the stored preference, the script that reads
/// the address, alerts, the dialog, the list). It knows nothing of the session's phases, and has to agree
/// with what the session shows whenever that is at rest.
class Reference {
public:
    // What was observed, in its order.
    /// The service's answer arrived; it may be handled much later.
    void answerArrived();
    /// All answers that arrived were handled.
    void allHandled();
    /// The tray animation of an attempt began.
    void attemptBegan();
    /// The script read the lent address.
    void addressRead();
    /// The tray animation ended, because a tunnel is shown or for another reason.
    void animationEnded(bool forTunnel);
    /// The session stored that it is no longer hidden.
    void resetStored();

    /// The user resumes what an earlier run was doing: the first answer begins an attempt.
    void resumed() { m_hiddenFlag = true; }

    /// The alert of the last failure was requested.
    void gaveUp();
    /// The administrator's dialog was requested.
    void dialogRequested();

    /// How the display, which is at rest, differs from this state, or a null text.
    [[nodiscard]] QString differenceFrom(const DisplayState &shown);

    /// The same for the process-wide flag.
    [[nodiscard]] bool isHidden() const { return m_hiddenFlag; }

private:
    enum class State { Starting, NotHidden, Searching, Hidden };

    [[nodiscard]] QString wrongPictures(const DisplayState &shown) const;
    [[nodiscard]] QString wrongTexts(const DisplayState &shown) const;
    [[nodiscard]] QString wrongControls(const DisplayState &shown) const;

    State m_state = State::Starting;
    bool m_hiddenFlag = false;
    bool m_answerSeen = false;
    bool m_answerSinceAttempt = false;
    bool m_answerIsHandled = false;
    bool m_addressRead = false;
    bool m_dialogSinceChange = false;
    bool m_animates = true; ///< it turns from the start until the first answer
};

} // namespace quorvane::simulation
