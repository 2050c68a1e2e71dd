#include "World.h"

#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/SessionReset.h"
#include "frontend/session/SessionState.h"
#include "frontend/support/ModalTurn.h"
#include "frontend/support/Notifications.h"
#include "tests/Text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <array>
#include <utility>

namespace quorvane::simulation {

namespace {

constexpr std::array<const char *, 8> logContents{"",
                                                  "a\nInitialization Sequence Completed\n",
                                                  "a\nAUTH_FAILED\n",
                                                  "a\nAUTH_FAILED\nExiting due to fatal error\n",
                                                  "Initialization Sequence Completed with errors\n",
                                                  "a\nUDPv4 link remote: 1.2.3.4\n",
                                                  "\xff\xfe\nInitialization Sequence Completed\n",
                                                  "a\nb\nInitialization Sequence Completed\n"};

} // namespace

World::World()
    : m_session({m_events, m_api, m_vpn, m_fetch, m_chooser, m_rotation, m_alerts, *this, *this,
                 [this](const QString &) {
                     m_reference.addressRead();
                     return m_addressIsRead ? lentAddress : text("");
                 }}),
      m_logPath(m_services.home() + text("/Documents/Quorvane/openvpn.log")) {
    QrvAPI::forgetProcessWideValues();
    SessionState::shared() = {};
    m_services.addResource(text("test_credentials.sh"), "");
    m_services.background().hold();
    QrvCredentials::sharedInstance().saveUserName(text("ada"), text("pw"));
    m_services.preferences().setValue(text("changeIpInterval"), 1);
    m_services.preferences().setValue(text("showLogs"), 1);
    QDir().mkpath(m_services.home() + text("/Documents/Quorvane"));
    m_services.scripting().setHandler([this](const auto &call) { return runLine(call); });
    m_services.urls().setFetchHandler(
        [](const QByteArray &) { return std::optional<QByteArray>("VPNConfig: client<br />"); });
    SessionReset::setTarget(&m_session, [this] { m_session.resetRequested(); });
    m_services.platform().notifications->addObserver(Notifications::startVpn, &m_session,
                                                     [this](const QVariant &) { m_session.getNewIP(); });
    m_services.platform().notifications->addObserver(Notifications::showIp, &m_session,
                                                     [this](const QVariant &) { m_session.showIp(); });
    QObject::connect(&m_fetch, &ConfigurationFetch::prepared, &m_session, [this] {
        ++m_requests;
        checkLock();
    });
    m_services.preferences().setChangeHook([this](const QVariantMap &values) {
        if (values.contains(text("quorvane"))) {
            m_reference.resetStored();
        }
    });
    QObject::connect(&m_session, &HideIpSession::displayChanged, &m_session,
                     [this] { m_rests += isAtRest(m_session.facts()) ? 1 : 0; });
    showProcesses();
    m_api.initWithDelegate(&m_session);
    m_chooser.connectTo(&m_api, &m_session);
    m_session.setDiscarded(m_discarded);
}

void World::begin(bool isLocked) {
    m_services.networkLock().closed = isLocked;
    m_session.begin([] {});
    m_begun = true;
}

World::~World() {
    SessionReset::setTarget(nullptr, {});
    m_services.background().finishAll();
    QCoreApplication::sendPostedEvents();
    ModalTurn::shared().clear();
    SessionState::shared() = {};
}

void World::start() {
    m_animating = true;
    if (m_begun) { // else it is the start of the program
        m_reference.attemptBegan();
    }
}

void World::stop() {
    m_animating = false;
    m_reference.animationEnded(m_session.facts().phase == Phase::Hidden);
}

void World::openAdministratorDialog(const std::function<void()> &closed) {
    m_reference.dialogRequested();
    m_dialogIsOpen = true;
    ModalTurn::shared().request([this, closed](const std::function<void()> &ended) {
        m_open.append([this, closed, ended] {
            m_dialogIsOpen = false;
            closed();
            m_control->dialogChanged();
            ended();
        });
    });
}

void World::critical(const Alert & /*alert*/, const std::function<void()> &closed) {
    ModalTurn::shared().request([this, closed](const std::function<void()> &ended) {
        m_open.append([closed, ended] {
            if (closed) {
                closed();
            }
            ended();
        });
    });
}

void World::ask(const Question & /*question*/, const std::function<void(Answer)> &answered) {
    critical({}, [this, answered] {
        m_resumes = m_answer == Answer::Second;
        answered(m_answer);
    });
}

void World::criticalLater(const Alert &alert) {
    if (alert.text == text("Location is not available.")) {
        m_reference.gaveUp();
    }
    QMetaObject::invokeMethod(
        &m_session, [this, alert] { critical(alert); }, Qt::QueuedConnection);
}

void World::showProcesses() {
    QByteArrayList names{"init"};
    for (int i = 0; i < m_running; ++i) {
        names.append("openvpn");
    }
    m_services.processes().setNames(names);
}

platform::ScriptResult World::runLine(const fakes::FakeScriptingService::Call &call) {
    using fakes::FakeScriptingService;
    const bool isKill = call.line.contains(text("killall"));
    const bool isLock = call.line.startsWith(text("networklock"));
    if (!m_pairAccepted) {
        m_killRefused = m_killRefused || isKill;
        m_stopIsDue = false;
        return FakeScriptingService::failure(1, text("Sorry, try again."));
    }
    if (isLock) {
        return runLockLine(call.line.contains(text("-close")));
    }
    if (isKill) {
        m_cameUp = false;
        m_killRefused = false;
        endOpenVpn(); // a watch that has not been stopped would report it
    } else if (call.line.contains(text("--config"))) {
        ++m_launches;
        checkLock();
        m_cameUp = false;
        m_running += m_guardStarts ? 1 : 0;
    }
    showProcesses();
    return FakeScriptingService::success(text(""));
}

void World::writeLog(unsigned content) {
    QFile log(m_logPath);
    if (m_running == 0 || !log.open(QIODevice::WriteOnly)) {
        return;
    }
    const char *bytes = logContents.at(content % logContents.size());
    log.write(bytes);
    m_cameUp = m_cameUp || QByteArray(bytes).contains("Sequence Completed\n");
}

platform::ScriptResult World::runLockLine(bool closes) {
    using fakes::FakeScriptingService;
    if (!closes && !m_mayBeLifted) {
        m_wrongLock = text("the lock is lifted without the user's stop");
    }
    const SessionFacts &facts = m_session.facts();
    if (!closes && !isAtRest(facts) && facts.phase != Phase::Ended) {
        m_wrongLock = text("the lock is lifted during an attempt");
    }
    if (closes || !m_lockWorks) {
        m_stopIsDue = false;
    }
    if (!m_lockWorks) {
        return FakeScriptingService::failure(6, text("no nftables"));
    }
    m_services.networkLock().closed = closes;
    m_lockMayBeOpen = m_lockMayBeOpen && !closes;
    return FakeScriptingService::success(text(""));
}

void World::checkLock() {
    const bool isWanted = m_services.preferences().value(text("networkLock")).toBool();
    if (isWanted && !m_lockMayBeOpen && !m_services.networkLock().closed) {
        m_wrongLock = text("an attempt goes on with an open lock");
    }
}

QString World::wrongLock() {
    if (!m_wrongLock.isNull()) {
        return m_wrongLock;
    }
    const SessionFacts &facts = m_session.facts();
    const bool isClosed = m_services.networkLock().closed;
    if (facts.locked != isClosed) {
        return text("the window is wrong about the lock");
    }
    if (!m_open.isEmpty()) {
        return {}; // a press may await the alert
    }
    if (facts.phase == Phase::NotHidden && m_stopIsDue && isClosed) {
        return text("the lock is closed after the user's stop");
    }
    m_stopIsDue = false;
    m_mayBeLifted = isAtRest(facts) || m_stopCommands > 0;
    m_lockMayBeOpen = m_lockMayBeOpen && !isAtRest(facts); // the next attempt closes it
    return {};
}

void World::closeModal(unsigned argument) {
    static constexpr std::array answers{Answer::First, Answer::Second, Answer::None};
    m_answer = answers.at(argument % answers.size());
    if (!m_open.isEmpty()) {
        const std::function<void()> close = m_open.takeFirst();
        close();
    }
}

std::size_t World::pieceOf(unsigned argument) const {
    const std::size_t pending = m_services.background().pending();
    return pending == 0 ? 0 : argument % pending;
}

void World::endOpenVpn() {
    const bool ran = std::exchange(m_running, 0) > 0;
    showProcesses();
    if (ran) {
        m_services.tunnelWatch().lose(platform::TunnelLoss::ProcessEnded);
    }
}

QString World::described() const {
    static constexpr std::array names{"Starting",     "NotHidden", "Checking", "Dropped",
                                      "Fetching",     "Waiting",   "Unusable", "Connecting",
                                      "Unconfigured", "Hidden",    "Ended"};
    return text("%1%2; %3 OpenVPN%4; %5 pieces of work; %6 modal windows")
        .arg(text(names.at(static_cast<std::size_t>(m_session.facts().phase))),
             m_events.isIdle() ? QString() : text(", busy"))
        .arg(m_running)
        .arg(m_cameUp ? text(", came up") : QString())
        .arg(m_services.background().pending())
        .arg(m_open.size());
}

QString World::wrong() {
    const SessionFacts &facts = m_session.facts();
    if (m_session.display() != displayOf(facts)) {
        return text("the display is not that of the facts");
    }
    if (facts.phase == Phase::Hidden && facts.look != Look::Hidden) {
        return text("hidden does not look so");
    }
    if (facts.realAddress == lentAddress.trimmed()) {
        return text("the lent address is shown as the real one");
    }
    if (facts.look == Look::Hidden &&
        facts.shownAddress != (facts.addressMissing ? QString() : lentAddress)) {
        return text("another address than the lent one is shown as lent");
    }
    if (facts.look == Look::NotHidden && facts.shownAddress == lentAddress) {
        return text("the lent address is shown while not hidden");
    }
    if (m_services.urls().openDownloads() > 1) {
        return text("more than one list is requested at a time");
    }
    if (m_open.size() > 1) {
        return text("more than one modal window is open");
    }
    if (m_running > 1 && !m_killRefused) {
        return text("more than one OpenVPN runs");
    }
    if (m_launches > m_requests && !m_reuses) {
        return text("more launches than configurations");
    }
    if (m_attemptHangs) {
        return text("an attempt goes on without a process");
    }
    if (!m_wrongCommand.isNull()) {
        return m_wrongCommand;
    }
    if (m_terminated) {
        return text("the application was terminated");
    }
    return m_events.isIdle() ? wrongAtRest() : QString();
}

/// While no event is handled or waits.
QString World::wrongAtRest() {
    const SessionFacts &facts = m_session.facts();
    if (m_open.isEmpty()) {
        m_reference.allHandled();
    }
    if (std::exchange(m_resumes, false) && SessionState::shared().hidden) {
        m_reference.resumed();
    }
    if (const QString difference = m_reference.differenceFrom(m_session.display()); !difference.isNull()) {
        return difference;
    }
    if (const QString lock = wrongLock(); !lock.isNull()) {
        return lock;
    }
    if (m_session.display().look == Look::Hidden && (m_running == 0 || !m_cameUp)) {
        return text("hidden is shown without a tunnel");
    }
    if (SessionState::shared().hidden != m_reference.isHidden()) {
        return text("the hidden flag is another one than by the table of states");
    }
    const bool failureIsDue = !m_services.delayedCalls().delaysFor(&m_session).empty();
    const bool workIsDue = m_services.background().pending() > 0;
    switch (facts.phase) {
    case Phase::Checking:
        return text("the pair is not being tested");
    case Phase::Fetching:
        return workIsDue ? QString() : text("no configuration is being requested");
    case Phase::Connecting:
        return m_vpn.readsLog() || failureIsDue ? QString() : text("nothing reports the tunnel's end");
    case Phase::NotHidden:
        if (m_animating || facts.look != Look::NotHidden) {
            return text("not hidden does not look so");
        }
        return isPressable(facts) ? QString() : text("nothing can be pressed");
    case Phase::Hidden:
        if (!m_cameUp || !SessionState::shared().hidden) {
            return text("hidden without a tunnel that came up");
        }
        return m_animating ? text("hidden, and the tray icon turns") : QString();
    case Phase::Waiting:
    case Phase::Unconfigured:
        return isPressable(facts) && displayOf(facts).line3.visible ? QString()
                                                                    : text("an attempt waits unseen");
    case Phase::Starting:
    case Phase::Dropped:
    case Phase::Unusable:
    case Phase::Ended:
        return {};
    }
    return {};
}

QString World::wrongAfterEnd() const {
    if (!m_wrongCommand.isNull()) {
        return m_wrongCommand;
    }
    if (m_commands != 0) {
        return text("a command was not answered once");
    }
    if (!m_ended) {
        return text("the end was not reported");
    }
    if (m_launches != m_launchesAtEnd) {
        return text("OpenVPN was started after the end");
    }
    if (m_running > 0 && m_pairAccepted) {
        return text("OpenVPN runs after the end");
    }
    if (m_services.networkLock().closed && m_pairAccepted && m_lockWorks) {
        return text("the lock is closed after the end");
    }
    return {};
}

} // namespace quorvane::simulation
