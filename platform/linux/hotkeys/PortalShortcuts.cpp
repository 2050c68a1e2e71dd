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

/// One element of the lists that are sent to the portal and received from it.
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
/// The same whenever the program runs: a portal that does not know the program by name identifies it by this
/// token.
const QString sessionToken = QStringLiteral("quorvane");
/// Plasma's name for the keys of a program whose own name the portal does not know: the session's token.
const QString &sessionComponent = sessionToken;

QDBusMessage methodCall(const QString &path, const QString &interface, const QString &method) {
    return QDBusMessage::createMethodCall(portalService, path, interface, method);
}

/// The results in a request's answer if it was granted; absent if it was refused or is malformed.
std::optional<QVariantMap> resultsOf(const QDBusMessage &answer) {
    if (answer.signature() != QLatin1String("ua{sv}") || answer.arguments().at(0).toUInt() != 0) {
        return std::nullopt;
    }
    return qdbus_cast<QVariantMap>(answer.arguments().at(1));
}

/// The path of a session in the answer to its creation; empty without one.
QString sessionIn(const QVariantMap &results) {
    const QVariant handle = results.value(QStringLiteral("session_handle"));
    // The portal's interface declares it as a text; a path is accepted too.
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

QHash<QString, QString> triggersOf(const QList<PortalShortcuts::Shortcut> &shortcuts) {
    QHash<QString, QString> triggers;
    for (const PortalShortcuts::Shortcut &shortcut : shortcuts) {
        triggers.insert(shortcut.id, shortcut.trigger);
    }
    return triggers;
}

/// As the portal expects them, also in the options of a new session.
QList<PortalShortcutRecord> recordsOf(const QList<PortalShortcuts::Shortcut> &shortcuts) {
    QList<PortalShortcutRecord> records;
    for (const PortalShortcuts::Shortcut &shortcut : shortcuts) {
        records.append({shortcut.id,
                        {{QStringLiteral("description"), shortcut.description},
                         {QStringLiteral("preferred_trigger"), shortcut.trigger}}});
    }
    return records;
}

QString nextBusName() {
    static int last = 0;
    return QStringLiteral("quorvane-shortcuts-%1").arg(++last);
}

} // namespace

PortalShortcuts::PortalShortcuts(const Settings &settings, Handlers handlers)
    : m_settings(settings), m_handlers(std::move(handlers)), m_replyContext(std::make_unique<QObject>()) {
    m_openSoon.setSingleShot(true);
    m_overdue.setSingleShot(true);
    connect(&m_openSoon, &QTimer::timeout, this, [this] { open(); });
    connect(&m_overdue, &QTimer::timeout, this, [this] {
        setAbsent();
        fail(HotKeyError::NotAvailable);
    });
    m_openSoon.start(0);
}

PortalShortcuts::~PortalShortcuts() {
    if (m_bus) {
        QDBusConnection::disconnectFromBus(m_bus->name());
    }
}

bool PortalShortcuts::isAvailable() const {
    return !m_absent && (!m_bus || m_bus->isConnected());
}

/// Uses a separate connection: the portal must receive the program's name before any other message on it, and
/// only this class receives the answers.
void PortalShortcuts::open() {
    qDBusRegisterMetaType<PortalShortcutRecord>();
    qDBusRegisterMetaType<QList<PortalShortcutRecord>>();
    const QString name = nextBusName();
    m_bus = m_settings.busAddress.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                                            : QDBusConnection::connectToBus(m_settings.busAddress, name);
    if (!m_bus->isConnected()) {
        fail(HotKeyError::NotAvailable);
        return;
    }
    auto *const watcher =
        new QDBusServiceWatcher(portalService, *m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString & /*service*/, const QString &before, const QString &now) {
                ownerChanged(before, now);
            });
    // Accepts signals from any path: the portal chooses the names of requests and sessions.
    m_bus->connect(portalService, QString(), requestInterface, QStringLiteral("Response"), this,
                   SLOT(requestAnswered(QDBusMessage)));
    m_bus->connect(portalService, QString(), sessionInterface, QStringLiteral("Closed"), this,
                   SLOT(sessionClosed(QDBusMessage)));
    m_bus->connect(portalService, portalPath, shortcutsInterface, QStringLiteral("Activated"), this,
                   SLOT(shortcutActivated(QDBusMessage)));
    probe();
    advance();
}

void PortalShortcuts::probe() {
    if (!m_settings.applicationId.isEmpty()) {
        QDBusMessage name = methodCall(portalPath, QStringLiteral("org.freedesktop.host.portal.Registry"),
                                       QStringLiteral("Register"));
        name << m_settings.applicationId << QVariantMap();
        // Portals without this method find out the name themselves.
        m_bus->send(name);
    }
    QDBusMessage version =
        methodCall(portalPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    version << shortcutsInterface << QStringLiteral("version");
    call(version, [this](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage) {
            setAbsent();
            return;
        }
        m_absent = false;
        if (std::exchange(m_wasAbsent, false)) {
            m_handlers.appeared();
        }
    });
}

