#pragma once

#include "DisplayState.h"
#include "LocationChooser.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/privileges/NetworkLock.h"
#include "frontend/support/EventQueue.h"
#include "frontend/tunnel/Vpn.h"
#include "platform/TunnelWatch.h"

#include <QObject>
#include <functional>

namespace quorvane {

class AlertPresenter;
class AttemptAnimation;
class ConfigurationFetch;
class DiscardedAddresses;
class LocationRotation;
class SessionWindow;

/// The session's collaborators. None is owned; all must outlive the session.
struct SessionParts {
    EventQueue &events;
    QrvAPI &api;
    Vpn &vpn;
    ConfigurationFetch &fetch;
    LocationChooser &chooser;
    LocationRotation &rotation;
    AlertPresenter &alerts;
    AttemptAnimation &animation;
    SessionWindow &window;
    /// Returns the address that the tunnel of a configuration lends. Called on another thread; may block.
    std::function<QString(const QString &configurationPath)> lentAddress;
};

/// The hide-IP session: every transition from the user's request to the lent address and back. Main thread.
///
/// Every public operation without a result is an event: it is handled at once when the queue is free, else
/// after what is being handled. Handlers read from top to bottom; where a command or a script runs, they
/// await it and hold the queue; where an alert or a dialog is open, others are handled meanwhile.
///
/// An attempt ends in Hidden, or in NotHidden after a reset or the last failure, or it waits for the user.
/// Its steps carry its number: what arrives for an attempt that is over is dropped, in current(). The
/// tunnel's late report of a failure is no step of an attempt and concerns whichever there is.
class HideIpSession final : public VpnProtocol, public QrvApiProtocol, public LocationPaneDelegate {
    Q_OBJECT

public:
    /// Further attempts after the first failure of a request.
    static constexpr int retries = 3;
    /// Seconds from a refused kill to the reset that it causes: doubled by each one that follows unchanged,
    /// up to the longest.
    static constexpr double firstResetSeconds = 1.0;
    static constexpr double longestResetSeconds = 60.0;

    /// Seconds until the address is requested again when none came: doubled each time, up to the longest.
    static constexpr double firstAddressSeconds = 2.0;
    static constexpr double longestAddressSeconds = 60.0;

    /// Seconds after which a tunnel that is lost is no further loss in a row; after `retries` of them in a
    /// row it is not started again. Two programs that end each other's tunnels would do that for ever.
    static constexpr double stableSeconds = 60.0;

    explicit HideIpSession(const SessionParts &parts, QObject *parent = nullptr);
    ~HideIpSession() override;

    [[nodiscard]] const DisplayState &display() const { return m_display; }

    [[nodiscard]] const SessionFacts &facts() const { return m_facts; }

    /// The start of the run: ends a tunnel left over from an earlier one, then calls `cleared`. A request
    /// that is sent before that may be lost with the tunnel.
    void begin(const std::function<void()> &cleared);
    /// The end of the run: ends every handler, ends the tunnel, and calls `ended`. Nothing is handled later.
    void end(const std::function<void()> &ended);

    // What the user does.

    /// The hide button was pressed, by the user or by the program, and is on or off now.
    void quorvaneButtonPressed(bool on);
    void quorvane();
    /// Ends a tunnel that is shown, before another one is started.
    void stopQuorvane() override;
    /// The user stops hiding by a key.
    void stopHotKeyPressed();
    void quorvaneMenuItemPressed();
    void changeIpMenuItemPressed();
    void changeIpButtonPressed();
    void discardIpButtonPressed();
    void requireUSBasedIPButtonPressed(bool on);
    void changeEveryPressed(bool on);
    /// A running change timer is not changed; the new interval applies when the timer is next armed.
    void intervalEntered(int minutes);
    /// Requests the server list again, after a request that is under way. Not while a tunnel is in use,
    /// because the answer contains the address that the service sees, which is shown as the real one.
    void refreshLocationsPressed();
    /// Lifts the network lock, unless an attempt is under way or a tunnel is shown.
    void liftLockPressed();

