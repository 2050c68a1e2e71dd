#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>
#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

namespace quorvane::platform {

/// Passes messages by name between parts of the program that do not know each other.
///
/// post() calls every observer of the name on the caller's thread, in the order in which the observers were
/// added, and then returns. An observer is removed with its context object. An observer that was added twice
/// is called twice. Safe from any thread; observers may add and remove observers while they are called.
class NotificationCenter {
public:
    using Handler = std::function<void(const QVariant &object)>;

    void addObserver(const QString &name, QObject *context, Handler handler);
    void removeObservers(const QObject *context);
    void post(const QString &name, const QVariant &object = {});

private:
    struct Observer {
        std::uint64_t id;
        QString name;
        QPointer<QObject> context;
        Handler handler;
    };

    [[nodiscard]] bool stillObserves(std::uint64_t id);

    std::mutex m_mutex;
    std::uint64_t m_nextId = 0;
    std::vector<Observer> m_observers;
};

} // namespace quorvane::platform
