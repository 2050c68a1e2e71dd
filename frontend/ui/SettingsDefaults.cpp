#include "SettingsDefaults.h"

#include "HotKeys.h"
#include "platform/Platform.h"
#include "platform/PreferencesStore.h"
#include "platform/UserDefaultsController.h"

namespace {

constexpr int defaultInterval = 10;

void defaultInteger(const QString &key, int value) {
    auto &preferences = *platform::Platform::current().preferences;
    if (preferences.integer(key) == 0) {
        preferences.setValue(key, value);
    }
}

} // namespace

void SettingsDefaults::initialize() {
    for (const HotKeys::Action action : HotKeys::actions) {
        defaultInteger(HotKeys::preferenceKey(action), HotKeyTable::none);
    }
    defaultInteger(changeIpInterval(), defaultInterval);
    auto &services = platform::Platform::current();
    if (services.preferences->string(userAgent()).isNull()) {
        services.preferences->setValue(userAgent(), QStringLiteral(""));
    }
    defaultInteger(hideMyReferrerHeader(), 0);
    services.userDefaults->save();
}
