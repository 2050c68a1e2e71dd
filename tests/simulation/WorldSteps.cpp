// What the steps do.
#include "World.h"

#include "frontend/privileges/QrvCredentials.h"
#include "frontend/support/ModalTurn.h"
#include "frontend/support/Notifications.h"
#include "tests/Text.h"

#include <QCoreApplication>
#include <QFile>
#include <array>

namespace quorvane::simulation {

namespace {

constexpr char places[] = "<br />LOCATIONS: DE;BER;Berlin;0<br />VPNUser: u<br />VPNPass: p"
                          "<br />Server: 7,Berlin,BER,DE,Germany,x|203.0.113.1,203.0.113.2"
                          "<br />Server: 8,Denver,DEN,US,States,x|203.0.113.3"
                          "<br />Server: 9,Oslo,OSL,NO,Norway,x|203.0.113.4";
constexpr char fewPlaces[] =
    "<br />LOCATIONS: DE;BER;Berlin;0<br />Server: 7,Berlin,BER,DE,Germany,x|203.0.113.1";
/// Seconds. The long ones are rare, because the log is read every two seconds.
constexpr std::array<double, 16> intervals{0.1, 0.1, 1.0, 1.0, 2.0,  2.0,  2.0,  2.0,
                                           5.0, 5.0, 5.0, 5.0, 20.0, 60.0, 60.0, 3600.0};
/// Seconds after which an attempt whose processes have ended must have failed: two looks, and the report.
constexpr double longestEnd = 15.0;
const QString realAddress = QStringLiteral("198.51.100.10");

bool isOn(unsigned argument) {
    return argument % 2 == 1;
}

} // namespace

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

void World::quit() {
    m_mayBeLifted = true;
    m_open.clear(); // windows go with the program
    ModalTurn::shared().clear();
    m_session.end([this] { m_ended = true; });
    m_services.background().finishAll();
    m_launchesAtEnd = m_launches;
    m_control.reset();
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
    case Kind::Lift:
        return shown.liftVisible && m_open.isEmpty();
    case Kind::Choose:
    case Kind::UsOnly:
    case Kind::ChangeEvery:
    case Kind::SameIp:
    case Kind::Apply:
    case Kind::Interval:
    case Kind::Protocol:
    case Kind::LockWanted:
    case Kind::Reconnect:
    case Kind::Stored:
    case Kind::StoredPair:
        return m_open.isEmpty();
    default:
        return true;
    }
}

void World::pressOff(bool isOff) {
    m_mayBeLifted = true;
    m_stopIsDue = isOff && m_lockWorks && m_pairAccepted;
}

void World::command(unsigned argument) {
    using platform::ControlOperation;
    static constexpr std::array operations{ControlOperation::Hide,   ControlOperation::Hide,
                                           ControlOperation::Stop,   ControlOperation::Stop,
                                           ControlOperation::Change, ControlOperation::Discard};
    const ControlOperation operation = operations.at(argument % operations.size());
    const bool stops = operation == ControlOperation::Stop;
    m_mayBeLifted = m_mayBeLifted || stops;
    ++m_commands;
    m_stopCommands += stops ? 1 : 0;
    const int rests = m_rests - (isAtRest(m_session.facts()) ? 1 : 0);
    m_control->operate(operation, argument % operations.size() == 1 ? text("Norway Oslo") : QString(),
                       [this, operation, rests](const platform::ControlOutcome &outcome) {
                           commandEnded(operation, rests, outcome);
                       });
}

void World::commandEnded(platform::ControlOperation operation, int rests,
                         const platform::ControlOutcome &outcome) {
    const bool stops = operation == platform::ControlOperation::Stop;
    --m_commands;
    m_stopCommands -= stops ? 1 : 0;
    if (outcome.kind != platform::ControlOutcome::Kind::Done) {
        if (outcome.text.isEmpty()) {
            m_wrongCommand = text("a command fails without a reason");
        }
        return;
    }
    if (stops) {
        if (m_rests == rests) {
            m_wrongCommand = text("a stop is done, and the session never came to rest");
        }
    } else if (m_session.display().look != Look::Hidden ||
               outcome.text != m_session.display().currentIp.trimmed()) {
        m_wrongCommand = text("a command is done, and its address is not shown");
    }
}

