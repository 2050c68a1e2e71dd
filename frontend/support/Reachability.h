#pragma once

#include "platform/NetworkReachability.h"

#include <QMetaType>
#include <QString>
#include <functional>
#include <memory>

namespace quorvane {

/// Watches whether a host, an address or the network in general can be reached.
///
/// Queries read the current flags and return false, 0 or an empty text when they cannot be read. After
/// startNotifier(), every change is reported twice: the reachable or unreachable block runs on the monitor's
/// own queue (never on the main thread), and "kReachabilityChangedNotification" is posted on the main thread.
/// The object keeps itself alive while its notifier runs, so it is held by shared pointers only.
class Reachability : public std::enable_shared_from_this<Reachability> {
public:
    using Block = std::function<void(Reachability &)>;
    using Pointer = std::shared_ptr<Reachability>;

    static constexpr int notReachable = 0;
    static constexpr int reachableViaLocalNetwork = 2;

    /// Each of these returns a null pointer when the platform cannot create the target.
    [[nodiscard]] static Pointer reachabilityWithHostname(const QString &host);
    [[nodiscard]] static Pointer reachabilityWithHostName(const QString &host);
    /// IPv4 address in host byte order.
    [[nodiscard]] static Pointer reachabilityWithAddress(std::uint32_t address);
    [[nodiscard]] static Pointer reachabilityForInternetConnection();
    [[nodiscard]] static Pointer reachabilityForLocalWiFi();

    ~Reachability();
    Reachability(const Reachability &) = delete;
    Reachability &operator=(const Reachability &) = delete;

    [[nodiscard]] static bool isReachableWithFlags(std::uint32_t flags);
    [[nodiscard]] bool isReachable() const;
    [[nodiscard]] bool isReachableViaWWAN() const;
    [[nodiscard]] bool isReachableViaWiFi() const;
    [[nodiscard]] bool connectionRequired() const;
    [[nodiscard]] bool isConnectionRequired() const;
    [[nodiscard]] bool isConnectionOnDemand() const;
    [[nodiscard]] bool isInterventionRequired() const;
    [[nodiscard]] int currentReachabilityStatus() const;
    [[nodiscard]] std::uint32_t reachabilityFlags() const;
    [[nodiscard]] QString currentReachabilityString() const;
    [[nodiscard]] QString currentReachabilityFlags() const;
    [[nodiscard]] QString description() const;

    /// Starts a running notifier anew, with a new queue. False when the platform refuses; then the notifier
    /// does not run.
    bool startNotifier();
    /// Does nothing without a started notifier. The blocks must not be replaced while the notifier runs.
    void stopNotifier();
    void reachabilityChanged(std::uint32_t flags);

    bool reachableOnWWAN = true;
    Block reachableBlock;
    Block unreachableBlock;

private:
    explicit Reachability(std::unique_ptr<platform::ReachabilityTarget> target);
    static Pointer make(std::unique_ptr<platform::ReachabilityTarget> target);

    std::unique_ptr<platform::ReachabilityTarget> m_reachabilityRef;
    std::unique_ptr<platform::SerialQueue> m_reachabilitySerialQueue;
    Pointer m_reachabilityObject;
};

} // namespace quorvane

Q_DECLARE_METATYPE(std::shared_ptr<quorvane::Reachability>)
