#include "Vpn.h"

#include "LogVerdict.h"
#include "RunningProcesses.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/ScriptUtil.h"
#include "frontend/privileges/SessionReset.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Notifications.h"
#include "frontend/support/Preferences.h"
#include "frontend/support/TextFile.h"
#include "platform/BackgroundWork.h"
#include "platform/DelayedCalls.h"
#include "platform/Files.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"

#include <QDir>
#include <QFile>
#include <cstdlib>

namespace quorvane {

namespace {

const QString processName = QStringLiteral("openvpn");
/// Many times the length of OpenVPN's lines until the tunnel is up or has failed.
constexpr qint64 logSpace = 64LL * 1024;

platform::Platform &services() {
    return platform::Platform::current();
}

QString quoted(const QString &value) {
    return QChar(u'\'') + value + QChar(u'\'');
}

} // namespace

Vpn::Vpn(RunningProcesses &processes, QObject *parent) : QObject(parent), m_processes(processes) {}

Vpn::~Vpn() {
    services().delayedCalls->cancelAll(this);
}

void Vpn::startVpn() {
    terminatevpn();
    configVpn();
}

void Vpn::stopVpn() {
    m_needReadLog = false;
    services().delayedCalls->cancelAll(this);
    terminatevpn();
}

bool Vpn::configVpn() {
    Diagnostics::log(QStringLiteral("configVpn begins"));
    m_noConfiguration = false;
    const QString executable = services().bundle->resourcesPath() + QStringLiteral("/openvpn");
    const QString credentials = Diagnostics::shown(Preferences::text(Preference::VpnUsername)) +
                                QChar(u'\n') + Diagnostics::shown(Preferences::text(Preference::VpnPassword));
    const QString folder = services().account.documents();
    QDir().mkpath(folder);
    const QString credentialsPath = folder + QStringLiteral("/.vpnCreds.txt");
    const QString logPath = folder + QStringLiteral("/openvpn.log");
    // Written before the check for a configuration: a start without one still stores the current pair.
    const bool stored = TextFile::replace(credentialsPath, credentials.toUtf8());
    // Without space on the disk the log would stay empty, and the program could not see that the tunnel came
    // up.
    if (!stored || platform::checkSpace(folder, logSpace) != 0) {
        fail(QStringLiteral("no room for the files of a session in %1").arg(folder));
        return false;
    }

    const QString configurationPath = Preferences::text(Preference::VpnConfigPath);
    m_noConfiguration = configurationPath.isEmpty() || !QFile::exists(configurationPath);
    if (m_noConfiguration) {
        Diagnostics::log(QStringLiteral("no config file"));
        return false;
    }
    for (const QString &path : {executable, configurationPath, credentialsPath, logPath}) {
        if (path.contains(u'\'')) {
            // Nothing is escaped between the quotes: root's shell would run the text behind the apostrophe as
            // commands.
            fail(QStringLiteral("not started: there is an apostrophe in %1").arg(path));
            return false;
        }
    }
    if (!emptyLog(logPath)) {
        fail(QStringLiteral("log file %1 cannot be created").arg(logPath));
        return false;
    }
    m_needReadLog = true;
    readLog(logPath);

    // The blank before "--auth-user-pass" is part of the argument, so the line contains two blanks there.
    launchInBackground({quoted(executable), QStringLiteral("--config"), quoted(configurationPath),
                        QStringLiteral(" --auth-user-pass"), quoted(credentialsPath),
                        QStringLiteral("--log-append"), quoted(logPath), QStringLiteral("&")},
                       quoted(credentialsPath));
    return true;
}

bool Vpn::emptyLog(const QString &path) {
    // Removed, not truncated: a log that the administrator's shell created belongs to root. It is created
    // again here, so that it belongs to the user and OpenVPN appends to it.
    if (!QFile::remove(path)) {
        Diagnostics::log(QStringLiteral("log file %1 wasn't removed").arg(path));
    }
    return TextFile::replace(path, {}) && platform::reserveSpace(path, logSpace) == 0;
}

void Vpn::launchInBackground(const QStringList &command, const QString &credentialsPath) {
    const auto launch = [command, credentialsPath] {
        QString output;
        QString error;
        const bool launched =
            ScriptUtil().runProcessAsAdministrator(command.first(), command.sliced(1), output, error);
        Diagnostics::logAlways(QStringLiteral("> %1").arg(launched ? 1 : 0));
        // The path includes its quotes here, so nothing is removed and the credentials file stays until the
        // next start rewrites it: OpenVPN runs in the background and may not have read it yet.
        QFile::remove(credentialsPath);
    };
    services().background->run(launch, this, [] {});
}

void Vpn::terminatevpn() {
    if (!m_processes.isRunning(processName)) {
        return;
    }
    QString output;
    QString error;
    const bool stopped = ScriptUtil().runProcessAsAdministrator(
        QStringLiteral("sudo"),
        {QStringLiteral("-S"), QStringLiteral("killall"), QStringLiteral("-9"), processName}, output, error);
    Diagnostics::logAlways(QStringLiteral("Stopped? > %1").arg(stopped ? 1 : 0));
}

void Vpn::readLog(const QString &path) {
    if (QFile::exists(path)) {
        const LogVerdict verdict = LogVerdict::of(TextFile::read(path));
        switch (verdict.outcome) {
        case LogVerdict::Outcome::Up:
            services().notifications->post(Notifications::showIp);
            m_needReadLog = false;
            break;
        case LogVerdict::Outcome::WithErrors:
            fail(QString());
            m_needReadLog = false;
            break;
        case LogVerdict::Outcome::Failed:
        case LogVerdict::Outcome::Undecided:
            for (const QString &line : verdict.failures) {
                fail(line);
            }
            if (!verdict.lastLine.isNull()) {
                Diagnostics::log(QStringLiteral("lastLine: ") +
                                 QrvCredentials::sanitizeStringByRemovingLoginAndPassword(verdict.lastLine));
            }
            if (verdict.stuckAtLink) {
                fail(QStringLiteral("stopVpn by link remote"));
            }
            break;
        }
    }
    if (m_needReadLog) {
        services().delayedCalls->callAfter(pollSeconds, this, [this, path] { readLog(path); });
    }
}

void Vpn::fail(const QString &line) {
    if (!line.isNull()) {
        Diagnostics::log(line);
    }
    stopVpn();
    if (m_delegate != nullptr) {
        // The delegate is the call's target, so stopVpn() does not cancel it.
        services().delayedCalls->callAfter(failureSeconds, m_delegate,
                                           [target = m_delegate] { target->connectionError(); });
    }
}

bool Vpn::runProcessAsAdministrator(const QString &launchPath, const QStringList &arguments,
                                    QString & /*output*/, QString & /*errorDescription*/) {
    const QString command = launchPath + QChar(u' ') + arguments.join(u' ');
    const QrvCredentials &credentials = QrvCredentials::sharedInstance();
    const QString user = credentials.userName();
    const QString password = credentials.rootPassword();
    if ((user.isEmpty() && !user.isNull()) || (password.isEmpty() && !password.isNull())) {
        return false;
    }
    const QString script =
        QStringLiteral("echo \"") + Diagnostics::shown(password) + QStringLiteral("\"| ") + command;
    Diagnostics::log(QStringLiteral("script: ") + script);
    // NOLINTNEXTLINE(bugprone-command-processor,cert-env33-c): the shell's pipe is the point of this runner
    static_cast<void>(!std::system(script.toUtf8().constData()));
    SessionReset::request();
    return true;
}

void Vpn::removeFileCred(const QString &path) {
    QFile::remove(path);
}

} // namespace quorvane
