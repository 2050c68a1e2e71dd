#pragma once

#include "SessionEnvironment.h"

#include <QObject>

namespace quorvane {

class QrvAPI;
class SessionDisplay;
class Vpn;

/// The hide-IP session: every transition from the user's request to the lent address and back. Main thread.
///
/// Owns no window and no tunnel; all collaborators must outlive it. A started attempt ends in exactly one of
/// showIp(), connectionError() without a retry left, and setDefaultControls(), or it waits for the user while
/// the window shows "Searching" (a location without usable addresses, or the administrator dialog was shown).
class HideIpSession final : public QObject {
    Q_OBJECT

public:
    /// Further attempts after the first failure of a request.
    static constexpr int retries = 3;

    HideIpSession(SessionEnvironment &environment, SessionDisplay &display, QrvAPI &api, Vpn &vpn,
                  QObject *parent = nullptr);
    ~HideIpSession() override;

    /// The hide button was pressed, by the user or by the program; its state is on or off.
    void quorvaneButtonPressed();
    void quorvane();
    void stopQuorvane();
    void quorvaneMenuItemPressed();

    /// Begins one connection attempt.
    void getNewIP();
    /// (Re)starts the tunnel with the stored configuration.
    void startVpn();
    /// The tunnel is up: reads and shows the lent address. Blocks until the address is known.
    void showIp();
    /// The attempt failed: retries, or ends with an alert.
    void connectionError();
    void terminateVpn();
    /// Returns to not hidden.
    void setDefaultControls();
    /// Re-reads the interval and arms or cancels the automatic change.
    void settingsDidChange();
    void reconectIfIpHidden();
    void updateLeaseTimerFired();

    /// Handles an answer of the service.
    void qrvAnswer();
    /// A request to the service failed: no answer came.
    void qrvFailed();
    void authPassed();
    /// Does nothing if true.
    void continueWork(bool proceed);

    [[nodiscard]] QString originalIP() const { return m_realIp; }

    [[nodiscard]] int failedConnections() const { return m_failures; }

    void clearFailedConnections() { m_failures = 0; }

    [[nodiscard]] bool changeTimerArmed() const { return m_timerArmed; }

private:
    void pressed(bool on);
    void changeIpTimerFired();
    void cancelChangeTimer();
    void noteOutcome(const QString &what);
    void reportNoAddress();
    [[nodiscard]] QString flagImageFor(const QString &countryCode) const;

    SessionEnvironment &m_environment;
    SessionDisplay &m_display;
    QrvAPI &m_api;
    Vpn &m_vpn;

    QString m_realIp;
    int m_failures = 0;
    // Delayed calls are cancelled by target, so the timer has its own.
    QObject m_changeIpTimer;
    bool m_timerArmed = false;
};

} // namespace quorvane
