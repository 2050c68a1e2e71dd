#include "NotificationCenter.h"

#include <algorithm>

namespace quorvane::platform {

void NotificationCenter::addObserver(const QString &name, QObject *context, Handler handler) {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_observers, [](const Observer &observer) { return observer.context.isNull(); });
    m_observers.push_back({m_nextId++, name, context, std::move(handler)});
}

void NotificationCenter::removeObservers(const QObject *context) {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_observers,
                  [context](const Observer &observer) { return observer.context.data() == context; });
}

void NotificationCenter::post(const QString &name, const QVariant &object) {
    // Called outside the lock, from a copy: a handler may add and remove observers. One that another
    // handler of the same post removed is passed over.
    std::vector<Observer> due;
    {
        const std::lock_guard lock(m_mutex);
        std::copy_if(m_observers.begin(), m_observers.end(), std::back_inserter(due),
                     [&name](const Observer &observer) { return observer.name == name; });
    }
    for (const Observer &observer : due) {
        if (stillObserves(observer.id)) {
            observer.handler(object);
        }
    }
}

bool NotificationCenter::stillObserves(std::uint64_t id) {
    const std::lock_guard lock(m_mutex);
    return std::any_of(m_observers.begin(), m_observers.end(), [id](const Observer &observer) {
        return observer.id == id && !observer.context.isNull();
    });
}

} // namespace quorvane::platform
