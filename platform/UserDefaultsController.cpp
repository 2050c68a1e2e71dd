#include "UserDefaultsController.h"

#include "PreferencesStore.h"

#include <utility>

namespace quorvane::platform {

UserDefaultsController::UserDefaultsController(PreferencesStore &store) : m_store(store) {}

void UserDefaultsController::setAppliesImmediately(bool immediate) {
    m_immediate = immediate;
}

void UserDefaultsController::setValue(const QString &key, const QVariant &value) {
    if (m_immediate) {
        m_pending.remove(key);
        m_store.setValue(key, value);
    } else {
        m_pending.insert(key, value);
    }
}

QVariant UserDefaultsController::value(const QString &key) const {
    const auto edit = m_pending.constFind(key);
    return edit != m_pending.constEnd() ? *edit : m_store.value(key);
}

qint64 UserDefaultsController::integer(const QString &key) const {
    return PreferencesStore::integerOf(value(key));
}

bool UserDefaultsController::boolean(const QString &key) const {
    return PreferencesStore::booleanOf(value(key));
}

QString UserDefaultsController::string(const QString &key) const {
    return PreferencesStore::stringOf(value(key));
}

void UserDefaultsController::save() {
    const QVariantMap edits = std::exchange(m_pending, {});
    if (!edits.isEmpty()) {
        m_store.setValues(edits);
    }
    m_store.synchronize();
}

void UserDefaultsController::revert() {
    m_pending.clear();
}

} // namespace quorvane::platform
