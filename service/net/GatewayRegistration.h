#pragma once

#include "EtcdClient.h"

#include <functional>
#include <string>

namespace quorvane::service {

/// Keeps one key in etcd while the process is alive: the key has a lease, which ends when it is not kept.
class GatewayRegistration {
public:
    /// `client` is not owned.
    GatewayRegistration(EtcdClient &client, std::string key, std::chrono::seconds lease)
        : m_client(client), m_key(std::move(key)), m_seconds(lease) {}

    /// The value of the key from now on; "": the key is not written any more.
    void setValue(const std::string &value);
    /// Keeps the lease. Call it three times in the time of the lease.
    void keep();

    /// The key is not there although it was written.
    void writeAgain() { m_written.clear(); }

    /// Requests are not answered any more.
    void lost();
    /// Ends the lease, and so the registration, at once. `done` is called when etcd has answered; never when
    /// the connection is lost before.
    void revoke(std::function<void()> done);

    /// True when the key was ever written.
    [[nodiscard]] bool everWritten() const { return m_everWritten; }

private:
    void step();
    void grant();
    void write();

    EtcdClient &m_client;
    std::string m_key;
    std::chrono::seconds m_seconds;
    std::string m_value;
    std::string m_written; ///< with the present lease
    std::int64_t m_lease = 0;
    bool m_busy = false;
    bool m_everWritten = false;
};

} // namespace quorvane::service
