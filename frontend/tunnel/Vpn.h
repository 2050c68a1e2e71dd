#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

namespace quorvane {

class RunningProcesses;

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
class Vpn final : public QObject {
    Q_OBJECT

public:
    /// Seconds between two readings of OpenVPN's log, and from a failure in it to the delegate's call.
    static constexpr double pollSeconds = 2.0;
    static constexpr double failureSeconds = 5.0;

    /// The processes are not owned and must outlive this.
    explicit Vpn(RunningProcesses &processes, QObject *parent = nullptr);
    ~Vpn() override;

    void setDelegate(VpnProtocol *delegate) { m_delegate = delegate; }

    [[nodiscard]] VpnProtocol *getDelegate() const { return m_delegate; }

    [[nodiscard]] bool readsLog() const { return m_needReadLog; }

    /// Whether the last launch ended because there was no configuration file. It is not reported otherwise.
    [[nodiscard]] bool lacksConfiguration() const { return m_noConfiguration; }

    /// Kills a running OpenVPN, then launches a new one.
    void startVpn();
    /// Stops watching the log and kills OpenVPN. Blocks while the administrator's shell runs.
    void stopVpn();
    /// True when the launch was queued on a background thread; false without a configuration file, and when
    /// the attempt failed because the session's files cannot be written or the shell would misread their
    /// paths.
    bool configVpn();
    /// Reads the log once, acts on it, and schedules the next reading unless the outcome is known.
    void readLog(const QString &path);
    /// Pipes the password into the command through the shell. Nothing uses it, and nothing should: the
    /// shell's argument list contains the password while the shell runs. Returns true whatever the command's
    /// result was, and always returns the session to not hidden.
    bool runProcessAsAdministrator(const QString &launchPath, const QStringList &arguments, QString &output,
                                   QString &errorDescription);
    /// Removes the file; nothing calls it.
    void removeFileCred(const QString &path);

private:
    void terminatevpn();
    /// True when the log exists, is empty, and has space reserved for the lines of OpenVPN.
    [[nodiscard]] bool emptyLog(const QString &path);
    void launchInBackground(const QStringList &command, const QString &credentialsPath);
    void fail(const QString &line);

    RunningProcesses &m_processes;
    VpnProtocol *m_delegate = nullptr;
    bool m_needReadLog = false;
    bool m_noConfiguration = false;
};

} // namespace quorvane
