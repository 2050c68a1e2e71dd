#include "Preferences.h"

#include "platform/Platform.h"
#include "platform/PreferencesStore.h"
#include "platform/UserDefaultsController.h"

#include <QVariantMap>

namespace quorvane {

using platform::PreferenceType;

namespace {

platform::PreferencesStore &stored() {
    return *platform::Platform::current().preferences;
}

platform::UserDefaultsController &edits() {
    return *platform::Platform::current().userDefaults;
}

/// The preference's key, for an access with the given type.
QString keyFor(Preference preference, [[maybe_unused]] PreferenceType type) {
    Q_ASSERT_X(platform::entryOf(preference).type == type, "Preferences", platform::entryOf(preference).key);
    return platform::keyOf(preference);
}

PreferenceType typeOf(const QVariant &value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        return PreferenceType::Boolean;
    case QMetaType::QString:
        return PreferenceType::Text;
    default:
        return PreferenceType::Integer;
    }
}

QString keyForWriting(Preference preference, const QVariant &value) {
    return value.isValid() ? keyFor(preference, typeOf(value)) : QString(platform::keyOf(preference));
}

/// The value to store at a start, or an invalid one when nothing is missing.
QVariant missingValue(const platform::PreferenceEntry &entry) {
    const QLatin1String key(entry.key);
    if (const int *number = std::get_if<int>(&entry.startValue)) {
        return stored().integer(key) == 0 ? QVariant(*number) : QVariant();
    }
    if (const auto *text = std::get_if<const char *>(&entry.startValue)) {
        return stored().string(key).isNull() ? QVariant(QString::fromUtf8(*text)) : QVariant();
    }
    return {};
}

} // namespace

qint64 Preferences::integer(Preference preference) {
    return stored().integer(keyFor(preference, PreferenceType::Integer));
}

bool Preferences::boolean(Preference preference) {
    return stored().boolean(keyFor(preference, PreferenceType::Boolean));
}

QString Preferences::text(Preference preference) {
    return stored().string(keyFor(preference, PreferenceType::Text));
}

void Preferences::store(std::initializer_list<Value> values) {
    QVariantMap change; // one change of the file, because each one waits for the disk
    for (const auto &[preference, value] : values) {
        change.insert(keyForWriting(preference, value), value);
    }
    stored().setValues(change);
}

void Preferences::synchronize() {
    stored().synchronize();
}

qint64 Preferences::editedInteger(Preference preference) {
    return edits().integer(keyFor(preference, PreferenceType::Integer));
}

bool Preferences::editedBoolean(Preference preference) {
    return edits().boolean(keyFor(preference, PreferenceType::Boolean));
}

QString Preferences::editedText(Preference preference) {
    return edits().string(keyFor(preference, PreferenceType::Text));
}

void Preferences::edit(Preference preference, const QVariant &value) {
    edits().setValue(keyForWriting(preference, value), value);
}

void Preferences::choose(std::initializer_list<Value> values) {
    // As edits, because the settings window may hold older edits of the same preferences.
    for (const auto &[preference, value] : values) {
        edit(preference, value);
    }
    save();
}

void Preferences::save() {
    edits().save();
}

void Preferences::revert() {
    edits().revert();
}

void Preferences::holdEdits() {
    edits().setAppliesImmediately(false);
}

void Preferences::setStartValues() {
    QVariantMap missing;
    for (const platform::PreferenceEntry &entry : platform::preferenceTable) {
        if (const QVariant value = missingValue(entry); value.isValid()) {
            missing.insert(QLatin1String(entry.key), value);
        }
    }
    stored().setValuesUnwritten(missing);
}

void Preferences::storeStartValues() {
    setStartValues();
    save();
}

} // namespace quorvane
