#pragma once

#include "platform/PreferencesStore.h"

#include <mutex>

namespace quorvane::fakes {

/// Preferences that live in memory. Any thread.
class MemoryPreferences final : public platform::PreferencesStore {
public:
    [[nodiscard]] QVariant value(const QString &key) const override {
        const std::lock_guard lock(mutex);
        return table.value(key);
    }

    void setValues(const QVariantMap &values) override {
        const std::lock_guard lock(mutex);
        ++changeCount;
        for (auto entry = values.begin(); entry != values.end(); ++entry) {
            if (entry->isValid()) {
                table.insert(entry.key(), canonical(*entry));
            } else {
                table.remove(entry.key());
            }
        }
    }

    bool synchronize() override {
        const std::lock_guard lock(mutex);
        ++synchronizeCount;
        return synchronizeSucceeds;
    }

    [[nodiscard]] QString filePath() const override {
        const std::lock_guard lock(mutex);
        return path;
    }

    /// Everything stored.
    [[nodiscard]] QVariantMap all() const {
        const std::lock_guard lock(mutex);
        return table;
    }

    [[nodiscard]] int changes() const {
        const std::lock_guard lock(mutex);
        return changeCount;
    }

    [[nodiscard]] int synchronizations() const {
        const std::lock_guard lock(mutex);
        return synchronizeCount;
    }

    void setSynchronizeSucceeds(bool succeeds) {
        const std::lock_guard lock(mutex);
        synchronizeSucceeds = succeeds;
    }

    void setFilePath(const QString &newPath) {
        const std::lock_guard lock(mutex);
        path = newPath;
    }

private:
    mutable std::mutex mutex;
    QVariantMap table;
    QString path;
    int changeCount = 0;
    int synchronizeCount = 0;
    bool synchronizeSucceeds = true;
};

} // namespace quorvane::fakes
