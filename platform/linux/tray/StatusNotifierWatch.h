#pragma once

#include <QObject>

#include <functional>

class QDBusMessage;
class QDBusPendingCall;

namespace quorvane::platform {

/// Knows whether the session's status notifier watcher has a host. Main thread.
///
/// The first look waits a fraction of a second at most; from then on nothing is waited for, so a watcher
/// that hangs harms nobody.
class StatusNotifierWatch final : public QObject {
    Q_OBJECT

public:
    explicit StatusNotifierWatch(QObject *parent = nullptr);

    [[nodiscard]] bool hostRegistered() const { return m_registered; }

    void setChangeHandler(std::function<void()> changed) { m_changed = std::move(changed); }

private Q_SLOTS:
    void look();

private:
    void gone();
    void ask(const QDBusMessage &question, const std::function<void(const QDBusMessage &)> &answered);
    [[nodiscard]] bool firstLook() const;
    void become(bool host);

    bool m_registered = false;
    /// Answers of an earlier look are void.
    quint32 m_looks = 0;
    std::function<void()> m_changed;
};

} // namespace quorvane::platform
