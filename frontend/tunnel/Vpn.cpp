#include "Vpn.h"

#include "Launch.h"
#include "LogVerdict.h"
#include "RunningProcesses.h"
#include "frontend/privileges/AdministratorPair.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/ScriptUtil.h"
#include "frontend/privileges/SessionReset.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/EventQueue.h"
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
#include <QFileInfo>
#include <QThread>
#include <cstdlib>
#include <exception>

namespace quorvane {

namespace {

const QString processName = QStringLiteral("openvpn");
const QString guardName = QStringLiteral("openvpn-guard");
/// Many times the length of OpenVPN's lines until the tunnel is up or has failed.
constexpr qint64 logSpace = 64LL * 1024;
/// How often and how long one looks for the process of a launch that is being stopped: five seconds in all.
constexpr int maximumLooks = 1000;
constexpr int maximumEndLooks = 40;
constexpr unsigned long lookMilliseconds = 5;

platform::Platform &services() {
    return platform::Platform::current();
}

QString quoted(const QString &value) {
    return QChar(u'\'') + value + QChar(u'\'');
}

} // namespace

Vpn::Vpn(RunningProcesses &processes, EventQueue &events, QObject *parent)
    : QObject(parent), m_processes(processes), m_events(events) {}

Vpn::~Vpn() {
    services().delayedCalls->cancelAll(this);
}

Task<> Vpn::startVpn() {
    co_await terminatevpn();
    co_await configVpn();
}

Task<> Vpn::stopVpn() {
    stopReading();
    co_await launchSettled();
    co_await terminatevpn();
}

Task<> Vpn::stopLostVpn(RunningProcesses::Found processes) {
    const RunningProcesses::Found running = m_processes.find(processName);
    if (!processes.seesAll || !running.seesAll || running.ids.intersects(processes.ids)) {
        co_await stopVpn();
        co_return;
    }
    stopReading();
    m_sameRefusals = 0;
}

void Vpn::stopReading() {
    m_needReadLog = false;
    ++m_run;
    services().delayedCalls->cancelAll(this);
}

Task<bool> Vpn::configVpn() {
    Diagnostics::log(QStringLiteral("configVpn begins"));
    m_noConfiguration = false;
    const QString executable = services().bundle->resourcesPath() + QStringLiteral("/openvpn");
    const QString credentials = Diagnostics::shown(Preferences::text(Preference::VpnUsername)) +
                                QChar(u'\n') + Diagnostics::shown(Preferences::text(Preference::VpnPassword));
    const QString folder = services().account.documents();
    QDir().mkpath(folder);
    const QString credentialsPath = folder + QStringLiteral("/.vpnCreds.txt");
    const QString logPath = folder + QStringLiteral("/openvpn.log");
    // Written before the check for a configuration: a start without one still stores the current pair. A file
    // that cannot be written keeps nothing from being started: without its files the tunnel ends by itself.
    TextFile::replace(credentialsPath, credentials.toUtf8());

    const QString configurationPath = Preferences::text(Preference::VpnConfigPath);
    m_noConfiguration = configurationPath.isEmpty() || !QFile::exists(configurationPath);
    if (m_noConfiguration) {
        Diagnostics::log(QStringLiteral("no config file"));
        co_return false;
    }
    for (const QString &path : {executable, configurationPath, credentialsPath, logPath}) {
        if (path.contains(u'\'')) {
            // Nothing is escaped between the quotes: root's shell would run the text behind the apostrophe as
            // commands.
            const auto failed = fail(QStringLiteral("not started: there is an apostrophe in %1").arg(path));
            co_await failed;
            co_return false;
        }
    }
    emptyLog(logPath);
    m_needReadLog = true;
    m_looksWithoutProcess = 0;
    const auto firstReading = readLog(logPath);
    co_await firstReading;

    // The blank before "--auth-user-pass" is part of the argument, so the line contains two blanks there.
    launchInBackground({quoted(executable), QStringLiteral("--config"), quoted(configurationPath),
                        QStringLiteral(" --auth-user-pass"), quoted(credentialsPath),
                        QStringLiteral("--log-append"), quoted(logPath), QStringLiteral("&")},
                       quoted(credentialsPath));
    co_return true;
}

void Vpn::emptyLog(const QString &path) {
    // Removed, not truncated: a log that the administrator's shell created belongs to root. It is created
    // again here, so that it belongs to the user and OpenVPN appends to it.
    if (!QFile::remove(path)) {
        Diagnostics::log(QStringLiteral("log file %1 wasn't removed").arg(path));
    }
    // Without space on the disk the log would stay empty, and a tunnel that came up could not be seen.
    const bool emptied = TextFile::replace(path, {}) && platform::reserveSpace(path, logSpace) == 0;
    m_logStart = emptied ? 0 : QFileInfo(path).size();
    if (!emptied) {
        Diagnostics::log(QStringLiteral("log file %1 cannot be created").arg(path));
    }
}

RunningProcesses::Found Vpn::ownProcesses() const {
    RunningProcesses::Found found = m_processes.find(processName);
    found.ids = found.ids + m_processes.find(guardName).ids - m_others;
    found.ids.remove(0); // it runs, but cannot be seen
    return found;
}

Task<bool> Vpn::haveEnded(RunningProcesses::Found processes) {
    auto wait = [processes, table = &m_processes] {
        for (int look = 0;; ++look) {
            const QSet<qint64> running = table->find(processName).ids + table->find(guardName).ids;
            if (!running.intersects(processes.ids)) {
                return processes.seesAll;
            }
            if (look == maximumEndLooks) {
                return false;
            }
            QThread::msleep(lookMilliseconds);
        }
    };
    auto ended = m_events.background(std::move(wait));
    co_return co_await ended;
}

void Vpn::launchInBackground(const QStringList &command, const QString &credentialsPath) {
    m_launch = std::make_shared<Launch>();
    m_others = m_processes.find(processName).ids + m_processes.find(guardName).ids;
    const auto work = [command, credentialsPath, launch = m_launch] {
        if (!launch->begin()) {
            return;
        }
        ScriptUtil script;
        try {
            QString output;
            QString error;
            const bool launched =
                script.runProcessAsAdministrator(command.first(), command.sliced(1), output, error);
            Diagnostics::logAlways(QStringLiteral("> %1").arg(launched ? 1 : 0));
        } catch (const std::exception &exception) {
            Diagnostics::log(QStringLiteral("exception in configVpn: ") +
                             QString::fromLocal8Bit(exception.what()));
        }
        // The path includes its quotes here, so nothing is removed and the credentials file stays until the
        // next start rewrites it: OpenVPN runs in the background and may not have read it yet.
        QFile::remove(credentialsPath);
        launch->end(script.openOutput());
    };
    services().background->run(work, this, [] {});
}

Task<> Vpn::launchSettled() {
    const auto launch = m_launch;
    if (!launch || launch->cancel() || (launch->hasEnded() && !launch->hasOutputOpen())) {
        co_return;
    }
    auto settle = [launch, processes = &m_processes, others = m_others] {
        launch->waitForEnd();
        // What the shell started has its own name a moment later, and is found by that name.
        for (int look = 0; look < maximumLooks && launch->hasOutputOpen(); ++look) {
            if (!(processes->find(processName).ids - others).isEmpty()) {
                return;
            }
            QThread::msleep(lookMilliseconds);
        }
    };
    auto settled = m_events.background(std::move(settle));
    co_await settled;
}

Task<> Vpn::terminatevpn() {
    const RunningProcesses::Found found = m_processes.find(processName);
    const QSet<qint64> &running = found.ids;
    if (running.isEmpty()) {
        m_sameRefusals = 0;
        co_return;
    }
    const auto [user, password] = AdministratorPair::stored();
    const std::size_t pair = qHashMulti(0, user, password);
    if (running != m_refusedProcesses || pair != m_refusedPair) {
        m_sameRefusals = 0;
    }
    auto kill = [known = m_sameRefusals > 0 ? m_refusal : QString(), processes = &m_processes,
                 awaitsEnd = !found.seesAll] {
        ScriptUtil script;
        script.setKnownRefusal(known);
        QString output;
        QString error;
        const bool stopped = script.runProcessAsAdministrator(
            QStringLiteral("sudo"),
            {QStringLiteral("-S"), QStringLiteral("killall"), QStringLiteral("-9"), processName}, output,
            error);
        const QString refusal = stopped ? QString() : Diagnostics::shown(script.refusal());
        if (stopped || refusal != known) {
            Diagnostics::logAlways(QStringLiteral("Stopped? > %1").arg(stopped ? 1 : 0));
        }
        // The sign by which a hidden process is known goes a moment after it.
        for (int look = 0; stopped && awaitsEnd && look < maximumEndLooks; ++look) {
            if (!processes->isRunning(processName)) {
                break;
            }
            QThread::msleep(lookMilliseconds);
        }
        return refusal;
    };
    auto killed = m_events.background(std::move(kill));
    const QString refusal = co_await killed;
    if (refusal.isNull()) {
        m_sameRefusals = 0;
        co_return;
    }
    m_sameRefusals = m_sameRefusals > 0 && refusal == m_refusal ? m_sameRefusals + 1 : 1;
    ++m_refusedKills;
    m_refusal = refusal;
    m_refusedProcesses = running;
    m_refusedPair = pair;
}

void Vpn::scheduleReading(const QString &path) {
    services().delayedCalls->callAfter(pollSeconds, this, [this, path, run = m_run] {
        m_events.post([this, path, run]() -> Task<> {
            if (run == m_run) { // else it was stopped while the event waited
                const auto reading = readLog(path);
                co_await reading;
            }
        });
    });
}

Task<> Vpn::readLog(QString path) {
    const LogVerdict verdict =
        QFile::exists(path) ? LogVerdict::of(TextFile::read(path, m_logStart)) : LogVerdict();
    if (verdict.outcome == LogVerdict::Outcome::Up) {
        services().notifications->post(Notifications::showIp);
        m_needReadLog = false;
        co_return;
    }
    QStringList failures = verdict.failures;
    if (verdict.outcome == LogVerdict::Outcome::WithErrors) {
        failures.append(QString()); // no line is logged
    }
    for (const QString &line : failures) {
        const auto failed = fail(line);
        co_await failed;
    }
    if (!verdict.lastLine.isNull()) {
        Diagnostics::log(QStringLiteral("lastLine: ") +
                         QrvCredentials::sanitizeStringByRemovingLoginAndPassword(verdict.lastLine));
    }
    if (verdict.stuckAtLink) {
        const auto failed = fail(QStringLiteral("stopVpn by link remote"));
        co_await failed;
    }
    if (m_needReadLog && nothingRuns()) {
        const auto failed = fail(QStringLiteral("stopVpn by end of openvpn"));
        co_await failed;
    }
    if (m_needReadLog) {
        scheduleReading(path);
    }
}

bool Vpn::nothingRuns() {
    if (!m_launch || !m_launch->hasEnded() || m_launch->hasOutputOpen()) {
        return false;
    }
    const RunningProcesses::Found found = m_processes.find(processName);
    if (!found.seesAll || !(found.ids - m_others).isEmpty()) {
        m_looksWithoutProcess = 0;
        return false;
    }
    ++m_looksWithoutProcess;
    return m_looksWithoutProcess > 1;
}

Task<> Vpn::fail(QString line) {
    if (!line.isNull()) {
        Diagnostics::log(line);
    }
    co_await stopVpn();
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
