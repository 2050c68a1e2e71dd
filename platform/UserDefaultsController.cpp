#include "UserDefaultsController.h"

#include "PreferencesStore.h"

#include <utility>

namespace quorvane::platform {

UserDefaultsController::UserDefaultsController(PreferencesStore &target) : store(target) {}

void UserDefaultsController::setAppliesImmediately(bool immediately) {
    immediate = immediately;
}

void UserDefaultsController::setValue(const QString &key, const QVariant &value) {
    if (immediate) {
        pending.remove(key);
        store.setValue(key, value);
    } else {
        pending.insert(key, value);
    }
}

QVariant UserDefaultsController::value(const QString &key) const {
    const auto edit = pending.constFind(key);
    return edit != pending.constEnd() ? *edit : store.value(key);
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
    const QVariantMap edits = std::exchange(pending, {});
    if (!edits.isEmpty()) {
        store.setValues(edits);
    }
    store.synchronize();
}

void UserDefaultsController::revert() {
    pending.clear();
}

} // namespace quorvane::platform
