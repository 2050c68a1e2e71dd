#include "HostRoutes.h"

#include <algorithm>
#include <array>
#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>
#include <memory>
#include <sys/socket.h>

namespace quorvane::guard {

namespace {

constexpr unsigned char hostPrefixLength = 32;
constexpr unsigned sequenceNumber = 1;

struct Closer {
    void operator()(mnl_socket *socket) const { mnl_socket_close(socket); }
};

using Visitor = int (*)(const nlmsghdr *, void *);

/// Sends a request to the kernel and calls `visit` for each message of the response.
void query(const nlmsghdr *request, Visitor visit, void *data) {
    const std::unique_ptr<mnl_socket, Closer> socket(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC));
    if (!socket || mnl_socket_bind(socket.get(), 0, MNL_SOCKET_AUTOPID) != 0 ||
        mnl_socket_sendto(socket.get(), request, request->nlmsg_len) < 0) {
        return;
    }
    alignas(nlmsghdr) std::array<char, 32768> buffer{};
    int state = MNL_CB_OK;
    while (state == MNL_CB_OK) {
        const ssize_t size = mnl_socket_recvfrom(socket.get(), buffer.data(), buffer.size());
        state = size <= 0 ? MNL_CB_STOP
                          : mnl_cb_run(buffer.data(), static_cast<std::size_t>(size), sequenceNumber,
                                       mnl_socket_get_portid(socket.get()), visit, data);
    }
}

nlmsghdr *requestFor(char *buffer, std::uint16_t type, std::uint16_t flags) {
    nlmsghdr *request = mnl_nlmsg_put_header(buffer);
    request->nlmsg_type = type;
    request->nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags);
    request->nlmsg_seq = sequenceNumber;
    static_cast<rtmsg *>(mnl_nlmsg_put_extra_header(request, sizeof(rtmsg)))->rtm_family = AF_INET;
    return request;
}

int readAttribute(const nlattr *attribute, void *data) {
    auto *route = static_cast<HostRoute *>(data);
    if (mnl_attr_get_payload_len(attribute) == sizeof(std::uint32_t)) {
        if (mnl_attr_get_type(attribute) == RTA_DST) {
            route->host = mnl_attr_get_u32(attribute);
        } else if (mnl_attr_get_type(attribute) == RTA_GATEWAY) {
            route->gateway = mnl_attr_get_u32(attribute);
        }
    }
    return MNL_CB_OK;
}

int collectRoute(const nlmsghdr *message, void *data) {
    const auto *found = static_cast<const rtmsg *>(mnl_nlmsg_get_payload(message));
    HostRoute route;
    mnl_attr_parse(message, sizeof(rtmsg), readAttribute, &route);
    if (found->rtm_dst_len == hostPrefixLength && found->rtm_type == RTN_UNICAST &&
        found->rtm_table == RT_TABLE_MAIN && route.gateway != 0) {
        static_cast<std::set<HostRoute> *>(data)->insert(route);
    }
    return MNL_CB_OK;
}

std::set<HostRoute> currentRoutes() {
    alignas(nlmsghdr) std::array<char, 256> buffer{};
    std::set<HostRoute> routes;
    query(requestFor(buffer.data(), RTM_GETROUTE, NLM_F_DUMP), collectRoute, &routes);
    return routes;
}

void remove(const HostRoute &route) {
    alignas(nlmsghdr) std::array<char, 256> buffer{};
    nlmsghdr *request = requestFor(buffer.data(), RTM_DELROUTE, NLM_F_ACK);
    auto *wanted = static_cast<rtmsg *>(mnl_nlmsg_get_payload(request));
    wanted->rtm_dst_len = hostPrefixLength;
    wanted->rtm_table = RT_TABLE_MAIN;
    wanted->rtm_scope = RT_SCOPE_NOWHERE;
    mnl_attr_put_u32(request, RTA_DST, route.host);
    mnl_attr_put_u32(request, RTA_GATEWAY, route.gateway);
    query(request, nullptr, nullptr);
}

} // namespace

HostRoutes::HostRoutes(std::vector<std::uint32_t> servers)
    : m_servers(std::move(servers)), m_before(currentRoutes()) {}

void HostRoutes::removeNew() const {
    for (const HostRoute &route : currentRoutes()) {
        if (!m_before.contains(route) && std::ranges::find(m_servers, route.host) != m_servers.end()) {
            remove(route);
        }
    }
}

} // namespace quorvane::guard
