#pragma once

#include "PlasmaKeys.h"
#include "platform/HotKeyService.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace quorvane::platform {

/// The desktop portal's global shortcuts, as one list that the program wants. Main thread; handlers are
/// called from the event loop; nothing here waits for the portal.
///
/// A session of the portal accepts one list only, so a changed list means a new session, and perhaps a dialog
/// of the desktop: changes that belong together should be set together. The list goes with the request for
/// the session; what the session then lacks is requested once more.
class PortalShortcuts : public QObject {
    Q_OBJECT

public:
    struct Shortcut {
        /// The portal stores the user's choice under this name.
        QString id;
        QString description;
        /// Such as "LOGO+1"; the desktop may let the user choose other keys.
        QString trigger;

        bool operator==(const Shortcut &) const = default;
    };

    struct Settings {
        /// Empty means the session bus.
        QString busAddress;
        /// Identifies this program to the portal; may be empty.
        QString applicationId;
        /// Time limit for the portal's replies that do not depend on the user.
        int answerMilliseconds = 30000;
    };

    struct Handlers {
        std::function<void(const QString &)> activated;
        /// These shortcuts were refused, or withdrawn.
        std::function<void(const QStringList &, HotKeyError)> refused;
        /// There is a portal with shortcuts, after there was none.
        std::function<void()> appeared;
    };

    PortalShortcuts(const Settings &settings, Handlers handlers);
    ~PortalShortcuts() override;

    /// False once the desktop is known to have no such portal, until another portal starts.
    [[nodiscard]] bool isAvailable() const;
    /// Refused shortcuts are removed from the list.
    void setWanted(const QList<Shortcut> &shortcuts);

private Q_SLOTS:
    void requestAnswered(const QDBusMessage &message);
    void sessionClosed(const QDBusMessage &message);
    void shortcutActivated(const QDBusMessage &message);

private:
    enum class State { NoSession, Creating, Listing, Binding, Bound, Closing };
    using Reply = std::function<void(const QDBusMessage &)>;

    void open();
    void probe();
    void setAbsent();
    void advance();
    void create();
    void created(const QDBusMessage &message);
    void list();
    void listed(const QDBusMessage &message);
    void bind();
    void bound(const QDBusMessage &message);
    void refuseMissing();
    void finish(const QStringList &present);
    void withdraw(const QStringList &ids, HotKeyError error);
    void close();
    void fail(HotKeyError error);
    void ownerChanged(const QString &before, const QString &now);
    void sendRequest(QDBusMessage message, QVariantMap options, const std::function<void()> &failed);
    void call(QDBusMessage message, const Reply &reply);
    void sendCall(const QString &path, const QString &interface, const QString &method);

    const Settings m_settings;
    const Handlers m_handlers;
    std::optional<QDBusConnection> m_bus;
    /// Context of the calls to the present portal process: replies of an earlier one are dropped with it.
    std::unique_ptr<QObject> m_replyContext;
    QTimer m_openSoon;
    QTimer m_overdue;
    bool m_absent = false;
    /// Whether the portal was absent since a probe last found it.
    bool m_wasAbsent = false;
    State m_state = State::NoSession;
    /// The pending request and the session; empty when there is none.
    QString m_request;
    QString m_session;
    unsigned m_lastToken = 0;
    QList<Shortcut> m_wanted;
    /// The shortcuts that were sent to the session.
    QList<Shortcut> m_bound;
    /// Those that the session had before any were bound.
    QStringList m_listed;
    PlasmaKeys m_keys;
};

} // namespace quorvane::platform
