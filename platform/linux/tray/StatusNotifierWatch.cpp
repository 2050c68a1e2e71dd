#include "StatusNotifierWatch.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace quorvane::platform {

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString hostProperty = QStringLiteral("IsStatusNotifierHostRegistered");
constexpr int firstLookMilliseconds = 250;

QDBusMessage introspection() {
    return QDBusMessage::createMethodCall(watcherName, watcherPath,
                                          QStringLiteral("org.freedesktop.DBus.Introspectable"),
                                          QStringLiteral("Introspect"));
}

QDBusMessage hostQuery() {
    auto message = QDBusMessage::createMethodCall(
        watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message.setArguments({watcherName, hostProperty});
    return message;
}

/// Qt reads the property only if the watcher's introspection lists it, and otherwise embeds the icon.
bool listsHostProperty(const QDBusMessage &answer) {
    return answer.type() == QDBusMessage::ReplyMessage &&
           answer.arguments().value(0).toString().contains(hostProperty);
}

bool hasHost(const QDBusMessage &answer) {
    return answer.type() == QDBusMessage::ReplyMessage &&
           answer.arguments().value(0).value<QDBusVariant>().variant().toBool();
}

} // namespace

StatusNotifierWatch::StatusNotifierWatch(QObject *parent) : QObject(parent) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    auto *service = new QDBusServiceWatcher(watcherName, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(service, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) {
                if (owner.isEmpty()) {
                    watcherGone();
                } else {
                    look();
                }
            });
    for (const char *signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        bus.connect(watcherName, watcherPath, watcherName, QString::fromLatin1(signal), this, SLOT(look()));
    }
    m_registered = firstLook();
}

bool StatusNotifierWatch::firstLook() const {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    // A query to a name without an owner could start a service.
    return bus.interface()->isServiceRegistered(watcherName) &&
           listsHostProperty(bus.call(introspection(), QDBus::Block, firstLookMilliseconds)) &&
           hasHost(bus.call(hostQuery(), QDBus::Block, firstLookMilliseconds));
}

void StatusNotifierWatch::look() {
    ++m_looks;
    sendQuery(introspection(), [this](const QDBusMessage &listing) {
        if (!listsHostProperty(listing)) {
            setRegistered(false);
            return;
        }
        sendQuery(hostQuery(), [this](const QDBusMessage &answer) { setRegistered(hasHost(answer)); });
    });
}

void StatusNotifierWatch::watcherGone() {
    ++m_looks;
    setRegistered(false);
}

void StatusNotifierWatch::sendQuery(const QDBusMessage &query,
                                    const std::function<void(const QDBusMessage &)> &answered) {
    auto *pending = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(query), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, answered, number = m_looks] {
        pending->deleteLater();
        if (number == m_looks) {
            answered(pending->reply());
        }
    });
}

void StatusNotifierWatch::setRegistered(bool registered) {
    if (registered == m_registered) {
        return;
    }
    m_registered = registered;
    if (m_changed) {
        m_changed();
    }
}

} // namespace quorvane::platform
