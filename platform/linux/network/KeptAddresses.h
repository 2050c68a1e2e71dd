#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <map>
#include <mutex>

namespace quorvane::platform {

/// Numeric IPv4 addresses of hosts, for the time in which no name can be looked up. Any thread.
class KeptAddresses {
public:
    [[nodiscard]] QByteArrayList find(const QByteArray &host) const {
        const std::lock_guard lock(m_mutex);
        const auto found = m_addresses.find(host);
        return found != m_addresses.end() ? found->second : QByteArrayList();
    }

    /// Replaces what was kept of the host.
    void keep(const QByteArray &host, const QByteArrayList &addresses) {
        const std::lock_guard lock(m_mutex);
        m_addresses[host] = addresses;
    }

private:
    mutable std::mutex m_mutex;
    std::map<QByteArray, QByteArrayList> m_addresses;
};

} // namespace quorvane::platform
