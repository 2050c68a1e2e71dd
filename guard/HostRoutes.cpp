#include "HostRoutes.h"

#include <algorithm>
#include <array>
#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>
#include <memory>
#include <sys/socket.h>

namespace quorvane::guard {

namespace {

constexpr unsigned char HostLength = 32;
constexpr unsigned Sequence = 1;

struct Closer {
    void operator()(mnl_socket *socket) const { mnl_socket_close(socket); }
};

using Visitor = int (*)(const nlmsghdr *, void *);

/// Sends a request and hands each message of the answer to `visit`.
void ask(const nlmsghdr *request, Visitor visit, void *data) {
    const std::unique_ptr<mnl_socket, Closer> socket(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC));
    if (!socket || mnl_socket_bind(socket.get(), 0, MNL_SOCKET_AUTOPID) != 0 ||
        mnl_socket_sendto(socket.get(), request, request->nlmsg_len) < 0) {
        return;
    }
    alignas(nlmsghdr) std::array<char, 32768> buffer{};
    int more = MNL_CB_OK;
    while (more == MNL_CB_OK) {
        const ssize_t size = mnl_socket_recvfrom(socket.get(), buffer.data(), buffer.size());
        more = size <= 0 ? MNL_CB_STOP
                         : mnl_cb_run(buffer.data(), static_cast<std::size_t>(size), Sequence,
                                      mnl_socket_get_portid(socket.get()), visit, data);
    }
}

nlmsghdr *requestFor(char *buffer, std::uint16_t type, std::uint16_t flags) {
    nlmsghdr *request = mnl_nlmsg_put_header(buffer);
    request->nlmsg_type = type;
    request->nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags);
    request->nlmsg_seq = Sequence;
    static_cast<rtmsg *>(mnl_nlmsg_put_extra_header(request, sizeof(rtmsg)))->rtm_family = AF_INET;
    return request;
}

int noteAddress(const nlattr *attribute, void *data) {
    auto *route = static_cast<HostRoute *>(data);
    if (mnl_attr_get_payload_len(attribute) == sizeof(std::uint32_t)) {
        if (mnl_attr_get_type(attribute) == RTA_DST) {
            route->host = mnl_attr_get_u32(attribute);
        } else if (mnl_attr_get_type(attribute) == RTA_GATEWAY) {
            route->router = mnl_attr_get_u32(attribute);
        }
    }
    return MNL_CB_OK;
}

int noteRoute(const nlmsghdr *message, void *data) {
    const auto *found = static_cast<const rtmsg *>(mnl_nlmsg_get_payload(message));
    HostRoute route;
    mnl_attr_parse(message, sizeof(rtmsg), noteAddress, &route);
    if (found->rtm_dst_len == HostLength && found->rtm_type == RTN_UNICAST &&
        found->rtm_table == RT_TABLE_MAIN && route.router != 0) {
        static_cast<std::set<HostRoute> *>(data)->insert(route);
    }
    return MNL_CB_OK;
}

std::set<HostRoute> current() {
    alignas(nlmsghdr) std::array<char, 256> buffer{};
    std::set<HostRoute> routes;
    ask(requestFor(buffer.data(), RTM_GETROUTE, NLM_F_DUMP), noteRoute, &routes);
    return routes;
}

void remove(const HostRoute &route) {
    alignas(nlmsghdr) std::array<char, 256> buffer{};
    nlmsghdr *request = requestFor(buffer.data(), RTM_DELROUTE, NLM_F_ACK);
    auto *wanted = static_cast<rtmsg *>(mnl_nlmsg_get_payload(request));
    wanted->rtm_dst_len = HostLength;
    wanted->rtm_table = RT_TABLE_MAIN;
    wanted->rtm_scope = RT_SCOPE_NOWHERE;
    mnl_attr_put_u32(request, RTA_DST, route.host);
    mnl_attr_put_u32(request, RTA_GATEWAY, route.router);
    ask(request, nullptr, nullptr);
}

} // namespace

HostRoutes::HostRoutes(std::vector<std::uint32_t> servers)
    : m_servers(std::move(servers)), m_before(current()) {}

void HostRoutes::removeNew() const {
    for (const HostRoute &route : current()) {
        if (!m_before.contains(route) && std::ranges::find(m_servers, route.host) != m_servers.end()) {
            remove(route);
        }
    }
}

} // namespace quorvane::guard
