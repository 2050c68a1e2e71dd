#pragma once

#include "RunningProcesses.h"
#include "frontend/support/Task.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <memory>

namespace quorvane {

class EventQueue;
class Launch;

/// Receives Vpn's report that a connection attempt failed. Called on the main thread, some seconds after the
/// failure was seen.
class VpnProtocol : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    virtual void connectionError() = 0;
};

/// Starts OpenVPN with administrator rights, watches its log, and kills it. One per process; main thread.
/// Before a start, the preferences must contain the configuration's path and the VPN pair.
///
/// Operations that run a command as administrator are awaited by a handler of the queue, which they hold. A
/// reading of the log is an event of that queue.
class Vpn final : public QObject {
    Q_OBJECT

public:
    /// Seconds between two readings of OpenVPN's log, and from a failure in it to the delegate's call.
    static constexpr double pollSeconds = 2.0;
    static constexpr double failureSeconds = 5.0;

    /// Neither is owned; both must outlive this.
    Vpn(RunningProcesses &processes, EventQueue &events, QObject *parent = nullptr);
    ~Vpn() override;

    void setDelegate(VpnProtocol *delegate) { m_delegate = delegate; }

    [[nodiscard]] VpnProtocol *getDelegate() const { return m_delegate; }

    [[nodiscard]] bool readsLog() const { return m_needReadLog; }

    /// Whether the last launch ended because there was no configuration file. It is not reported otherwise.
    [[nodiscard]] bool lacksConfiguration() const { return m_noConfiguration; }

    /// The processes of the last launch that run now and can be seen: guards and OpenVPN.
    [[nodiscard]] RunningProcesses::Found ownProcesses() const;

    /// Waits until these have ended, a fifth of a second at most. True when they have, as far as they can be
    /// seen: the log is complete.
    [[nodiscard]] Task<bool> haveEnded(RunningProcesses::Found processes);

    /// How many kills the administrator's shell has refused.
    [[nodiscard]] quint64 refusedKills() const { return m_refusedKills; }

    /// How many of them were the last ones with the same reason, processes and administrator's pair; only the
    /// first of them is logged.
    [[nodiscard]] int sameRefusals() const { return m_sameRefusals; }

    /// The next refusal counts as the first of its kind.
    void forgetRefusal() { m_sameRefusals = 0; }

    /// Kills a running OpenVPN, then launches a new one.
    [[nodiscard]] Task<> startVpn();
    /// Stops watching the log and kills OpenVPN. A launch that has not begun is cancelled; of one that has,
    /// the process is awaited first, since it could not be found yet.
    [[nodiscard]] Task<> stopVpn();
    /// The same for a tunnel that was lost, given the processes that it had: nothing is killed when its
    /// OpenVPN is known to have ended. The one that runs then is another user's.
    [[nodiscard]] Task<> stopLostVpn(RunningProcesses::Found processes);
    /// True when the launch was begun on another thread; false without a configuration file, and when the
    /// attempt failed because the shell would misread a path.
    [[nodiscard]] Task<bool> configVpn();
    /// Reads the log once, acts on it, and schedules the next reading unless the outcome is known.
    [[nodiscard]] Task<> readLog(QString path);
    /// Pipes the password into the command through the shell. Nothing uses it, and nothing should: the
    /// shell's argument list contains the password while the shell runs. Returns true whatever the command's
    /// result was, and always returns the session to not hidden.
    bool runProcessAsAdministrator(const QString &launchPath, const QStringList &arguments, QString &output,
                                   QString &errorDescription);
    /// Removes the file; nothing calls it.
    void removeFileCred(const QString &path);

private:
    void stopReading();
    [[nodiscard]] Task<> terminatevpn();
    [[nodiscard]] Task<> launchSettled();
    [[nodiscard]] Task<> fail(QString line);
    /// True once the launch has ended and nothing that it started runs, at two readings without a verdict.
    [[nodiscard]] bool nothingRuns();
    void emptyLog(const QString &path);
    void scheduleReading(const QString &path);
    void launchInBackground(const QStringList &command, const QString &credentialsPath);

    RunningProcesses &m_processes;
    EventQueue &m_events;
    VpnProtocol *m_delegate = nullptr;
    bool m_needReadLog = false;
    bool m_noConfiguration = false;
    /// Changes with every stop. What belongs to an earlier run is dropped.
    quint64 m_run = 0;
    /// Bytes of a log that could not be emptied.
    qint64 m_logStart = 0;
    int m_looksWithoutProcess = 0;
    std::shared_ptr<Launch> m_launch;
    /// Processes of those names that ran when the launch began: they are not ours.
    QSet<qint64> m_others;
    /// The reason of the last refused kill, and what it depends on.
    QString m_refusal;
    QSet<qint64> m_refusedProcesses;
    std::size_t m_refusedPair = 0;
    int m_sameRefusals = 0;
    quint64 m_refusedKills = 0;
};

} // namespace quorvane
