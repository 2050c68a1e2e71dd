#include "HostResolver.h"

#include <arpa/inet.h>
#include <cstring>
#include <mutex>
#include <netdb.h>
#include <system_error>
#include <thread>

namespace quorvane::platform {

namespace {

std::optional<std::uint32_t> numeric(const QByteArray &host) {
    in_addr address{};
    return ::inet_pton(AF_INET, host.constData(), &address) == 1 ? std::optional(ntohl(address.s_addr))
                                                                 : std::nullopt;
}

std::optional<std::uint32_t> lookUp(const QByteArray &host) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *list = nullptr;
    if (::getaddrinfo(host.constData(), nullptr, &hints, &list) != 0) {
        return std::nullopt;
    }
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(list, &::freeaddrinfo);
    sockaddr_in address{};
    if (list == nullptr || list->ai_addrlen < sizeof address) {
        return std::nullopt;
    }
    std::memcpy(&address, list->ai_addr, sizeof address);
    return ntohl(address.sin_addr.s_addr);
}

} // namespace

struct HostResolver::State {
    QByteArray host;
    bool isNumeric = false;
    std::mutex mutex;
    std::optional<std::uint32_t> address;
    bool isBusy = false;
};

HostResolver::HostResolver(const QByteArray &host) : m_state(std::make_shared<State>()) {
    m_state->host = host;
    m_state->address = numeric(host);
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
            const auto address = lookUp(shared->host);
            {
                const std::lock_guard lock(shared->mutex);
                shared->isBusy = false;
                if (address) {
                    shared->address = address;
                }
            }
            if (address) {
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
