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

QDBusMessage hostQuestion() {
    auto message = QDBusMessage::createMethodCall(
        watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message.setArguments({watcherName, hostProperty});
    return message;
}

/// Qt reads the property only where the watcher's introspection lists it, and embeds otherwise.
bool listsHostProperty(const QDBusMessage &answer) {
    return answer.type() == QDBusMessage::ReplyMessage &&
           answer.arguments().value(0).toString().contains(hostProperty);
}

bool saysHost(const QDBusMessage &answer) {
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
                    gone();
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
    // A question to a name without an owner could start a service.
    return bus.interface()->isServiceRegistered(watcherName) &&
           listsHostProperty(bus.call(introspection(), QDBus::Block, firstLookMilliseconds)) &&
           saysHost(bus.call(hostQuestion(), QDBus::Block, firstLookMilliseconds));
}

void StatusNotifierWatch::look() {
    ++m_looks;
    ask(introspection(), [this](const QDBusMessage &listing) {
        if (!listsHostProperty(listing)) {
            become(false);
            return;
        }
        ask(hostQuestion(), [this](const QDBusMessage &answer) { become(saysHost(answer)); });
    });
}

void StatusNotifierWatch::gone() {
    ++m_looks;
    become(false);
}

void StatusNotifierWatch::ask(const QDBusMessage &question,
                              const std::function<void(const QDBusMessage &)> &answered) {
    auto *pending = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, answered, asked = m_looks] {
        pending->deleteLater();
        if (asked == m_looks) {
            answered(pending->reply());
        }
    });
}

void StatusNotifierWatch::become(bool host) {
    if (host == m_registered) {
        return;
    }
    m_registered = host;
    if (m_changed) {
        m_changed();
    }
}

} // namespace quorvane::platform
