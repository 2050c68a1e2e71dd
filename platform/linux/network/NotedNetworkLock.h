#pragma once

#include "KeptAddresses.h"
#include "platform/NetworkLock.h"
#include "platform/ServiceConfiguration.h"

#include <QByteArrayList>
#include <functional>
#include <memory>

class QFileSystemWatcher;

namespace quorvane::platform {

/// NetworkLock by the note that Resources/networklock leaves under /run while the lock is closed. The note
/// belongs to root; lines of it that have another form are ignored.
class NotedNetworkLock final : public NetworkLock {
public:
    /// Finds the IPv4 addresses of a host, as numbers; see lookUpHost().
    using LookUp = std::function<QByteArrayList(const QByteArray &host)>;

    /// If the lock is closed, the addresses in its note are the kept ones.
    NotedNetworkLock(const QString &note, const ServiceConfiguration &service,
                     std::shared_ptr<KeptAddresses> addresses, LookUp lookUp = {});
    ~NotedNetworkLock() override;
    NotedNetworkLock(const NotedNetworkLock &) = delete;
    NotedNetworkLock &operator=(const NotedNetworkLock &) = delete;

    [[nodiscard]] bool isClosed() const override;
    void setObserver(std::function<void()> changed) override;
    void keepServiceAddresses() override;
    [[nodiscard]] QStringList serviceAddresses() const override;

private:
    void readNote();

    const QString m_note;
    QByteArray m_apiHost; ///< empty when it is a numeric IPv6 address
    QByteArray m_apiPort;
    const std::shared_ptr<KeptAddresses> m_addresses;
    const LookUp m_lookUp;
    std::unique_ptr<QFileSystemWatcher> m_watcher;
};

} // namespace quorvane::platform
