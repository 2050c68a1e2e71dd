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
    : m_settings(portalSettings), m_handlers(std::move(toTell)), m_era(std::make_unique<QObject>()) {
    m_openSoon.setSingleShot(true);
    m_overdue.setSingleShot(true);
    connect(&m_openSoon, &QTimer::timeout, this, [this] { open(); });
    connect(&m_overdue, &QTimer::timeout, this, [this] {
        m_absent = true;
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

/// A connection of its own: the portal must hear the program's name before anything else on it, and nobody
/// else's answers arrive here.
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
    // From any path: what a request or a session is called is the portal's choice.
    m_bus->connect(portalService, QString(), requestInterface, QStringLiteral("Response"), this,
                   SLOT(requestAnswered(QDBusMessage)));
    m_bus->connect(portalService, QString(), sessionInterface, QStringLiteral("Closed"), this,
                   SLOT(sessionClosed(QDBusMessage)));
    m_bus->connect(portalService, portalPath, shortcutsInterface, QStringLiteral("Activated"), this,
                   SLOT(shortcutActivated(QDBusMessage)));
    probe();
    follow();
}

void PortalShortcuts::probe() {
    if (!m_settings.applicationId.isEmpty()) {
        QDBusMessage name = methodCall(portalPath, QStringLiteral("org.freedesktop.host.portal.Registry"),
                                       QStringLiteral("Register"));
        name << m_settings.applicationId << QVariantMap();
        // Portals that do not offer this find the name out for themselves.
        m_bus->send(name);
    }
    QDBusMessage version =
        methodCall(portalPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    version << shortcutsInterface << QStringLiteral("version");
    call(version,
         [this](const QDBusMessage &reply) { m_absent = reply.type() == QDBusMessage::ErrorMessage; });
}

void PortalShortcuts::setWanted(const QList<Shortcut> &shortcuts) {
    m_wanted = shortcuts;
    follow();
}

/// Takes the next step towards what is wanted; a step under way comes back here when it is done.
void PortalShortcuts::follow() {
    if (!m_bus) {
        return;
    }
    if (!m_bus->isConnected()) {
        fail(HotKeyError::NotAvailable);
    } else if (m_state == State::NoSession && !m_wanted.isEmpty()) {
        create();
    } else if ((m_state == State::Binding || m_state == State::Bound) &&
               (m_wanted.isEmpty() || m_wanted != m_given)) {
        close();
    }
}

void PortalShortcuts::create() {
    m_state = State::Creating;
    m_overdue.start(m_settings.answerMilliseconds);
    ask(methodCall(portalPath, shortcutsInterface, QStringLiteral("CreateSession")),
        {{QStringLiteral("session_handle_token"), sessionToken}}, [this] {
            m_absent = true;
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
    m_given = m_wanted;
    QList<PortalShortcutRecord> records;
    for (const Shortcut &shortcut : std::as_const(m_given)) {
        records.append({shortcut.id,
                        {{QStringLiteral("description"), shortcut.description},
                         {QStringLiteral("preferred_trigger"), shortcut.trigger}}});
    }
    QDBusMessage message = methodCall(portalPath, shortcutsInterface, QStringLiteral("BindShortcuts"));
    message << QVariant::fromValue(QDBusObjectPath(m_session)) << QVariant::fromValue(records) << QString();
    ask(message, {}, [this] { fail(HotKeyError::Declined); });
}

void PortalShortcuts::bound(const QDBusMessage &message) {
    const auto results = resultsOf(message);
    const auto ids = results ? shortcutsIn(*results) : std::nullopt;
    if (!ids) {
        fail(HotKeyError::Declined);
        return;
    }
    m_state = State::Bound;
    const QStringList all = idsOf(m_given);
    const auto declined = [&ids](const Shortcut &shortcut) {
        return !ids->contains(shortcut.id);
    };
    m_given.removeIf(declined);
    m_wanted = m_given;
    QStringList lost;
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(lost),
                 [&ids](const QString &id) { return !ids->contains(id); });
    follow();
    if (!lost.isEmpty()) {
        m_handlers.refused(lost, HotKeyError::Declined);
    }
}

/// Gives the session back, and with it a dialog that may still be open.
void PortalShortcuts::close() {
    if (!m_request.isEmpty()) {
        tell(m_request, requestInterface, QStringLiteral("Close"));
    }
    m_request.clear();
    m_given.clear();
    m_state = State::Closing;
    // The next session has the same name: this one must be gone first.
    call(methodCall(std::exchange(m_session, {}), sessionInterface, QStringLiteral("Close")),
         [this](const QDBusMessage & /*reply*/) {
             m_state = State::NoSession;
             follow();
         });
}

/// Nothing that was wanted is had.
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
        m_era = std::make_unique<QObject>();
        m_session.clear();
        m_given.clear();
        // A portal that went down over a request is not asked the same again.
        const bool asked = m_state == State::Creating || m_state == State::Binding;
        m_state = State::NoSession;
        if (asked) {
            fail(HotKeyError::NotAvailable);
        }
    }
    if (now.isEmpty()) {
        return;
    }
    m_absent = false;
    probe();
    follow();
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
    // The session of a request that was given up is nobody's.
    const auto results = resultsOf(message);
    const QString late = results ? sessionIn(*results) : QString();
    if (!late.isEmpty() && late != m_session) {
        tell(late, sessionInterface, QStringLiteral("Close"));
    }
}

void PortalShortcuts::sessionClosed(const QDBusMessage &message) {
    if (m_session.isEmpty() || message.path() != m_session) {
        return;
    }
    m_session.clear();
    m_given.clear();
    fail(HotKeyError::Declined);
}

void PortalShortcuts::shortcutActivated(const QDBusMessage &message) {
    if (m_session.isEmpty() || !message.signature().startsWith(QLatin1String("os"))) {
        return;
    }
    const QString id = message.arguments().at(1).toString();
    const QString path = message.arguments().at(0).value<QDBusObjectPath>().path();
    if (path == m_session && idsOf(m_given).contains(id)) {
        m_handlers.activated(id);
    }
}

/// Makes a request, whose answer comes as a signal and may overtake the reply to the call.
void PortalShortcuts::ask(QDBusMessage message, QVariantMap options, const std::function<void()> &failed) {
    const QString token = QStringLiteral("quorvane_%1").arg(++m_lastToken);
    const QString sender = m_bus->baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    m_request = portalPath + QStringLiteral("/request/") + sender + QLatin1Char('/') + token;
    options.insert(QStringLiteral("handle_token"), token);
    message << options;
    call(message, [this, failed, asked = m_request](const QDBusMessage &reply) {
        if (m_request != asked) {
            return;
        }
        if (reply.type() == QDBusMessage::ErrorMessage) {
            failed();
        } else if (reply.signature() == QLatin1String("o")) {
            // Old portals name the request themselves.
            m_request = reply.arguments().at(0).value<QDBusObjectPath>().path();
        }
    });
}

void PortalShortcuts::call(QDBusMessage message, const Reply &reply) {
    auto *const watcher =
        new QDBusPendingCallWatcher(m_bus->asyncCall(message, m_settings.answerMilliseconds), m_era.get());
    connect(watcher, &QDBusPendingCallWatcher::finished, m_era.get(), [watcher, reply] {
        const QDBusMessage answer = watcher->reply();
        watcher->deleteLater();
        reply(answer);
    });
}

void PortalShortcuts::tell(const QString &path, const QString &interface, const QString &method) {
    m_bus->send(methodCall(path, interface, method));
}

} // namespace quorvane::platform

Q_DECLARE_METATYPE(quorvane::platform::PortalShortcutRecord)
