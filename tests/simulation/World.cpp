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

const QString realAddress = QStringLiteral("198.51.100.10");
const QString lentAddress = QStringLiteral("203.0.113.7\n");

constexpr char places[] = "<br />LOCATIONS: DE;BER;Berlin;0<br />VPNUser: u<br />VPNPass: p"
                          "<br />Server: 7,Berlin,BER,DE,Germany,x|203.0.113.1,203.0.113.2"
                          "<br />Server: 8,Denver,DEN,US,States,x|203.0.113.3"
                          "<br />Server: 9,Oslo,OSL,NO,Norway,x|203.0.113.4";
constexpr char fewPlaces[] =
    "<br />LOCATIONS: DE;BER;Berlin;0<br />Server: 7,Berlin,BER,DE,Germany,x|203.0.113.1";

constexpr std::array<const char *, 8> logContents{"",
                                                  "a\nInitialization Sequence Completed\n",
                                                  "a\nAUTH_FAILED\n",
                                                  "a\nAUTH_FAILED\nExiting due to fatal error\n",
                                                  "Initialization Sequence Completed with errors\n",
                                                  "a\nUDPv4 link remote: 1.2.3.4\n",
                                                  "\xff\xfe\nInitialization Sequence Completed\n",
                                                  "a\nb\nInitialization Sequence Completed\n"};

/// Seconds. The long ones are rare, because the log is read every two seconds.
constexpr std::array<double, 16> intervals{0.1, 0.1, 1.0, 1.0, 2.0,  2.0,  2.0,  2.0,
                                           5.0, 5.0, 5.0, 5.0, 20.0, 60.0, 60.0, 3600.0};

/// Seconds after which an attempt whose processes have ended must have failed: two looks, and the report.
constexpr double longestEnd = 15.0;

bool isOn(unsigned argument) {
    return argument % 2 == 1;
}

} // namespace

