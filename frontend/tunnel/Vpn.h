#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

namespace quorvane {

class RunningProcesses;

/// Told by Vpn that a connection attempt failed. The operation is optional in spirit and has an empty body;
/// it is called on the main thread, some seconds after the failure was seen.
class VpnProtocol : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    virtual void connectionError() = 0;
};

/// Starts OpenVPN with administrator rights, watches its log, and kills it. One per process; main thread.
/// Starting expects the configuration's path and the VPN pair in the preferences.
class Vpn final : public QObject {
    Q_OBJECT

public:
    /// Seconds between two looks at OpenVPN's log, and from a failure seen to the delegate's call.
    static constexpr double pollSeconds = 2.0;
    static constexpr double failureSeconds = 5.0;

    /// The processes are not owned and must outlive this.
    explicit Vpn(RunningProcesses &processes, QObject *parent = nullptr);
    ~Vpn() override;

    void setDelegate(VpnProtocol *delegate) { m_delegate = delegate; }

    [[nodiscard]] VpnProtocol *getDelegate() const { return m_delegate; }

    [[nodiscard]] bool readsLog() const { return m_needReadLog; }

    /// Whether the last launch ended because there was no configuration file. Nothing else tells of it.
    [[nodiscard]] bool lacksConfiguration() const { return m_noConfiguration; }

    /// Kills what runs, then launches.
    void startVpn();
    /// Ends the watching and kills OpenVPN. Blocks while the administrator's shell runs.
    void stopVpn();
    /// True when the launch was handed to the background; false without a configuration file, and when the
    /// attempt failed because the session's files cannot be written or the shell would misread their paths.
    bool configVpn();
    /// One look at the log, and the appointment for the next.
    void readLog(const QString &path);
    /// Pipes the password into the command through the shell. Nothing uses it, and nothing should: the
    /// password stands in the shell's argument list while it runs. The result is true whatever the command
    /// did, and the session is returned to not hidden every time.
    bool runProcessAsAdministrator(const QString &launchPath, const QStringList &arguments, QString &output,
                                   QString &errorDescription);
    /// Removes the file; nothing calls it.
    void removeFileCred(const QString &path);

private:
    void terminatevpn();
    /// True when the log is there, empty, and there is room for what OpenVPN will write.
    [[nodiscard]] bool emptyLog(const QString &path);
    void launchInBackground(const QStringList &command, const QString &credentialsPath);
    void fail(const QString &line);

    RunningProcesses &m_processes;
    VpnProtocol *m_delegate = nullptr;
    bool m_needReadLog = false;
    bool m_noConfiguration = false;
};

} // namespace quorvane