void World::checkCommands() {
    const bool starts = m_session.facts().phase == Phase::Starting;
    const bool rests = m_events.isIdle() && m_open.isEmpty() && m_services.background().pending() == 0 &&
                       m_session.facts().phase != Phase::Connecting && !starts;
    m_commandsAtRest = rests && m_commands > 0 ? m_commandsAtRest + 1 : 0;
    if (m_commandsAtRest > 2) {
        m_wrongCommand = text("a command waits while nothing happens");
    }
}

void World::doUserStep(const Step &step) {
    switch (step.kind) {
    case Kind::Press:
        pressOff(m_session.display().hideButton.on);
        m_session.quorvaneButtonPressed(!m_session.display().hideButton.on);
        break;
    case Kind::HotKeyHide:
        m_session.quorvane();
        break;
    case Kind::HotKeyChange:
        m_session.changeIpMenuItemPressed();
        break;
    case Kind::HotKeyStop:
        m_mayBeLifted = true;
        m_session.stopHotKeyPressed();
        break;
    case Kind::HotKeyDiscard:
        m_session.discardIpButtonPressed();
        break;
    case Kind::TrayHide:
        m_mayBeLifted = true; // an event before it may turn it into a stop
        m_session.quorvaneMenuItemPressed();
        break;
    case Kind::ChangeButton:
        m_session.changeIpButtonPressed();
        break;
    case Kind::Choose:
        m_chooser.choose(m_list.idAt(static_cast<int>(step.argument) % m_list.count()));
        break;
    case Kind::Refresh:
        m_session.refreshLocationsPressed();
        break;
    case Kind::Close:
        m_mayBeLifted = true;
        closeModal(step.argument);
        break;
    case Kind::Lift:
        m_mayBeLifted = true;
        m_session.liftLockPressed();
        break;
    case Kind::Command:
        command(step.argument);
        break;
    default:
        changeSetting(step);
        break;
    }
}

void World::changeSetting(const Step &step) {
    const bool on = isOn(step.argument);
    switch (step.kind) {
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
    case Kind::LockWanted:
        m_services.preferences().setValue(text("networkLock"), on);
        m_lockMayBeOpen = true;
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
    default:
        break;
    }
}

void World::doStep(const Step &step) {
    if (doServiceStep(step)) {
        return;
    }
    const bool on = isOn(step.argument);
    switch (step.kind) {
    case Kind::Log:
        writeLog(step.argument);
        break;
    case Kind::OpenVpnEnds:
        endOpenVpn();
        break;
    case Kind::Address:
        m_addressIsRead = on;
        break;
    case Kind::LockWorks:
        m_lockWorks = on;
        break;
    case Kind::Unlock:
        m_services.networkLock().closed = false;
        m_lockMayBeOpen = true;
        if (const auto changed = m_services.networkLock().observer) {
            changed();
        }
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

bool World::doServiceStep(const Step &step) {
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
        m_services.urls().setFetchHandler([on = isOn(step.argument)](const QByteArray &) {
            return on ? std::optional<QByteArray>("VPNConfig: client<br />") : std::nullopt;
        });
        break;
    default:
        return false;
    }
    return true;
}

QString World::run(const Step &step) {
    if (!m_begun) {
        begin(step.kind == Kind::Begin && step.argument == 15);
    }
    // Queued calls come first: they are older than whatever the event loop brings now.
    QCoreApplication::sendPostedEvents();
    checkCommands();
    doStep(step);
    return step.kind == Kind::Quit ? wrongAfterEnd() : wrong();
}

} // namespace quorvane::simulation
