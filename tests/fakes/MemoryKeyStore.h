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
        const std::lock_guard lock(mutex);
        const auto found = find(identifier);
        return failing || found == stored.end() ? std::nullopt : std::optional(found->password);
    }

    bool add(const Item &item) override {
        const std::lock_guard lock(mutex);
        if (failing) {
            return false;
        }
        stored.push_back(item);
        return true;
    }

    bool update(const Item &item) override {
        const std::lock_guard lock(mutex);
        const auto found = find(item.identifier);
        if (failing || found == stored.end()) {
            return false;
        }
        *found = item;
        return true;
    }

    void remove(const QString &identifier) override {
        const std::lock_guard lock(mutex);
        if (!failing) {
            std::erase_if(stored, [&](const Item &item) { return item.identifier == identifier; });
        }
    }

    [[nodiscard]] std::optional<QStringList> accounts(const QString &label) override {
        const std::lock_guard lock(mutex);
        if (failing) {
            return std::nullopt;
        }
        QStringList names;
        for (const Item &item : stored) {
            if (item.identifier == label) {
                names.append(item.account);
            }
        }
        return names;
    }

    /// Makes every call fail, as a locked or absent store does.
    void setFailing(bool fails) {
        const std::lock_guard lock(mutex);
        failing = fails;
    }

    [[nodiscard]] std::vector<Item> items() const {
        const std::lock_guard lock(mutex);
        return stored;
    }

private:
    [[nodiscard]] std::vector<Item>::iterator find(const QString &identifier) {
        return std::find_if(stored.begin(), stored.end(),
                            [&](const Item &item) { return item.identifier == identifier; });
    }

    mutable std::mutex mutex;
    std::vector<Item> stored;
    bool failing = false;
};

} // namespace quorvane::fakes
