#include "NetworkChanges.h"

#include <array>
#include <cerrno>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

namespace quorvane::platform {

bool NetworkChanges::open() {
    m_file.reset(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE));
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups =
        RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_IFADDR | RTMGRP_IPV6_ROUTE;
    const void *raw = &address;
    return m_file.isOpen() && ::bind(m_file.get(), static_cast<const sockaddr *>(raw), sizeof address) == 0;
}

void NetworkChanges::clear() const {
    std::array<char, 8192> buffer{};
    // Lost messages (ENOBUFS) mean a change, too.
    while (::recv(m_file.get(), buffer.data(), buffer.size(), 0) >= 0 || errno == EINTR || errno == ENOBUFS) {
    }
}

} // namespace quorvane::platform
