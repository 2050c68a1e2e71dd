#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QList>
#include <QStringList>

#include <optional>

namespace quorvane::platform {

/// A separate desktop portal for a test, with or without global shortcuts. By default it grants every
/// request; it records all of them.
class FakePortal : public QDBusVirtualObject {
public:
    enum class Answer {
        Yes,
        No,
        Error,
        Garbage,
        /// The call succeeds, but no answer follows.
        Never,
        /// The call itself gets no reply; see replyLate().
        Silence,
    };

    struct Shortcut {
        QString id;
        QString description;
        QString trigger;
    };

    explicit FakePortal(const QString &address, bool withShortcuts = true)
        : hasShortcuts(withShortcuts), m_name(nextName()),
          m_bus(QDBusConnection::connectToBus(address, m_name)) {
        m_bus.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        started = m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    /// Leaves the bus, like a portal that ends.
    ~FakePortal() override {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        m_bus.unregisterObject(QStringLiteral("/"));
        QDBusConnection::disconnectFromBus(m_name);
    }

    FakePortal(const FakePortal &) = delete;
    FakePortal &operator=(const FakePortal &) = delete;

    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection & /*connection*/) override {
        const QString method = message.member();
        calls.append(method);
        if (method == QLatin1String("Register")) {
            applicationId = message.arguments().value(0).toString();
        } else if (method == QLatin1String("Get")) {
            replyVersion(message);
        } else if (method == QLatin1String("CreateSession")) {
            create(message);
        } else if (method == QLatin1String("ListShortcuts")) {
            list(message);
        } else if (method == QLatin1String("BindShortcuts")) {
            bind(message);
        } else if (method == QLatin1String("Close")) {
            handleClose(message);
        }
        return true;
    }

    /// The user presses the keys of a shortcut.
    void activate(const QString &id) const { activateIn(session, id); }

    void activateIn(const QString &path, const QString &id) const {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.GlobalShortcuts"), QStringLiteral("Activated"));
        signal << QVariant::fromValue(QDBusObjectPath(path)) << id << qulonglong{1} << QVariantMap();
        m_bus.send(signal);
    }

    void sendActivated(const QVariantList &arguments) const {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.GlobalShortcuts"), QStringLiteral("Activated"));
        signal.setArguments(arguments);
        m_bus.send(signal);
    }

    /// The desktop closes the session.
    void closeSession() {
        m_bus.send(QDBusMessage::createSignal(session, QStringLiteral("org.freedesktop.portal.Session"),
                                              QStringLiteral("Closed")));
        session.clear();
    }

