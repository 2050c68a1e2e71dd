#include "PortalShortcuts.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <algorithm>
#include <utility>

namespace quorvane::platform {

/// One element of the lists that go to the portal and come back.
struct PortalShortcutRecord {
    QString id;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcutRecord &record) {
    argument.beginStructure();
    argument << record.id << record.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcutRecord &record) {
    argument.beginStructure();
    argument >> record.id >> record.properties;
    argument.endStructure();
    return argument;
}

namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString sessionInterface = QStringLiteral("org.freedesktop.portal.Session");
/// The same in every run: where the portal does not know the program by name, it knows it by this.
const QString sessionToken = QStringLiteral("quorvane");

QDBusMessage methodCall(const QString &path, const QString &interface, const QString &method) {
    return QDBusMessage::createMethodCall(portalService, path, interface, method);
}

/// What a request's answer carries, when it says yes; nothing when it says no or makes no sense.
std::optional<QVariantMap> resultsOf(const QDBusMessage &answer) {
    if (answer.signature() != QLatin1String("ua{sv}") || answer.arguments().at(0).toUInt() != 0) {
        return std::nullopt;
    }
    return qdbus_cast<QVariantMap>(answer.arguments().at(1));
}

/// The path of a session in the answer to its creation; empty without one.
QString sessionIn(const QVariantMap &results) {
    const QVariant handle = results.value(QStringLiteral("session_handle"));
    // The portal's description has it as a text; a path would be as good.
    const QString text = handle.metaType() == QMetaType::fromType<QDBusObjectPath>()
                             ? handle.value<QDBusObjectPath>().path()
                             : handle.toString();
    return text.startsWith(QLatin1Char('/')) ? QDBusObjectPath(text).path() : QString();
}

std::optional<QStringList> shortcutsIn(const QVariantMap &results) {
    const QVariant list = results.value(QStringLiteral("shortcuts"));
    if (list.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return std::nullopt;
    }
    const auto argument = list.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("a(sa{sv})")) {
        return std::nullopt;
    }
    QStringList ids;
    const auto records = qdbus_cast<QList<PortalShortcutRecord>>(argument);
    for (const PortalShortcutRecord &record : records) {
        ids.append(record.id);
    }
    return ids;
}

QStringList idsOf(const QList<PortalShortcuts::Shortcut> &shortcuts) {
    QStringList ids;
    for (const PortalShortcuts::Shortcut &shortcut : shortcuts) {
        ids.append(shortcut.id);
    }
    return ids;
}

QString nextBusName() {
    static int last = 0;
    return QStringLiteral("quorvane-shortcuts-%1").arg(++last);
}

} // namespace

PortalShortcuts::PortalShortcuts(const Settings &portalSettings, Handlers toTell)
    : settings(portalSettings), handlers(std::move(toTell)), era(std::make_unique<QObject>()) {
    openSoon.setSingleShot(true);
    overdue.setSingleShot(true);
    connect(&openSoon, &QTimer::timeout, this, [this] { open(); });
    connect(&overdue, &QTimer::timeout, this, [this] {
        absent = true;
        fail(HotKeyError::NotAvailable);
    });
    openSoon.start(0);
}

PortalShortcuts::~PortalShortcuts() {
    if (bus) {
        QDBusConnection::disconnectFromBus(bus->name());
    }
}

bool PortalShortcuts::isAvailable() const {
    return !absent && (!bus || bus->isConnected());
}

/// A connection of its own: the portal must hear the program's name before anything else on it, and nobody
/// else's answers arrive here.
void PortalShortcuts::open() {
    qDBusRegisterMetaType<PortalShortcutRecord>();
    qDBusRegisterMetaType<QList<PortalShortcutRecord>>();
    const QString name = nextBusName();
    bus = settings.busAddress.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                                        : QDBusConnection::connectToBus(settings.busAddress, name);
    if (!bus->isConnected()) {
        fail(HotKeyError::NotAvailable);
        return;
    }
    auto *const watcher =
        new QDBusServiceWatcher(portalService, *bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString & /*service*/, const QString &before, const QString &now) {
                ownerChanged(before, now);
            });
    // From any path: what a request or a session is called is the portal's choice.
    bus->connect(portalService, QString(), requestInterface, QStringLiteral("Response"), this,
                 SLOT(requestAnswered(QDBusMessage)));
    bus->connect(portalService, QString(), sessionInterface, QStringLiteral("Closed"), this,
                 SLOT(sessionClosed(QDBusMessage)));
    bus->connect(portalService, portalPath, shortcutsInterface, QStringLiteral("Activated"), this,
                 SLOT(shortcutActivated(QDBusMessage)));
    probe();
    follow();
}