    // What comes from outside.

    /// Begins one connection attempt.
    void getNewIP();
    /// The tunnel is up: reads and shows the lent address.
    void showIp();
    void connectionError() override;
    void terminateVpn() override;
    /// Returns to not hidden.
    void setDefaultControls();
    /// A command as administrator was refused: returns to not hidden, later if it was the kill.
    void resetRequested();
    /// Re-reads the interval and arms or cancels the automatic change.
    void settingsDidChange();
    void reconectIfIpHidden();
    void updateLeaseTimerFired();
    void qrvAnswer(QrvAPI &api) override;
    void qrvFailed(const platform::UrlError &error) override;
    /// A location may be unused again: a waiting attempt continues.
    void resumeIfWaiting();
    /// Tests the stored pair, and opens its dialog unless it is valid.
    void authWindow();
    void showFrame(const QString &image);

    [[nodiscard]] QStringList getDiscardList() const override;
    /// Stores the choice and empties the set of used locations.
    void setRequiredUS(bool required) override;

    void setDiscarded(const DiscardedAddresses &discarded) { m_discarded = &discarded; }

    /// What is awaited by handlers of the same queue.
    [[nodiscard]] Task<bool> pairIsValid();
    [[nodiscard]] Task<> administratorDialog();

    [[nodiscard]] QString originalIP() const { return m_facts.realAddress; }

    [[nodiscard]] int failedConnections() const { return m_failures; }

    [[nodiscard]] bool changeTimerArmed() const { return m_timerArmed; }

Q_SIGNALS:
    /// Emitted after every event too, because a control may show what the user did and not the state.
    void displayChanged(const DisplayState &state);

private:
    /// Posts the steps as an event.
    template <typename Steps, typename... Arguments>
    void post(Steps steps, Arguments... arguments) {
        m_parts.events.post([this, steps, arguments...]() -> Task<> {
            const auto task = (this->*steps)(arguments...);
            co_await task;
            publish();
        });
    }

    void enter(Phase phase);
    void publish();

    [[nodiscard]] bool current(quint64 attempt) const { return attempt == m_attempt; }

    // The attempt, in the order of its steps (HideIpSession.cpp).
    /// By the user, or in their place: a stop lifts the network lock.
    [[nodiscard]] Task<> press(bool on);
    [[nodiscard]] Task<> turn(bool on);
    [[nodiscard]] Task<> hide();
    [[nodiscard]] Task<> stop();
    [[nodiscard]] Task<> stopByUser();
    [[nodiscard]] Task<> beginAttempt();
    [[nodiscard]] Task<> pickAndFetch();
    [[nodiscard]] Task<> startTunnel();
    [[nodiscard]] Task<> reuseConfiguration(quint64 attempt);
    [[nodiscard]] Task<> attemptFailed();
    /// Puts the name servers back, if the user wants that, unless a new attempt has begun by then.
    void putBackServersLater();
    [[nodiscard]] Task<> endTunnel();
    /// Returns to not hidden. The steps beside endTunnel() are those of a lost tunnel too.
    [[nodiscard]] Task<> reset();
    void dropAttempt();
    void stopTimers();
    void tunnelWasEnded();
    void showReset();
    [[nodiscard]] Task<> resetAfterRefusal();
    /// The user's own choice, and a reset that ended the tunnel, make the one that waits needless.
    void cancelWaitingReset();
    void disableControls();
    /// The request of an attempt was answered.
    [[nodiscard]] Task<> fetchEnded(quint64 attempt, bool stored);
    void stopAnimation();
    void stopWatching();
    /// Everything of the last attempt is gone from the display.
    void forgetLentAddress();
    void noteOutcome(const QString &what) const;
    [[nodiscard]] Task<> alert(QString title, QString message);

