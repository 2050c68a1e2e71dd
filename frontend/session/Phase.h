#pragma once

namespace quorvane {

/// What the session does now. HideIpSession changes it, in one place. Events are handled one after the other,
/// so "may arrive" is what the next event may be; an event that is not named changes no phase.
///
/// A reset (a press that switches off, a refused command) leads from every phase to NotHidden, a new attempt
/// from every phase to Checking, and the end of the program to Ended. A report that an earlier tunnel failed
/// comes five seconds late and concerns whatever attempt there is then: it begins a further one, or ends in
/// NotHidden. The report that a tunnel is up concerns the one that runs, and leads to Hidden from whatever
/// phase a later attempt has reached.
enum class Phase {
    /// No answer of the service was handled. Nothing runs. May arrive: the first answer, or its failure. The
    /// user sees the warning, the spinner and disabled controls.
    Starting,
    /// No attempt and no tunnel. May arrive: everything that begins an attempt, and answers. The user sees
    /// the warning and enabled controls; while the network lock is closed, a notice with a button to lift it.
    NotHidden,
    /// An attempt begins: the administrator's pair is being tested and the network lock closed, if it is
    /// wanted, which holds the queue. The user sees what there was before; a press of the button has disabled
    /// the controls.
    Checking,
    /// The pair was not valid: its dialog is open or was closed, and the attempt is not resumed. May arrive:
    /// the reset that follows a refused command, answers, the dialog's start. The user sees the same as
    /// before.
    Dropped,
    /// A location was picked and its configuration is being requested. May arrive: its result. The user sees
    /// the search with disabled controls, from here to Connecting.
    Fetching,
    /// Every location was used in this rotation: nothing runs until there is a free one. May arrive: another
    /// list, another set of used locations, a press. The user sees the search, a notice, and can stop.
    Waiting,
    /// The pick had no usable address, or the list no location: nothing runs. May arrive: answers, which
    /// enable the controls. The user sees the search.
    Unusable,
    /// The tunnel is being started and its log is read. May arrive: success, a failure, the launch's refusal.
    Connecting,
    /// The tunnel could not be started for want of a configuration: nothing runs. May arrive: a press. The
    /// user sees the search, a notice, and can stop.
    Unconfigured,
    /// The tunnel is up and the lent address is shown. May arrive: everything that stops or changes it.
    Hidden,
    /// The program ends: the tunnel is being ended or has ended. Nothing may arrive.
    Ended
};

} // namespace quorvane
