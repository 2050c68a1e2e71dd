#pragma once

#include "platform/KeyStore.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace quorvane::fakes {

/// A key store in memory. Any thread.
class MemoryKeyStore final : public platform::KeyStore {
public:
    [[nodiscard]] std::optional<QByteArray> password(const QString &identifier) override {
        const std::lock_guard lock(m_mutex);
        const auto found = find(identifier);
        return m_failing || found == m_stored.end() ? std::nullopt : std::optional(found->password);
    }

    bool add(const Item &item) override {
        const std::lock_guard lock(m_mutex);
        if (m_failing) {
            return false;
        }
        m_stored.push_back(item);
        return true;
    }

    bool update(const Item &item) override {
        const std::lock_guard lock(m_mutex);
        const auto found = find(item.identifier);
        if (m_failing || found == m_stored.end()) {
            return false;
        }
        *found = item;
        return true;
    }

    void remove(const QString &identifier) override {
        const std::lock_guard lock(m_mutex);
        if (!m_failing) {
            std::erase_if(m_stored, [&](const Item &item) { return item.identifier == identifier; });
        }
    }

    [[nodiscard]] std::optional<QStringList> accounts(const QString &label) override {
        const std::lock_guard lock(m_mutex);
        if (m_failing) {
            return std::nullopt;
        }
        QStringList names;
        for (const Item &item : m_stored) {
            if (item.identifier == label) {
                names.append(item.account);
            }
        }
        return names;
    }

    /// Makes every call fail, as a locked or absent store does.
    void setFailing(bool fails) {
        const std::lock_guard lock(m_mutex);
        m_failing = fails;
    }

    [[nodiscard]] std::vector<Item> items() const {
        const std::lock_guard lock(m_mutex);
        return m_stored;
    }

private:
    [[nodiscard]] std::vector<Item>::iterator find(const QString &identifier) {
        return std::find_if(m_stored.begin(), m_stored.end(),
                            [&](const Item &item) { return item.identifier == identifier; });
    }

    mutable std::mutex m_mutex;
    std::vector<Item> m_stored;
    bool m_failing = false;
};

} // namespace quorvane::fakes