void PortalShortcuts::setAbsent() {
    m_absent = true;
    m_wasAbsent = true;
}

void PortalShortcuts::setWanted(const QList<Shortcut> &shortcuts) {
    m_wanted = shortcuts;
    advance();
}

/// Starts the next step towards the wanted list; called again when a step is finished.
void PortalShortcuts::advance() {
    if (!m_bus) {
        return;
    }
    if (!m_bus->isConnected()) {
        fail(HotKeyError::NotAvailable);
    } else if (m_state == State::NoSession && !m_wanted.isEmpty()) {
        create();
    } else if (!m_session.isEmpty() && (m_wanted.isEmpty() || m_wanted != m_bound)) {
        close();
    }
}

void PortalShortcuts::create() {
    m_state = State::Creating;
    m_bound = m_wanted;
    m_listed.clear();
    m_overdue.start(m_settings.answerMilliseconds);
    // Plasma registers the shortcuts of this option; its BindShortcuts opens the system settings instead.
    sendRequest(methodCall(portalPath, shortcutsInterface, QStringLiteral("CreateSession")),
                {{QStringLiteral("session_handle_token"), sessionToken},
                 {QStringLiteral("shortcuts"), QVariant::fromValue(recordsOf(m_bound))}},
                [this] {
                    setAbsent();
                    fail(HotKeyError::NotAvailable);
                });
}

void PortalShortcuts::created(const QDBusMessage &message) {
    m_overdue.stop();
    const auto results = resultsOf(message);
    m_session = results ? sessionIn(*results) : QString();
    if (m_session.isEmpty()) {
        fail(HotKeyError::Declined);
        return;
    }
    if (m_wanted.isEmpty() || m_wanted != m_bound) {
        close();
    } else {
        list();
    }
}

/// Requests what the session holds already: a portal that passes the shortcuts of a new session on needs no
/// second list, and its desktop shows no dialog then.
void PortalShortcuts::list() {
    m_state = State::Listing;
    m_overdue.start(m_settings.answerMilliseconds);
    QDBusMessage message = methodCall(portalPath, shortcutsInterface, QStringLiteral("ListShortcuts"));
    message << QVariant::fromValue(QDBusObjectPath(m_session));
    sendRequest(message, {}, [this] {
        m_overdue.stop();
        bind();
    });
}

void PortalShortcuts::listed(const QDBusMessage &message) {
    m_overdue.stop();
    const auto results = resultsOf(message);
    m_listed = results ? shortcutsIn(*results).value_or(QStringList()) : QStringList();
    const bool complete = std::all_of(m_bound.cbegin(), m_bound.cend(), [this](const Shortcut &shortcut) {
        return m_listed.contains(shortcut.id);
    });
    if (complete) {
        finish(m_listed);
    } else {
        bind();
    }
}

/// Requests the shortcuts that the session lacks.
void PortalShortcuts::bind() {
    m_state = State::Binding;
    QList<Shortcut> missing = m_bound;
    missing.removeIf([this](const Shortcut &shortcut) { return m_listed.contains(shortcut.id); });
    QDBusMessage message = methodCall(portalPath, shortcutsInterface, QStringLiteral("BindShortcuts"));
    message << QVariant::fromValue(QDBusObjectPath(m_session)) << QVariant::fromValue(recordsOf(missing))
            << QString();
    sendRequest(message, {}, [this] { refuseMissing(); });
}

/// The shortcuts that the session had before the request stay.
void PortalShortcuts::refuseMissing() {
    m_request.clear();
    if (m_listed.isEmpty()) {
        fail(HotKeyError::Declined);
    } else {
        finish(m_listed);
    }
}

void PortalShortcuts::bound(const QDBusMessage &message) {
    const auto results = resultsOf(message);
    const auto ids = results ? shortcutsIn(*results) : std::nullopt;
    if (ids) {
        finish(m_listed + *ids);
    } else {
        refuseMissing();
    }
}

/// The session has the shortcuts with these names, and no others.
void PortalShortcuts::finish(const QStringList &present) {
    m_state = State::Bound;
    QStringList lost = idsOf(m_bound);
    lost.removeIf([&present](const QString &id) { return present.contains(id); });
    withdraw(lost, HotKeyError::Declined);
    if (m_state != State::Bound || m_bound.isEmpty()) {
        return;
    }
    m_keys.findTaken(*m_bus, {sessionComponent, m_settings.applicationId}, triggersOf(m_bound),
                     [this](const QStringList &taken) { withdraw(taken, HotKeyError::TakenElsewhere); });
}

/// Removes shortcuts from the list without a new session.
void PortalShortcuts::withdraw(const QStringList &ids, HotKeyError error) {
    if (ids.isEmpty()) {
        return;
    }
    const auto lost = [&ids](const Shortcut &shortcut) {
        return ids.contains(shortcut.id);
    };
    m_bound.removeIf(lost);
    m_wanted.removeIf(lost);
    advance();
    m_handlers.refused(ids, error);
}

