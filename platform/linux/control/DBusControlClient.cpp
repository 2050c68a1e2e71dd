#include "DBusControlClient.h"

#include "ControlBus.h"
#include "platform/linux/desktop/SessionBus.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QProcess>
#include <QTimer>

#include <limits>
#include <utility>

namespace quorvane::platform {

namespace {

QDBusMessage callOf(const QString &interface, const QString &method) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(controlbus::serviceName, controlbus::objectPath, interface, method);
    call.setAutoStartService(false);
    return call;
}

} // namespace

DBusControlClient::DBusControlClient(const QDBusConnection &bus, QString program, QStringList arguments)
    : m_bus(bus), m_program(std::move(program)), m_arguments(std::move(arguments)) {
    m_bus.connect(controlbus::serviceName, controlbus::objectPath, controlbus::propertiesInterface,
                  controlbus::propertiesChanged, this, SLOT(propertiesChanged(QDBusMessage)));
}

bool DBusControlClient::isRunning() {
    return m_bus.isConnected() && m_bus.interface()->isServiceRegistered(controlbus::serviceName).value();
}

bool DBusControlClient::hasDisplay() const {
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

bool DBusControlClient::start() {
    if (!m_bus.isConnected()) {
        return false;
    }
    QEventLoop loop;
    const QDBusServiceWatcher watcher(controlbus::serviceName, m_bus,
                                      QDBusServiceWatcher::WatchForRegistration);
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &loop, &QEventLoop::quit);
    QTimer::singleShot(startMilliseconds, &loop, &QEventLoop::quit);
    QProcess process;
    process.setProgram(m_program);
    process.setArguments(m_arguments);
    // The copy outlives this command, and must not keep its pipes open.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (!process.startDetached()) {
        return false;
    }
    if (!isRunning()) {
        loop.exec();
    }
    return isRunning();
}

ControlOutcome DBusControlClient::operate(ControlOperation operation, const QString &location,
                                          const std::function<void(const ControlState &)> &observer) {
    QDBusMessage call = callOf(controlbus::interfaceName, controlbus::methodOf(operation));
    if (operation == ControlOperation::Hide) {
        call << location;
    }
    m_observer = observer;
    QEventLoop loop;
    // An attempt, or the administrator's dialog, may last as long as the user wants.
    QDBusPendingCallWatcher pending(m_bus.asyncCall(call, std::numeric_limits<int>::max()));
    QObject::connect(&pending, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    if (!pending.isFinished()) {
        loop.exec();
    }
    m_observer = {};
    return controlbus::outcomeOf(pending.reply());
}

std::optional<ControlState> DBusControlClient::state() {
    QDBusMessage call = callOf(controlbus::propertiesInterface, QStringLiteral("GetAll"));
    call << controlbus::interfaceName;
    const QDBusReply<QVariantMap> reply = m_bus.call(call, QDBus::BlockWithGui);
    return reply.isValid() ? std::optional(controlbus::stateOf(reply.value())) : std::nullopt;
}

std::optional<QList<ControlLocation>> DBusControlClient::locations() {
    const QDBusMessage reply =
        m_bus.call(callOf(controlbus::interfaceName, QStringLiteral("GetLocations")), QDBus::BlockWithGui);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QStringLiteral("aa{sv}")) {
        return std::nullopt;
    }
    QList<ControlLocation> locations;
    for (const QVariantMap &entry : qdbus_cast<QList<QVariantMap>>(reply.arguments().value(0))) {
        locations.append(controlbus::locationOf(entry));
    }
    return locations;
}

void DBusControlClient::propertiesChanged(const QDBusMessage & /*signal*/) {
    if (m_observer) {
        if (const auto now = state()) {
            m_observer(*now);
        }
    }
}

void DBusControlClient::follow(const Follower &follower) {
    QEventLoop loop;
    std::optional<ControlState> last;
    const auto report = [&](const std::optional<ControlState> &state) {
        if (state != last || !state) {
            last = state;
            if (!follower(state) || !state) {
                loop.quit();
            }
        }
    };
    m_observer = report;
    const QDBusServiceWatcher watcher(controlbus::serviceName, m_bus,
                                      QDBusServiceWatcher::WatchForUnregistration);
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, &loop,
                     [&report] { report(std::nullopt); });
    // The first report may already end the loop, which must be running then.
    QMetaObject::invokeMethod(
        &loop, [&] { report(state()); }, Qt::QueuedConnection);
    loop.exec();
    m_observer = {};
}

std::unique_ptr<ControlClient> makeControlClient() {
    return std::make_unique<DBusControlClient>(
        isSessionBusThere() ? QDBusConnection::sessionBus() : QDBusConnection(QString()),
        QCoreApplication::applicationFilePath(), QStringList{QStringLiteral("-hide")});
}

} // namespace quorvane::platform
