#include "NetlinkReachability.h"

#include "HostResolver.h"
#include "NetworkChanges.h"
#include "ReachabilityDelivery.h"
#include "RouteTable.h"
#include "ThreadQueue.h"
#include "common/FileDescriptor.h"

#include <QUrl>

#include <array>
#include <atomic>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <utility>

namespace quorvane::platform {

namespace {

constexpr std::uint32_t anyAddress = 0;
constexpr std::uint32_t linkLocalNetwork = 0xA9FE0000;
constexpr int linkLocalPrefix = 16;
/// Milliseconds until a name that could not be resolved is looked up again if the network does not change.
constexpr int retryMilliseconds = 15000;

std::optional<std::uint32_t> flagsOfDefaultRoute() {
    const auto present = RouteTable::hasDefaultRoute();
    if (!present) {
        return std::nullopt;
    }
    return *present ? ReachabilityFlag::reachable : 0U;
}

std::optional<std::uint32_t> flagsOfLinkLocal() {
    const auto onLink = RouteTable::isOnLink(linkLocalNetwork, linkLocalPrefix);
    if (!onLink) {
        return std::nullopt;
    }
    return *onLink ? ReachabilityFlag::reachable | ReachabilityFlag::isDirect : 0U;
}

std::optional<std::uint32_t> flagsOfAddress(std::uint32_t address) {
    if (address == anyAddress) {
        return flagsOfDefaultRoute();
    }
    if (address == linkLocalNetwork) {
        return flagsOfLinkLocal();
    }
    const auto route = RouteTable::routeTo(address);
    if (!route) {
        return std::nullopt;
    }
    if (!route->exists) {
        return 0U;
    }
    return ReachabilityFlag::reachable | (route->isLocal ? ReachabilityFlag::isLocalAddress : 0U) |
           (route->isDirect ? ReachabilityFlag::isDirect : 0U);
}

/// The data that a target shares with its threads.
struct Watch {
    explicit Watch(const QByteArray &host) : resolver(host), wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    [[nodiscard]] std::optional<std::uint32_t> flags() const {
        const auto address = resolver.address();
        return flagsOfAddress(address.value_or(anyAddress));
    }

    void wakeUp() const { ::eventfd_write(wake.get(), 1); }

    HostResolver resolver;
    ReachabilityDelivery delivery;
    FileDescriptor wake;
    NetworkChanges changes;
    std::atomic<bool> ending = false;
};

void resolve(const std::shared_ptr<Watch> &watch) {
    const std::weak_ptr<Watch> listener = watch;
    watch->resolver.refresh([listener] {
        if (const auto live = listener.lock()) {
            live->wakeUp();
        }
    });
}

/// The watching thread: reads the state, reports it and waits for changes.
void run(const std::shared_ptr<Watch> &watch) {
    resolve(watch);
    while (!watch->ending) {
        const auto flags = watch->flags();
        if (flags) {
            watch->delivery.report(*flags);
        }
        std::array<pollfd, 2> watched{
            {{watch->changes.descriptor(), POLLIN, 0}, {watch->wake.get(), POLLIN, 0}}};
        const bool resolved = watch->resolver.address().has_value();
        const int ready = ::poll(watched.data(), watched.size(), resolved ? -1 : retryMilliseconds);
        eventfd_t count = 0;
        if (watched[1].revents != 0) {
            ::eventfd_read(watch->wake.get(), &count);
        }
        if (watched[0].revents != 0) {
            watch->changes.clear();
        }
        if (ready == 0 || watched[0].revents != 0) {
            resolve(watch);
        }
    }
}

class NetlinkTarget final : public ReachabilityTarget {
public:
    explicit NetlinkTarget(const QByteArray &name) : m_watch(std::make_shared<Watch>(name)) {
        resolve(m_watch);
    }

    ~NetlinkTarget() override { stop(); }

    NetlinkTarget(const NetlinkTarget &) = delete;
    NetlinkTarget &operator=(const NetlinkTarget &) = delete;

    [[nodiscard]] std::optional<std::uint32_t> flags() override { return m_watch->flags(); }

    bool setCallback(Callback callback) override {
        m_watch->delivery.setCallback(std::move(callback));
        return true;
    }

    bool setQueue(SerialQueue *queue) override {
        stop();
        if (queue == nullptr) {
            return true;
        }
        // A callback may stop the delivery before this call has returned.
        const std::lock_guard lock(m_mutex);
        m_watch->ending = false;
        if (!m_watch->wake.isOpen() || !m_watch->changes.open()) {
            return false;
        }
        m_watch->delivery.setQueue(queue);
        try {
            m_thread = std::thread([shared = m_watch] { run(shared); });
        } catch (const std::system_error &) {
            m_watch->delivery.setQueue(nullptr);
            return false;
        }
        return true;
    }

private:
    /// Ends the delivery, then the watching thread.
    void stop() {
        // Waits for a running callback, which may itself be in this function: therefore without the lock.
        m_watch->delivery.setQueue(nullptr);
        std::thread ended;
        {
            const std::lock_guard lock(m_mutex);
            ended.swap(m_thread);
        }
        if (!ended.joinable()) {
            return;
        }
        m_watch->ending = true;
        m_watch->wakeUp();
        ended.join();
    }

    /// Guards the thread.
    std::mutex m_mutex;
    std::shared_ptr<Watch> m_watch;
    std::thread m_thread;
};

} // namespace

std::unique_ptr<ReachabilityTarget> NetlinkReachability::targetWithName(const QString &host) {
    const QByteArray name = QUrl::toAce(host.trimmed());
    return name.isEmpty() ? nullptr : std::make_unique<NetlinkTarget>(name);
}

std::unique_ptr<ReachabilityTarget> NetlinkReachability::targetWithAddress(std::uint32_t address) {
    const QByteArray text =
        QByteArray::number(address >> 24U) + '.' + QByteArray::number((address >> 16U) & 255U) + '.' +
        QByteArray::number((address >> 8U) & 255U) + '.' + QByteArray::number(address & 255U);
    return std::make_unique<NetlinkTarget>(text);
}

std::unique_ptr<SerialQueue> NetlinkReachability::makeQueue(const QString &name) {
    try {
        return std::make_unique<ThreadQueue>(name);
    } catch (const std::system_error &) {
        return nullptr;
    }
}

} // namespace quorvane::platform
