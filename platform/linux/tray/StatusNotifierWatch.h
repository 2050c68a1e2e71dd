#pragma once

#include <QObject>

#include <functional>

class QDBusMessage;
class QDBusPendingCall;

namespace quorvane::platform {

/// Reports whether the session's status notifier watcher has a host. Main thread.
///
/// The first query waits a fraction of a second at most; later ones do not wait, so a watcher that hangs
/// blocks nothing.
class StatusNotifierWatch final : public QObject {
    Q_OBJECT

public:
    explicit StatusNotifierWatch(QObject *parent = nullptr);

    [[nodiscard]] bool hostRegistered() const { return m_registered; }

    void setChangeHandler(std::function<void()> changed) { m_changed = std::move(changed); }

private Q_SLOTS:
    void look();

private:
    void watcherGone();
    void sendQuery(const QDBusMessage &query, const std::function<void(const QDBusMessage &)> &answered);
    [[nodiscard]] bool firstLook() const;
    void setRegistered(bool registered);

    bool m_registered = false;
    /// Number of the present look; replies to an earlier one are ignored.
    quint32 m_looks = 0;
    std::function<void()> m_changed;
};

} // namespace quorvane::platform
