#include "SettingsDefaults.h"

#include "HotKeys.h"
#include "platform/Platform.h"
#include "platform/PreferencesStore.h"
#include "platform/UserDefaultsController.h"

#include <QVariantMap>

namespace quorvane {

namespace {

constexpr int defaultInterval = 10;

void defaultInteger(const QString &key, int value, QVariantMap &missing) {
    if (platform::Platform::current().preferences->integer(key) == 0) {
        missing.insert(key, value);
    }
}

} // namespace

void SettingsDefaults::initialize() {
    QVariantMap missing;
    for (const HotKeys::Action action : HotKeys::actions) {
        defaultInteger(HotKeys::preferenceKey(action), HotKeyTable::none, missing);
    }
    defaultInteger(changeIpInterval(), defaultInterval, missing);
    auto &services = platform::Platform::current();
    if (services.preferences->string(userAgent()).isNull()) {
        missing.insert(userAgent(), QStringLiteral(""));
    }
    defaultInteger(hideMyReferrerHeader(), 0, missing);
    services.preferences->setValues(missing); // one change of the file, because each one waits for the disk
    services.userDefaults->save();
}

} // namespace quorvane
