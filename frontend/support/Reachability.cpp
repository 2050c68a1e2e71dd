#include "Reachability.h"

#include "Notifications.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"

#include <QCoreApplication>
#include <QVariant>
#include <array>

namespace quorvane {

namespace flag = platform::ReachabilityFlag;

namespace {

constexpr std::uint32_t linkLocalNetwork = 0xA9FE0000; // 169.254.0.0

platform::NetworkReachability &service() {
    return *platform::Platform::current().reachability;
}

} // namespace

Reachability::Reachability(std::unique_ptr<platform::ReachabilityTarget> target)
    : m_reachabilityRef(std::move(target)) {}

Reachability::Pointer Reachability::make(std::unique_ptr<platform::ReachabilityTarget> target) {
    if (!target) {
        return nullptr;
    }

    struct Constructible final : Reachability {
        explicit Constructible(std::unique_ptr<platform::ReachabilityTarget> ref)
            : Reachability(std::move(ref)) {}
    };

    return std::make_shared<Constructible>(std::move(target));
}

Reachability::~Reachability() {
    stopNotifier();
}

Reachability::Pointer Reachability::reachabilityWithHostname(const QString &host) {
    return make(service().targetWithName(host));
}

Reachability::Pointer Reachability::reachabilityWithHostName(const QString &host) {
    return reachabilityWithHostname(host);
}

Reachability::Pointer Reachability::reachabilityWithAddress(std::uint32_t address) {
    return make(service().targetWithAddress(address));
}

Reachability::Pointer Reachability::reachabilityForInternetConnection() {
    return reachabilityWithAddress(0);
}

Reachability::Pointer Reachability::reachabilityForLocalWiFi() {
    return reachabilityWithAddress(linkLocalNetwork);
}

bool Reachability::isReachableWithFlags(std::uint32_t flags) {
    constexpr std::uint32_t unfinished = flag::transientConnection | flag::connectionRequired;
    return (flags & flag::reachable) != 0 && (flags & unfinished) != unfinished;
}

bool Reachability::isReachable() const {
    const auto flags = m_reachabilityRef->flags();
    return flags && isReachableWithFlags(*flags);
}

bool Reachability::isReachableViaWWAN() const {
    return false; // desktops have no cellular flag
}

bool Reachability::isReachableViaWiFi() const {
    return (reachabilityFlags() & flag::reachable) != 0;
}

bool Reachability::connectionRequired() const {
    return (reachabilityFlags() & flag::connectionRequired) != 0;
}

bool Reachability::isConnectionRequired() const {
    return connectionRequired();
}

bool Reachability::isConnectionOnDemand() const {
    const std::uint32_t flags = reachabilityFlags();
    return (flags & flag::connectionRequired) != 0 &&
           (flags & (flag::connectionOnTraffic | flag::connectionOnDemand)) != 0;
}

bool Reachability::isInterventionRequired() const {
    constexpr std::uint32_t both = flag::connectionRequired | flag::interventionRequired;
    return (reachabilityFlags() & both) == both;
}

int Reachability::currentReachabilityStatus() const {
    if (isReachable() && isReachableViaWiFi()) {
        return reachableViaLocalNetwork;
    }
    return notReachable;
}

std::uint32_t Reachability::reachabilityFlags() const {
    return m_reachabilityRef->flags().value_or(0);
}

QString Reachability::currentReachabilityString() const {
    const int status = currentReachabilityStatus();
    // The status is compared with reachableOnWWAN as a number. The status is never 1, so "Cellular" requires
    // reachableOnWWAN to be false and the network not to be reachable.
    if (status == static_cast<int>(reachableOnWWAN)) {
        return QCoreApplication::translate("Reachability", "Cellular");
    }
    if (status == reachableViaLocalNetwork) {
        return QCoreApplication::translate("Reachability", "WiFi");
    }
    return QCoreApplication::translate("Reachability", "No Connection");
}

QString Reachability::currentReachabilityFlags() const {
    struct Letter {
        std::uint32_t bit;
        char16_t letter;
    };

    static constexpr std::array<Letter, 8> letters{{{flag::reachable, u'R'},
                                                    {flag::connectionRequired, u'c'},
                                                    {flag::transientConnection, u't'},
                                                    {flag::interventionRequired, u'i'},
                                                    {flag::connectionOnTraffic, u'C'},
                                                    {flag::connectionOnDemand, u'D'},
                                                    {flag::isLocalAddress, u'l'},
                                                    {flag::isDirect, u'd'}}};
    const std::uint32_t flags = reachabilityFlags();
    QString text = QStringLiteral("X");
    for (const Letter &entry : letters) {
        text += (flags & entry.bit) != 0 ? QChar(entry.letter) : QChar(u'-');
        if (entry.bit == flag::reachable) {
            text += u' ';
        }
    }
    return text;
}

QString Reachability::description() const {
    return QStringLiteral("<Reachability: 0x%1>").arg(reinterpret_cast<quintptr>(this), 0, 16);
}

bool Reachability::startNotifier() {
    const Pointer self = shared_from_this();
    if (m_reachabilityObject) {
        stopNotifier(); // the target must not deliver on the queue that is replaced
    }
    m_reachabilityObject = self;
    m_reachabilitySerialQueue = service().makeQueue(QStringLiteral("com.qrvp.reachability"));
    if (!m_reachabilitySerialQueue) {
        m_reachabilityObject.reset();
        return false;
    }
    const bool registered =
        m_reachabilityRef->setCallback([this](std::uint32_t flags) { reachabilityChanged(flags); });
    if (registered) {
        if (m_reachabilityRef->setQueue(m_reachabilitySerialQueue.get())) {
            return true;
        }
        m_reachabilityRef->setCallback({});
    }
    m_reachabilitySerialQueue.reset();
    m_reachabilityObject.reset();
    return false;
}

void Reachability::stopNotifier() {
    // This may be the last reference to the object, which must outlive this call.
    const Pointer keptUntilReturn = std::move(m_reachabilityObject);
    m_reachabilityObject.reset();
    if (m_reachabilityRef) {
        m_reachabilityRef->setCallback({});
        m_reachabilityRef->setQueue(nullptr);
    }
    m_reachabilitySerialQueue.reset();
}

void Reachability::reachabilityChanged(std::uint32_t flags) {
    const Block &block = isReachableWithFlags(flags) ? reachableBlock : unreachableBlock;
    if (block) {
        block(*this);
    }
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [self = weak_from_this()] {
            if (const Pointer monitor = self.lock()) {
                platform::Platform::current().notifications->post(Notifications::reachabilityChanged,
                                                                  QVariant::fromValue(monitor));
            }
        },
        Qt::QueuedConnection);
}

} // namespace quorvane