void PortalShortcuts::probe() {
    if (!settings.applicationId.isEmpty()) {
        QDBusMessage name = methodCall(portalPath, QStringLiteral("org.freedesktop.host.portal.Registry"),
                                       QStringLiteral("Register"));
        name << settings.applicationId << QVariantMap();
        // Portals that do not offer this find the name out for themselves.
        bus->send(name);
    }
    QDBusMessage version =
        methodCall(portalPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    version << shortcutsInterface << QStringLiteral("version");
    call(version, [this](const QDBusMessage &reply) { absent = reply.type() == QDBusMessage::ErrorMessage; });
}

void PortalShortcuts::setWanted(const QList<Shortcut> &shortcuts) {
    wanted = shortcuts;
    follow();
}

/// Takes the next step towards what is wanted; a step under way comes back here when it is done.
void PortalShortcuts::follow() {
    if (!bus) {
        return;
    }
    if (!bus->isConnected()) {
        fail(HotKeyError::NotAvailable);
    } else if (state == State::NoSession && !wanted.isEmpty()) {
        create();
    } else if ((state == State::Binding || state == State::Bound) && (wanted.isEmpty() || wanted != given)) {
        close();
    }
}

void PortalShortcuts::create() {
    state = State::Creating;
    overdue.start(settings.answerMilliseconds);
    ask(methodCall(portalPath, shortcutsInterface, QStringLiteral("CreateSession")),
        {{QStringLiteral("session_handle_token"), sessionToken}}, [this] {
            absent = true;
            fail(HotKeyError::NotAvailable);
        });
}

void PortalShortcuts::created(const QDBusMessage &message) {
    overdue.stop();
    const auto results = resultsOf(message);
    session = results ? sessionIn(*results) : QString();
    if (session.isEmpty()) {
        fail(HotKeyError::Declined);
        return;
    }
    if (wanted.isEmpty()) {
        close();
    } else {
        bind();
    }
}

void PortalShortcuts::bind() {
    state = State::Binding;
    given = wanted;
    QList<PortalShortcutRecord> records;
    for (const Shortcut &shortcut : std::as_const(given)) {
        records.append({shortcut.id,
                        {{QStringLiteral("description"), shortcut.description},
                         {QStringLiteral("preferred_trigger"), shortcut.trigger}}});
    }
    QDBusMessage message = methodCall(portalPath, shortcutsInterface, QStringLiteral("BindShortcuts"));
    message << QVariant::fromValue(QDBusObjectPath(session)) << QVariant::fromValue(records) << QString();
    ask(message, {}, [this] { fail(HotKeyError::Declined); });
}

void PortalShortcuts::bound(const QDBusMessage &message) {
    const auto results = resultsOf(message);
    const auto ids = results ? shortcutsIn(*results) : std::nullopt;
    if (!ids) {
        fail(HotKeyError::Declined);
        return;
    }
    state = State::Bound;
    const QStringList all = idsOf(given);
    const auto declined = [&ids](const Shortcut &shortcut) {
        return !ids->contains(shortcut.id);
    };
    given.removeIf(declined);
    wanted = given;
    QStringList lost;
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(lost),
                 [&ids](const QString &id) { return !ids->contains(id); });
    follow();
    if (!lost.isEmpty()) {
        handlers.refused(lost, HotKeyError::Declined);
    }
}

