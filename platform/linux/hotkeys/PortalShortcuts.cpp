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
    } else if ((m_state == State::Binding || m_state == State::Bound) &&
               (m_wanted.isEmpty() || m_wanted != m_bound)) {
        close();
    }
}

void PortalShortcuts::create() {
    m_state = State::Creating;
    m_overdue.start(m_settings.answerMilliseconds);
    sendRequest(methodCall(portalPath, shortcutsInterface, QStringLiteral("CreateSession")),
                {{QStringLiteral("session_handle_token"), sessionToken}}, [this] {
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
    if (m_wanted.isEmpty()) {
        close();
    } else {
        bind();
    }
}

void PortalShortcuts::bind() {
    m_state = State::Binding;
    m_bound = m_wanted;
    QList<PortalShortcutRecord> records;
    for (const Shortcut &shortcut : std::as_const(m_bound)) {
        records.append({shortcut.id,
                        {{QStringLiteral("description"), shortcut.description},
                         {QStringLiteral("preferred_trigger"), shortcut.trigger}}});
    }
    QDBusMessage message = methodCall(portalPath, shortcutsInterface, QStringLiteral("BindShortcuts"));
    message << QVariant::fromValue(QDBusObjectPath(m_session)) << QVariant::fromValue(records) << QString();
    sendRequest(message, {}, [this] { fail(HotKeyError::Declined); });
}

void PortalShortcuts::bound(const QDBusMessage &message) {
    const auto results = resultsOf(message);
    const auto ids = results ? shortcutsIn(*results) : std::nullopt;
    if (!ids) {
        fail(HotKeyError::Declined);
        return;
    }
    m_state = State::Bound;
    const QStringList all = idsOf(m_bound);
    const auto declined = [&ids](const Shortcut &shortcut) {
        return !ids->contains(shortcut.id);
    };
    m_bound.removeIf(declined);
    m_wanted = m_bound;
    QStringList lost;
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(lost),
                 [&ids](const QString &id) { return !ids->contains(id); });
    advance();
    if (!lost.isEmpty()) {
        m_handlers.refused(lost, HotKeyError::Declined);
    }
}

/// Ends the session, and a dialog of it that may still be open.
void PortalShortcuts::close() {
    if (!m_request.isEmpty()) {
        sendCall(m_request, requestInterface, QStringLiteral("Close"));
    }
    m_request.clear();
    m_bound.clear();
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
        // A request during which the portal ended is not sent again.
        const bool requestPending = m_state == State::Creating || m_state == State::Binding;
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