World::World()
    : m_session({m_events, m_api, m_vpn, m_fetch, m_chooser, m_rotation, *this, *this, *this,
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
    QObject::connect(&m_fetch, &ConfigurationFetch::prepared, &m_session, [this] { ++m_requests; });
    m_services.preferences().setChangeHook([this](const QVariantMap &values) {
        if (values.contains(text("quorvane"))) {
            m_reference.resetStored();
        }
    });
    showProcesses();
    m_api.initWithDelegate(&m_session);
    m_chooser.connectTo(&m_api, &m_session);
    m_session.setDiscarded(m_discarded);
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
    ModalTurn::shared().request([this, closed](const std::function<void()> &ended) {
        m_open.append([closed, ended] {
            closed();
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

void World::criticalLater(const Alert &alert) {
    m_reference.gaveUp();
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
    if (!m_pairAccepted) {
        m_killRefused = m_killRefused || isKill;
        return FakeScriptingService::failure(1, text("Sorry, try again."));
    }
    if (isKill) {
        m_cameUp = false;
        m_killRefused = false;
        endOpenVpn(); // a watch that has not been stopped would report it
    } else if (call.line.contains(text("--config"))) {
        ++m_launches;
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

void World::answer(unsigned sort) {
    // The service sees the lent address while a tunnel is up.
    const QByteArray address =
        m_cameUp && m_running > 0 ? lentAddress.trimmed().toUtf8() : realAddress.toUtf8();
    const QByteArray known = "<br />ClientIP: " + address;
    const std::array<QByteArray, 8> answers{
        "STATUS: 0" + known + places,        "STATUS: 1" + known + places,
        "STATUS: 0" + known + fewPlaces,     QByteArray("STATUS: 0<br />ClientIP: ") + places,
        QByteArray("STATUS: 1") + fewPlaces, QByteArray(),
        QByteArray("\xff\xfe no text"),      "STATUS: 0" + known};
    m_reference.answerArrived();
    static_cast<void>(m_services.urls().finishNext(answers.at(sort % answers.size())));
}

void World::closeModal() {
    if (!m_open.isEmpty()) {
        const std::function<void()> close = m_open.takeFirst();
        close();
    }
}

std::size_t World::pieceOf(unsigned argument) const {
    const std::size_t pending = m_services.background().pending();
    return pending == 0 ? 0 : argument % pending;
}

void World::passTime(unsigned argument) {
    const double seconds = intervals.at(argument % intervals.size());
    const auto waits = [this] {
        return m_events.isIdle() && m_services.background().pending() == 0 && m_running == 0 &&
               m_session.facts().phase == Phase::Connecting;
    };
    const int launches = m_launches;
    const bool waited = waits();
    m_services.delayedCalls().advance(seconds);
    m_attemptHangs = waited && waits() && launches == m_launches && seconds >= longestEnd;
}

/// What a sleep of the machine looks like afterwards: the network went and came back, and OpenVPN may have
/// ended. No timer ran meanwhile.
void World::sleep(unsigned argument) {
    m_services.platform().notifications->post(Notifications::inetStatus, 0);
    if (isOn(argument)) {
        endOpenVpn();
    }
    m_services.platform().notifications->post(Notifications::inetStatus, 1);
}

void World::storeConfiguration(bool exists) {
    const QString path = m_services.home() + text("/Documents/Quorvane/qrvp.ovpn");
    QFile file(path);
    if (!exists) {
        file.remove();
    } else if (file.open(QIODevice::WriteOnly)) {
        file.write("client\n");
        m_services.preferences().setValue(text("vpnConfigPath"), path);
    }
}

void World::changeStoredPair(unsigned argument) {
    QrvCredentials &stored = QrvCredentials::sharedInstance();
    if (argument % 4 == 3) {
        stored.saveUserName(QString(), QString());
    } else {
        stored.saveUserName(text("ada"), text("pw"));
    }
}

void World::endOpenVpn() {
    const bool ran = std::exchange(m_running, 0) > 0;
    showProcesses();
    if (ran) {
        m_services.tunnelWatch().lose(platform::TunnelLoss::ProcessEnded);
    }
}

void World::quit() {
    m_open.clear(); // windows go with the program
    ModalTurn::shared().clear();
    m_session.end([this] { m_ended = true; });
    m_services.background().finishAll();
    m_launchesAtEnd = m_launches;
    // Whatever was on its way arrives now.
    m_session.quorvaneButtonPressed(true);
    m_session.getNewIP();
    answer(0);
    QCoreApplication::sendPostedEvents();
    m_services.delayedCalls().advance(100.0);
    m_services.background().finishAll();
}

/// A control that is disabled or invisible does nothing. A hot key is never disabled.
bool World::isOffered(Kind kind) const {
    const DisplayState &shown = m_session.display();
    switch (kind) {
    case Kind::Press:
        return shown.hideButton.enabled && m_open.isEmpty();
    case Kind::TrayHide:
        return shown.hideItem.enabled && m_open.isEmpty();
    case Kind::ChangeButton:
        return shown.changeIpVisible && m_open.isEmpty();
    case Kind::Refresh:
        return shown.refreshEnabled;
    case Kind::Choose:
    case Kind::UsOnly:
    case Kind::ChangeEvery:
    case Kind::SameIp:
    case Kind::Apply:
    case Kind::Interval:
    case Kind::Protocol:
    case Kind::Reconnect:
    case Kind::Stored:
    case Kind::StoredPair:
        return m_open.isEmpty();
    default:
        return true;
    }
}

void World::doUserStep(const Step &step) {
    const bool on = isOn(step.argument);
    switch (step.kind) {
    case Kind::Press:
        m_session.quorvaneButtonPressed(!m_session.display().hideButton.on);
        break;
    case Kind::HotKeyHide:
        m_session.quorvane();
        break;
    case Kind::HotKeyChange:
        m_session.changeIpMenuItemPressed();
        break;
    case Kind::HotKeyStop:
        m_session.stopQuorvane();
        break;
    case Kind::HotKeyDiscard:
        m_session.discardIpButtonPressed();
        break;
    case Kind::TrayHide:
        m_session.quorvaneMenuItemPressed();
        break;
    case Kind::ChangeButton:
        m_session.changeIpButtonPressed();
        break;
    case Kind::Choose:
        m_chooser.choose(m_list.idAt(static_cast<int>(step.argument) % m_list.count()));
        break;
    case Kind::UsOnly:
        m_session.requireUSBasedIPButtonPressed(on);
        break;
    case Kind::ChangeEvery:
        m_session.changeEveryPressed(on);
        break;
    case Kind::SameIp:
        m_chooser.setKeepsAddress(on);
        m_reuses = m_reuses || on;
        break;
    case Kind::Apply:
        m_session.settingsDidChange();
        break;
    case Kind::Interval:
        m_session.intervalEntered(static_cast<int>(step.argument));
        break;
    case Kind::Protocol:
        m_services.preferences().setValue(text("tcpUdp"), on ? 1 : 0);
        break;
    case Kind::Reconnect:
        m_services.preferences().setValue(text("noReconnect"), !on);
        break;
    case Kind::Stored:
        storeConfiguration(on);
        break;
    case Kind::StoredPair:
        changeStoredPair(step.argument);
        break;
    case Kind::Refresh:
        m_session.refreshLocationsPressed();
        break;
    case Kind::Close:
        closeModal();
        break;
    default:
        break;
    }
}

void World::doStep(const Step &step) {
    const bool on = isOn(step.argument);
    switch (step.kind) {
    case Kind::Answer:
        answer(step.argument);
        break;
    case Kind::FailAnswer:
        static_cast<void>(m_services.urls().failNext({platform::UrlError::Kind::Refused, text("refused")}));
        break;
    case Kind::Finish:
        m_services.background().finishAt(pieceOf(step.argument));
        break;
    case Kind::Work:
        m_services.background().workUnlessDone(pieceOf(step.argument));
        break;
    case Kind::Service:
        m_services.urls().setFetchHandler([on](const QByteArray &) {
            return on ? std::optional<QByteArray>("VPNConfig: client<br />") : std::nullopt;
        });
        break;
    case Kind::Log:
        writeLog(step.argument);
        break;
    case Kind::OpenVpnEnds:
        endOpenVpn();
        break;
    case Kind::Address:
        m_addressIsRead = on;
        break;
    case Kind::Guard:
        m_guardStarts = on;
        break;
    case Kind::Pair:
        m_pairAccepted = on;
        break;
    case Kind::Network:
        m_services.platform().notifications->post(Notifications::inetStatus, on ? 1 : 0);
        break;
    case Kind::Clock:
        passTime(step.argument);
        break;
    case Kind::Sleep:
        sleep(step.argument);
        break;
    case Kind::StartVpn:
        m_services.platform().notifications->post(Notifications::startVpn);
        break;
    case Kind::CheckPair:
        m_session.authWindow();
        break;
    case Kind::UpdateList:
        m_services.platform().notifications->post(Notifications::updateServerList);
        break;
    case Kind::Quit:
        quit();
        break;
    default:
        if (isOffered(step.kind)) {
            doUserStep(step);
        }
        break;
    }
}

QString World::run(const Step &step) {
    // Queued calls come first: they are older than whatever the event loop brings now.
    QCoreApplication::sendPostedEvents();
    doStep(step);
    return step.kind == Kind::Quit ? wrongAfterEnd() : wrong();
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
    if (const QString difference = m_reference.differenceFrom(m_session.display()); !difference.isNull()) {
        return difference;
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
    if (!m_ended) {
        return text("the end was not reported");
    }
    if (m_launches != m_launchesAtEnd) {
        return text("OpenVPN was started after the end");
    }
    if (m_running > 0 && m_pairAccepted) {
        return text("OpenVPN runs after the end");
    }
    return {};
}

} // namespace quorvane::simulation