/// Ends the session, and a dialog of it that may still be open.
void PortalShortcuts::close() {
    if (!m_request.isEmpty()) {
        sendCall(m_request, requestInterface, QStringLiteral("Close"));
    }
    m_request.clear();
    m_bound.clear();
    m_keys.cancel();
    m_overdue.stop();
    m_state = State::Closing;
    // The next session has the same name, so this one must end first.
    call(methodCall(std::exchange(m_session, {}), sessionInterface, QStringLiteral("Close")),
         [this](const QDBusMessage & /*reply*/) {
             m_state = State::NoSession;
             advance();
         });
}

/// Reports all wanted shortcuts as refused.
void PortalShortcuts::fail(HotKeyError error) {
    m_overdue.stop();
    m_request.clear();
    const QStringList ids = idsOf(std::exchange(m_wanted, {}));
    if (!m_session.isEmpty()) {
        close();
    } else if (m_state != State::Closing) {
        m_state = State::NoSession;
    }
    if (!ids.isEmpty()) {
        m_handlers.refused(ids, error);
    }
}

void PortalShortcuts::ownerChanged(const QString &before, const QString &now) {
    if (!before.isEmpty()) {
        m_replyContext = std::make_unique<QObject>();
        m_session.clear();
        m_bound.clear();
        m_keys.cancel();
        // A request during which the portal ended is not sent again.
        const bool requestPending =
            m_state == State::Creating || m_state == State::Listing || m_state == State::Binding;
        m_state = State::NoSession;
        if (requestPending) {
            fail(HotKeyError::NotAvailable);
        }
    }
    if (now.isEmpty()) {
        return;
    }
    m_absent = false;
    probe();
    advance();
}

void PortalShortcuts::requestAnswered(const QDBusMessage &message) {
    if (!m_request.isEmpty() && message.path() == m_request) {
        m_request.clear();
        if (m_state == State::Creating) {
            created(message);
        } else if (m_state == State::Listing) {
            listed(message);
        } else if (m_state == State::Binding) {
            bound(message);
        }
        return;
    }
    // A session that was created for an abandoned request is not used, so it is closed.
    const auto results = resultsOf(message);
    const QString late = results ? sessionIn(*results) : QString();
    if (!late.isEmpty() && late != m_session) {
        sendCall(late, sessionInterface, QStringLiteral("Close"));
    }
}

void PortalShortcuts::sessionClosed(const QDBusMessage &message) {
    if (m_session.isEmpty() || message.path() != m_session) {
        return;
    }
    m_session.clear();
    m_bound.clear();
    m_keys.cancel();
    fail(HotKeyError::Declined);
}

void PortalShortcuts::shortcutActivated(const QDBusMessage &message) {
    if (m_session.isEmpty() || !message.signature().startsWith(QLatin1String("os"))) {
        return;
    }
    const QString id = message.arguments().at(1).toString();
    const QString path = message.arguments().at(0).value<QDBusObjectPath>().path();
    if (path == m_session && idsOf(m_bound).contains(id)) {
        m_handlers.activated(id);
    }
}

/// Sends a request. Its answer is a signal, which may arrive before the reply to the call.
void PortalShortcuts::sendRequest(QDBusMessage message, QVariantMap options,
                                  const std::function<void()> &failed) {
    const QString token = QStringLiteral("quorvane_%1").arg(++m_lastToken);
    const QString sender = m_bus->baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    m_request = portalPath + QStringLiteral("/request/") + sender + QLatin1Char('/') + token;
    options.insert(QStringLiteral("handle_token"), token);
    message << options;
    call(message, [this, failed, expected = m_request](const QDBusMessage &reply) {
        if (m_request != expected) {
            return;
        }
        if (reply.type() == QDBusMessage::ErrorMessage) {
            failed();
        } else if (reply.signature() == QLatin1String("o")) {
            // Old portals choose the request's path themselves.
            m_request = reply.arguments().at(0).value<QDBusObjectPath>().path();
        }
    });
}

void PortalShortcuts::call(QDBusMessage message, const Reply &reply) {
    auto *const watcher = new QDBusPendingCallWatcher(
        m_bus->asyncCall(message, m_settings.answerMilliseconds), m_replyContext.get());
    connect(watcher, &QDBusPendingCallWatcher::finished, m_replyContext.get(), [watcher, reply] {
        const QDBusMessage answer = watcher->reply();
        watcher->deleteLater();
        reply(answer);
    });
}

void PortalShortcuts::sendCall(const QString &path, const QString &interface, const QString &method) {
    m_bus->send(methodCall(path, interface, method));
}

} // namespace quorvane::platform

Q_DECLARE_METATYPE(quorvane::platform::PortalShortcutRecord)
