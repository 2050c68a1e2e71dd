#pragma once

#include "platform/NetworkReachability.h"
#include "platform/linux/network/ReachabilityDelivery.h"
#include "platform/linux/network/ThreadQueue.h"

#include <QHash>

#include <mutex>
#include <vector>

namespace quorvane::fakes {

/// A queue that runs the work at once, on the caller's thread.
class InlineQueue final : public platform::SerialQueue {
public:
    void async(std::function<void()> work) override { work(); }
};

/// Reachability whose flags the test sets. Any thread.
///
/// Targets are identified by key: the host name, or addressKey() of an address. A target whose flags were
/// never set has ReachabilityFlag::reachable.
class FakeReachability final : public platform::NetworkReachability {
public:
    enum class Queues { Inline, Threaded };

    explicit FakeReachability(Queues kind = Queues::Threaded)
        : m_queues(kind), m_shared(std::make_shared<Shared>()) {}

    [[nodiscard]] static QString addressKey(std::uint32_t address) {
        return QStringLiteral("%1.%2.%3.%4")
            .arg(address >> 24)
            .arg((address >> 16) & 255U)
            .arg((address >> 8) & 255U)
            .arg(address & 255U);
    }

    [[nodiscard]] std::unique_ptr<platform::ReachabilityTarget> targetWithName(const QString &host) override {
        return host.isEmpty() ? nullptr : makeTarget(host);
    }

    [[nodiscard]] std::unique_ptr<platform::ReachabilityTarget>
    targetWithAddress(std::uint32_t address) override {
        return makeTarget(addressKey(address));
    }

    [[nodiscard]] std::unique_ptr<platform::SerialQueue> makeQueue(const QString &name) override {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->queueNames.append(name);
        if (m_shared->queuesFail) {
            return nullptr;
        }
        if (m_queues == Queues::Inline) {
            return std::make_unique<InlineQueue>();
        }
        return std::make_unique<platform::ThreadQueue>(name);
    }

    /// Sets the flags of the key and delivers them to every existing target of that key.
    void setFlags(const QString &key, std::uint32_t flags) {
        std::vector<Target *> live;
        const std::lock_guard delivering(m_shared->delivering);
        {
            const std::lock_guard lock(m_shared->mutex);
            m_shared->flags.insert(key, flags);
            live = m_shared->targets;
        }
        for (Target *target : live) {
            if (m_shared->exists(target) && target->key == key) {
                target->delivery.report(flags);
            }
        }
    }

    /// Makes the flags of the key unreadable.
    void setUnreadable(const QString &key) {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->flags.insert(key, std::nullopt);
    }

    void setQueuesFail(bool fail) {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->queuesFail = fail;
    }

    void setTargetsFail(bool fail) {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->targetsFail = fail;
    }

    void setCallbacksFail(bool fail) {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->callbacksFail = fail;
    }

    void setSettingQueuesFails(bool fail) {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->settingQueuesFails = fail;
    }

    /// Keys of the existing targets.
    [[nodiscard]] QStringList liveTargets() const {
        const std::lock_guard lock(m_shared->mutex);
        QStringList keys;
        for (const Target *target : m_shared->targets) {
            keys.append(target->key);
        }
        return keys;
    }

    /// Names of the created queues, in order.
    [[nodiscard]] QStringList queueNames() const {
        const std::lock_guard lock(m_shared->mutex);
        return m_shared->queueNames;
    }

private:
    class Target;

    struct Shared {
        [[nodiscard]] bool exists(const Target *target) {
            const std::lock_guard lock(mutex);
            return std::find(targets.begin(), targets.end(), target) != targets.end();
        }

        // Held while states are delivered, so that no target is destroyed meanwhile on another thread;
        // recursive because an inline callback may destroy its own target.
        std::recursive_mutex delivering;
        std::mutex mutex;
        QHash<QString, std::optional<std::uint32_t>> flags;
        std::vector<Target *> targets;
        QStringList queueNames;
        bool queuesFail = false;
        bool targetsFail = false;
        bool callbacksFail = false;
        bool settingQueuesFails = false;
    };

    class Target final : public platform::ReachabilityTarget {
    public:
        Target(std::shared_ptr<Shared> state, QString name)
            : key(std::move(name)), m_shared(std::move(state)) {
            const std::lock_guard lock(m_shared->mutex);
            m_shared->targets.push_back(this);
        }

        ~Target() override {
            const std::lock_guard delivering(m_shared->delivering);
            const std::lock_guard lock(m_shared->mutex);
            std::erase(m_shared->targets, this);
        }

        Target(const Target &) = delete;
        Target &operator=(const Target &) = delete;

        [[nodiscard]] std::optional<std::uint32_t> flags() override {
            const std::lock_guard lock(m_shared->mutex);
            return m_shared->flags.value(key, platform::ReachabilityFlag::reachable);
        }

        bool setCallback(Callback callback) override {
            const bool unregisters = !callback;
            {
                const std::lock_guard lock(m_shared->mutex);
                if (m_shared->callbacksFail && !unregisters) {
                    return false;
                }
            }
            delivery.setCallback(std::move(callback));
            return true;
        }

        bool setQueue(platform::SerialQueue *queue) override {
            {
                const std::lock_guard lock(m_shared->mutex);
                if (m_shared->settingQueuesFails && queue != nullptr) {
                    return false;
                }
            }
            delivery.setQueue(queue);
            const auto present = flags();
            if (queue != nullptr && present) {
                delivery.report(*present);
            }
            return true;
        }

        const QString key;
        platform::ReachabilityDelivery delivery;

    private:
        std::shared_ptr<Shared> m_shared;
    };

    [[nodiscard]] std::unique_ptr<Target> makeTarget(const QString &key) {
        {
            const std::lock_guard lock(m_shared->mutex);
            if (m_shared->targetsFail) {
                return nullptr;
            }
        }
        return std::make_unique<Target>(m_shared, key);
    }

    const Queues m_queues;
    std::shared_ptr<Shared> m_shared;
};

} // namespace quorvane::fakes
