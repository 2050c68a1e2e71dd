#include "HostResolver.h"

#include "HostLookUp.h"

#include <mutex>
#include <system_error>
#include <thread>

namespace quorvane::platform {

struct HostResolver::State {
    QByteArray host;
    bool isNumeric = false;
    std::mutex mutex;
    std::optional<std::uint32_t> address;
    bool isBusy = false;
};

HostResolver::HostResolver(const QByteArray &host) : m_state(std::make_shared<State>()) {
    m_state->host = host;
    m_state->address = numericAddress(host);
    m_state->isNumeric = m_state->address.has_value();
}

std::optional<std::uint32_t> HostResolver::address() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->address;
}

void HostResolver::refresh(std::function<void()> found) {
    {
        const std::lock_guard lock(m_state->mutex);
        if (m_state->isNumeric || m_state->isBusy) {
            return;
        }
        m_state->isBusy = true;
    }
    try {
        std::thread([shared = m_state, notify = std::move(found)] {
            const auto addresses = lookUpHost(shared->host);
            {
                const std::lock_guard lock(shared->mutex);
                shared->isBusy = false;
                if (!addresses.empty()) {
                    shared->address = addresses.front();
                }
            }
            if (!addresses.empty()) {
                notify();
            }
        }).detach();
    } catch (const std::system_error &) {
        // No thread could be created; a later change of the network tries again.
        const std::lock_guard lock(m_state->mutex);
        m_state->isBusy = false;
    }
}

} // namespace quorvane::platform