/// Gives the session back, and with it a dialog that may still be open.
void PortalShortcuts::close() {
    if (!request.isEmpty()) {
        tell(request, requestInterface, QStringLiteral("Close"));
    }
    request.clear();
    given.clear();
    state = State::Closing;
    // The next session has the same name: this one must be gone first.
    call(methodCall(std::exchange(session, {}), sessionInterface, QStringLiteral("Close")),
         [this](const QDBusMessage & /*reply*/) {
             state = State::NoSession;
             follow();
         });
}

/// Nothing that was wanted is had.
void PortalShortcuts::fail(HotKeyError error) {
    overdue.stop();
    request.clear();
    const QStringList ids = idsOf(std::exchange(wanted, {}));
    if (!session.isEmpty()) {
        close();
    } else if (state != State::Closing) {
        state = State::NoSession;
    }
    if (!ids.isEmpty()) {
        handlers.refused(ids, error);
    }
}

void PortalShortcuts::ownerChanged(const QString &before, const QString &now) {
    if (!before.isEmpty()) {
        era = std::make_unique<QObject>();
        session.clear();
        given.clear();
        // A portal that went down over a request is not asked the same again.
        const bool asked = state == State::Creating || state == State::Binding;
        state = State::NoSession;
        if (asked) {
            fail(HotKeyError::NotAvailable);
        }
    }
    if (now.isEmpty()) {
        return;
    }
    absent = false;
    probe();
    follow();
}

void PortalShortcuts::requestAnswered(const QDBusMessage &message) {
    if (!request.isEmpty() && message.path() == request) {
        request.clear();
        if (state == State::Creating) {
            created(message);
        } else if (state == State::Binding) {
            bound(message);
        }
        return;
    }
    // The session of a request that was given up is nobody's.
    const auto results = resultsOf(message);
    const QString late = results ? sessionIn(*results) : QString();
    if (!late.isEmpty() && late != session) {
        tell(late, sessionInterface, QStringLiteral("Close"));
    }
}

void PortalShortcuts::sessionClosed(const QDBusMessage &message) {
    if (session.isEmpty() || message.path() != session) {
        return;
    }
    session.clear();
    given.clear();
    fail(HotKeyError::Declined);
}

void PortalShortcuts::shortcutActivated(const QDBusMessage &message) {
    if (session.isEmpty() || !message.signature().startsWith(QLatin1String("os"))) {
        return;
    }
    const QString id = message.arguments().at(1).toString();
    const QString path = message.arguments().at(0).value<QDBusObjectPath>().path();
    if (path == session && idsOf(given).contains(id)) {
        handlers.activated(id);
    }
}

/// Makes a request, whose answer comes as a signal and may overtake the reply to the call.
void PortalShortcuts::ask(QDBusMessage message, QVariantMap options, const std::function<void()> &failed) {
    const QString token = QStringLiteral("quorvane_%1").arg(++lastToken);
    const QString sender = bus->baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    request = portalPath + QStringLiteral("/request/") + sender + QLatin1Char('/') + token;
    options.insert(QStringLiteral("handle_token"), token);
    message << options;
    call(message, [this, failed, asked = request](const QDBusMessage &reply) {
        if (request != asked) {
            return;
        }
        if (reply.type() == QDBusMessage::ErrorMessage) {
            failed();
        } else if (reply.signature() == QLatin1String("o")) {
            // Old portals name the request themselves.
            request = reply.arguments().at(0).value<QDBusObjectPath>().path();
        }
    });
}

void PortalShortcuts::call(QDBusMessage message, const Reply &reply) {
    auto *const watcher =
        new QDBusPendingCallWatcher(bus->asyncCall(message, settings.answerMilliseconds), era.get());
    connect(watcher, &QDBusPendingCallWatcher::finished, era.get(), [watcher, reply] {
        const QDBusMessage answer = watcher->reply();
        watcher->deleteLater();
        reply(answer);
    });
}

void PortalShortcuts::tell(const QString &path, const QString &interface, const QString &method) {
    bus->send(methodCall(path, interface, method));
}

} // namespace quorvane::platform

Q_DECLARE_METATYPE(quorvane::platform::PortalShortcutRecord)
