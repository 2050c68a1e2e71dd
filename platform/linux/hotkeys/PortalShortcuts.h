#pragma once

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
/// A session of the portal takes one list only, so a changed list means a new session, and perhaps a dialog
/// of the desktop: tell changes that belong together as one.
class PortalShortcuts : public QObject {
    Q_OBJECT

public:
    struct Shortcut {
        /// The portal remembers by it what the user chose.
        QString id;
        QString description;
        /// Such as "LOGO+1"; the desktop may give the user other keys.
        QString trigger;

        bool operator==(const Shortcut &) const = default;
    };

    struct Settings {
        /// Empty means the session bus.
        QString busAddress;
        /// Tells the portal who asks; may be empty.
        QString applicationId;
        /// How long the portal has for what it does without the user.
        int answerMilliseconds = 30000;
    };

    struct Handlers {
        std::function<void(const QString &)> activated;
        /// The program does not have these, or no longer.
        std::function<void(const QStringList &, HotKeyError)> refused;
    };

    PortalShortcuts(const Settings &portalSettings, Handlers toTell);
    ~PortalShortcuts() override;

    /// False once the desktop is known to have no such portal, until another portal starts.
    [[nodiscard]] bool isAvailable() const;
    /// Those that are refused leave the list by themselves.
    void setWanted(const QList<Shortcut> &shortcuts);

private Q_SLOTS:
    void requestAnswered(const QDBusMessage &message);
    void sessionClosed(const QDBusMessage &message);
    void shortcutActivated(const QDBusMessage &message);

private:
    enum class State { NoSession, Creating, Binding, Bound, Closing };
    using Reply = std::function<void(const QDBusMessage &)>;

    void open();
    void probe();
    void follow();
    void create();
    void created(const QDBusMessage &message);
    void bind();
    void bound(const QDBusMessage &message);
    void close();
    void fail(HotKeyError error);
    void ownerChanged(const QString &before, const QString &now);
    void ask(QDBusMessage message, QVariantMap options, const std::function<void()> &failed);
    void call(QDBusMessage message, const Reply &reply);
    void tell(const QString &path, const QString &interface, const QString &method);

    const Settings m_settings;
    const Handlers m_handlers;
    std::optional<QDBusConnection> m_bus;
    /// Of this portal process: replies that are for an earlier one go nowhere.
    std::unique_ptr<QObject> m_era;
    QTimer m_openSoon;
    QTimer m_overdue;
    bool m_absent = false;
    State m_state = State::NoSession;
    /// The request whose answer is awaited, and the session; empty without one.
    QString m_request;
    QString m_session;
    unsigned m_lastToken = 0;
    QList<Shortcut> m_wanted;
    /// What the session was given.
    QList<Shortcut> m_given;
};

} // namespace quorvane::platform
