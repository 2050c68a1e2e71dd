#pragma once

#include "platform/PreferencesStore.h"

#include <functional>
#include <mutex>

namespace quorvane::fakes {

/// Preferences in memory. Any thread.
class MemoryPreferences final : public platform::PreferencesStore {
public:
    [[nodiscard]] QVariant value(const QString &key) const override {
        const std::lock_guard lock(m_mutex);
        return m_table.value(key);
    }

    void setValues(const QVariantMap &values) override {
        if (m_changeHook) {
            m_changeHook(values);
        }
        const std::lock_guard lock(m_mutex);
        ++m_changeCount;
        m_isUnwritten = false;
        insert(values);
    }

    void setValuesUnwritten(const QVariantMap &values) override {
        const std::lock_guard lock(m_mutex);
        m_isUnwritten = m_isUnwritten || !values.isEmpty();
        insert(values);
    }

    bool synchronize() override {
        const std::lock_guard lock(m_mutex);
        ++m_synchronizeCount;
        m_isUnwritten = m_isUnwritten && !m_synchronizeSucceeds;
        return m_synchronizeSucceeds;
    }

    /// Whether there are values that were set without being stored.
    [[nodiscard]] bool isUnwritten() const {
        const std::lock_guard lock(m_mutex);
        return m_isUnwritten;
    }

    /// Called with every change, before it is made.
    void setChangeHook(std::function<void(const QVariantMap &)> hook) { m_changeHook = std::move(hook); }

    [[nodiscard]] QString filePath() const override {
        const std::lock_guard lock(m_mutex);
        return m_path;
    }

    /// All stored values.
    [[nodiscard]] QVariantMap all() const {
        const std::lock_guard lock(m_mutex);
        return m_table;
    }

    [[nodiscard]] int changes() const {
        const std::lock_guard lock(m_mutex);
        return m_changeCount;
    }

    [[nodiscard]] int synchronizations() const {
        const std::lock_guard lock(m_mutex);
        return m_synchronizeCount;
    }

    void setSynchronizeSucceeds(bool succeeds) {
        const std::lock_guard lock(m_mutex);
        m_synchronizeSucceeds = succeeds;
    }

    void setFilePath(const QString &newPath) {
        const std::lock_guard lock(m_mutex);
        m_path = newPath;
    }

private:
    void insert(const QVariantMap &values) {
        for (auto entry = values.begin(); entry != values.end(); ++entry) {
            if (entry->isValid()) {
                m_table.insert(entry.key(), canonical(*entry));
            } else {
                m_table.remove(entry.key());
            }
        }
    }

    std::function<void(const QVariantMap &)> m_changeHook;
    mutable std::mutex m_mutex;
    QVariantMap m_table;
    QString m_path;
    int m_changeCount = 0;
    int m_synchronizeCount = 0;
    bool m_synchronizeSucceeds = true;
    bool m_isUnwritten = false;
};

} // namespace quorvane::fakes