    void respond(const QString &path, const QVariantList &arguments) const {
        QDBusMessage signal = QDBusMessage::createSignal(
            path, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        signal.setArguments(arguments);
        m_bus.send(signal);
    }

    /// Grants the last request to create a session.
    void answerCreation() const {
        respond(createRequest, {0U, QVariantMap{{QStringLiteral("session_handle"), session}}});
    }

    /// Answers the last request to bind: these shortcuts were bound.
    void answerBinding(const QStringList &ids) const {
        respond(bindRequest, {0U, QVariantMap{{QStringLiteral("shortcuts"), boundList(ids)}}});
    }

    /// Replies to the unanswered call with an error.
    void replyLate() const { refuse(m_unanswered); }

    [[nodiscard]] int count(const char *method) const {
        return static_cast<int>(calls.count(QString::fromLatin1(method)));
    }

    [[nodiscard]] QStringList ids() const {
        QStringList all;
        for (const Shortcut &shortcut : shortcuts) {
            all.append(shortcut.id);
        }
        return all;
    }

    Answer toProbe = Answer::Yes;
    Answer toCreate = Answer::Yes;
    Answer toList = Answer::Yes;
    Answer toBind = Answer::Yes;
    Answer toClose = Answer::Yes;
    /// The results of a garbage answer.
    QVariantList garbage;
    /// If set, only these are bound.
    std::optional<QStringList> onlyBound;
    bool hasShortcuts;
    bool started = false;

    QStringList calls;
    QString applicationId;
    QString session;
    QString createRequest;
    QString listRequest;
    QString bindRequest;
    QStringList closed;
    /// The shortcuts in the options of the last session that was created.
    QList<Shortcut> offered;
    /// These of them are in the session at once, as on Plasma; none on other desktops.
    bool acceptsOffered = false;
    QStringList notAccepted;
    /// The shortcuts of the last request to bind.
    QList<Shortcut> shortcuts;

private:
    static QString nextName() {
        static int last = 0;
        return QStringLiteral("fake-portal-%1").arg(++last);
    }

    static QString pathOf(const QString &kind, const QString &sender, const QString &token) {
        return QStringLiteral("/org/freedesktop/portal/desktop/") + kind + QLatin1Char('/') +
               sender.mid(1).replace(QLatin1Char('.'), QLatin1Char('_')) + QLatin1Char('/') + token;
    }

    /// In the portal's format, which contains a description of the keys.
    static QVariant boundList(const QStringList &ids);

    void replyVersion(const QDBusMessage &message) const {
        if (toProbe == Answer::Never) {
            return;
        }
        if (hasShortcuts) {
            m_bus.send(message.createReply(QVariant::fromValue(QDBusVariant(1U))));
        } else {
            refuse(message);
        }
    }

    void refuse(const QDBusMessage &message) const {
        m_bus.send(
            message.createErrorReply(QDBusError::UnknownInterface, QStringLiteral("No such interface")));
    }

    void create(const QDBusMessage &message) {
        const QVariantMap options = qdbus_cast<QVariantMap>(message.arguments().value(0));
        createRequest = pathOf(QStringLiteral("request"), message.service(),
                               options.value(QStringLiteral("handle_token")).toString());
        if (!hasShortcuts || toCreate == Answer::Error) {
            return refuse(message);
        }
        offered = shortcutsIn(options.value(QStringLiteral("shortcuts")));
        session = pathOf(QStringLiteral("session"), message.service(),
                         options.value(QStringLiteral("session_handle_token")).toString());
        answer(message, toCreate, createRequest, QVariantMap{{QStringLiteral("session_handle"), session}});
    }

    void list(const QDBusMessage &message) {
        const QVariantMap options = qdbus_cast<QVariantMap>(message.arguments().value(1));
        listRequest = pathOf(QStringLiteral("request"), message.service(),
                             options.value(QStringLiteral("handle_token")).toString());
        if (toList == Answer::Error) {
            return refuse(message);
        }
        QStringList present;
        for (const Shortcut &shortcut : std::as_const(offered)) {
            if (acceptsOffered && !notAccepted.contains(shortcut.id)) {
                present.append(shortcut.id);
            }
        }
        answer(message, toList, listRequest, {{QStringLiteral("shortcuts"), boundList(present)}});
    }

    void bind(const QDBusMessage &message) {
        const QVariantMap options = qdbus_cast<QVariantMap>(message.arguments().value(3));
        bindRequest = pathOf(QStringLiteral("request"), message.service(),
                             options.value(QStringLiteral("handle_token")).toString());
        shortcuts = shortcutsIn(message.arguments().value(1));
        if (toBind == Answer::Error) {
            return refuse(message);
        }
        answer(message, toBind, bindRequest,
               {{QStringLiteral("shortcuts"), boundList(onlyBound.value_or(ids()))}});
    }

    [[nodiscard]] static QList<Shortcut> shortcutsIn(const QVariant &list) {
        QList<Shortcut> all;
        const auto argument = list.value<QDBusArgument>();
        argument.beginArray();
        while (!argument.atEnd()) {
            QString id;
            QVariantMap properties;
            argument.beginStructure();
            argument >> id >> properties;
            argument.endStructure();
            all.append({id, properties.value(QStringLiteral("description")).toString(),
                        properties.value(QStringLiteral("preferred_trigger")).toString()});
        }
        argument.endArray();
        return all;
    }

    void answer(const QDBusMessage &call, Answer how, const QString &path, const QVariantMap &results) {
        if (how == Answer::Silence) {
            m_unanswered = call;
            return;
        }
        m_bus.send(call.createReply(QVariant::fromValue(QDBusObjectPath(path))));
        if (how == Answer::Yes) {
            respond(path, {0U, results});
        } else if (how == Answer::No) {
            respond(path, {1U, QVariantMap()});
        } else if (how == Answer::Garbage) {
            respond(path, garbage);
        }
    }

    void handleClose(const QDBusMessage &message) {
        closed.append(message.path());
        if (toClose == Answer::Yes && message.isReplyRequired()) {
            m_bus.send(message.createReply());
        }
    }

    const QString m_name;
    QDBusConnection m_bus;
    QDBusMessage m_unanswered;
};

struct BoundShortcut {
    QString id;
    QVariantMap properties;
};

inline QDBusArgument &operator<<(QDBusArgument &argument, const BoundShortcut &shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument &operator>>(const QDBusArgument &argument, BoundShortcut &shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

inline QVariant FakePortal::boundList(const QStringList &ids) {
    qDBusRegisterMetaType<BoundShortcut>();
    qDBusRegisterMetaType<QList<BoundShortcut>>();
    QList<BoundShortcut> list;
    for (const QString &id : ids) {
        list.append({id, {{QStringLiteral("trigger_description"), QStringLiteral("Meta+X")}}});
    }
    return QVariant::fromValue(list);
}

} // namespace quorvane::platform