    // A tunnel that is up (HideIpSessionTunnel.cpp).
    [[nodiscard]] Task<> tunnelIsUp();
    void showLentAddress(const QString &lentIp);
    /// Notifies the user of another lent address than the one before, unless the user stopped in between.
    void notifyChange();
    void watchTunnel();
    /// At once, whatever is being handled: nothing is hidden any more.
    void showLoss(quint64 tunnel, platform::TunnelLoss loss);
    [[nodiscard]] Task<> tunnelWasLost(quint64 tunnel, platform::TunnelLoss loss);
    void reportLoss(platform::TunnelLoss loss);
    /// Beside the queue, because nothing waits for the result.
    void readAddressLater(double seconds);
    [[nodiscard]] Task<> addressWasRead(quint64 tunnel, QString lentIp, double seconds);

    // The network lock (HideIpSessionLock.cpp).
    void watchLock();
    [[nodiscard]] Task<> lockChanged();
    /// Closes the lock, or renews it, if the user wants one. False when that failed, which ends the attempt.
    [[nodiscard]] Task<bool> lockForAttempt();
    [[nodiscard]] Task<> liftLock();
    [[nodiscard]] Task<> liftLockAtRest();
    [[nodiscard]] Task<> liftLockAtEnd();
    /// Null when it is lifted, else why it is not.
    [[nodiscard]] Task<QString> tryToLiftLock();
    /// An earlier run has left the lock closed.
    [[nodiscard]] Task<> askAboutLock();

    // Rotation (HideIpSessionRotation.cpp).
    /// Stops and starts again: one step for the button and the timer.
    [[nodiscard]] Task<> changeKeepingLocation();
    [[nodiscard]] Task<> changeToRandomLocation();
    [[nodiscard]] Task<> discardAddress();
    [[nodiscard]] Task<> switchRequireUs(bool on);
    [[nodiscard]] Task<> resumeWaiting();
    void setUsedItems();
    void cancelChangeTimer();
    void changeIpTimerFired();

    // Answers of the service (HideIpSessionAnswers.cpp).
    /// The address that the service saw may be a lent one if a tunnel was in use since the request.
    [[nodiscard]] Task<> answered(QrvApiRequest answer, bool mayBeLent);
    [[nodiscard]] Task<> firstAnswer(const QrvApiRequest &answer, bool mayBeLent);
    [[nodiscard]] Task<> laterAnswer(const QrvApiRequest &answer, bool mayBeLent);
    [[nodiscard]] Task<> requestFailed();
    void takeAddress(const QString &address);
    [[nodiscard]] Task<> authPassed();
    [[nodiscard]] Task<> continueWork(bool proceed);
    [[nodiscard]] Task<> reportNoAddress();
    [[nodiscard]] Task<> requestList();

    SessionParts m_parts;
    NetworkLock m_lock;
    const DiscardedAddresses *m_discarded = nullptr;
    SessionFacts m_facts;
    DisplayState m_display;
    /// Of the present attempt; grows with every attempt, reset and last failure.
    quint64 m_attempt = 0;
    quint64 m_fetchAttempt = 0;
    /// Of the tunnel that is or was last watched.
    RunningProcesses::Found m_tunnelProcesses;
    /// How many tunnels were started, now and when the list was last requested by the user.
    quint64 m_tunnelStarts = 0;
    quint64 m_startsAtRequest = 0;
    int m_failures = 0;
    /// The attempt follows a lost tunnel: it is retried whatever the location is.
    bool m_reconnects = false;
    /// The last lent address; empty after a stop by the user.
    QString m_lentBefore;
    /// Losses in a row after which the tunnel was started again.
    int m_losses = 0;
    /// Refused kills whose resets were seen to.
    quint64 m_seenRefusals = 0;
    bool m_resetWaits = false;
    // Delayed calls are cancelled by target, so each has its own.
    QObject m_changeIpTimer;
    QObject m_resetTimer;
    QObject m_addressTimer;
    QObject m_stableTimer;
    bool m_timerArmed = false;
};

} // namespace quorvane
