#include "UserDefaultsController.h"

#include "PreferencesStore.h"

#include <utility>

namespace platform {

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

void UserDefaultsController::save() {
    const QVariantMap edits = std::exchange(pending, {});
    if (!edits.isEmpty())
        store.setValues(edits);
    store.synchronize();
}

void UserDefaultsController::revert() {
    pending.clear();
}

} // namespace platform
