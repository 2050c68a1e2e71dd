#include "HostLookUp.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cstring>
#include <memory>
#include <netdb.h>

namespace quorvane::platform {

std::vector<std::uint32_t> lookUpHost(const QByteArray &host) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *list = nullptr;
    if (::getaddrinfo(host.constData(), nullptr, &hints, &list) != 0) {
        return {};
    }
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(list, &::freeaddrinfo);
    std::vector<std::uint32_t> found;
    for (const addrinfo *entry = list; entry != nullptr; entry = entry->ai_next) {
        sockaddr_in address{};
        if (entry->ai_addrlen >= sizeof address) {
            std::memcpy(&address, entry->ai_addr, sizeof address);
            found.push_back(ntohl(address.sin_addr.s_addr));
        }
    }
    return found;
}

std::optional<std::uint32_t> numericAddress(const QByteArray &text) {
    in_addr address{};
    return ::inet_pton(AF_INET, text.constData(), &address) == 1 ? std::optional(ntohl(address.s_addr))
                                                                 : std::nullopt;
}

QByteArray addressText(std::uint32_t address) {
    const in_addr inOrder{htonl(address)};
    std::array<char, INET_ADDRSTRLEN> text{};
    return ::inet_ntop(AF_INET, &inOrder, text.data(), text.size());
}

} // namespace quorvane::platform
