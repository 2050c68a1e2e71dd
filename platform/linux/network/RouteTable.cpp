#include "RouteTable.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <functional>
#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>
#include <memory>
#include <sys/socket.h>

namespace quorvane::platform::RouteTable {

namespace {

struct SocketCloser {
    void operator()(mnl_socket *socket) const { mnl_socket_close(socket); }
};

using Socket = std::unique_ptr<mnl_socket, SocketCloser>;

using RouteVisitor = std::function<void(const nlmsghdr *message)>;

constexpr unsigned sequence = 1;

Socket openSocket() {
    Socket socket(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC));
    if (socket && mnl_socket_bind(socket.get(), 0, MNL_SOCKET_AUTOPID) != 0) {
        socket.reset();
    }
    return socket;
}

int visitMessage(const nlmsghdr *message, void *visitor) {
    if (message->nlmsg_type == RTM_NEWROUTE) {
        (*static_cast<const RouteVisitor *>(visitor))(message);
    }
    return MNL_CB_OK;
}

/// Sends the request and calls the visitor with every route of the answer. Returns 0, or the errno value in
/// the kernel's answer; absent when the kernel could not be queried.
std::optional<int> sendRequest(nlmsghdr *request, bool isDump, const RouteVisitor &visitor) {
    const Socket socket = openSocket();
    if (!socket || mnl_socket_sendto(socket.get(), request, request->nlmsg_len) < 0) {
        return std::nullopt;
    }
    const unsigned port = mnl_socket_get_portid(socket.get());
    RouteVisitor copy = visitor;
    alignas(nlmsghdr) std::array<char, 32768> buffer{};
    for (;;) {
        const ssize_t size = mnl_socket_recvfrom(socket.get(), buffer.data(), buffer.size());
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size < 0) {
            return std::nullopt;
        }
        const int outcome =
            mnl_cb_run(buffer.data(), static_cast<std::size_t>(size), sequence, port, visitMessage, &copy);
        if (outcome < 0) {
            return errno;
        }
        if (outcome == MNL_CB_STOP || !isDump) {
            return 0;
        }
    }
}

/// A request for routes in the buffer, without attributes yet.
nlmsghdr *prepare(char *buffer, std::uint16_t flags) {
    nlmsghdr *request = mnl_nlmsg_put_header(buffer);
    request->nlmsg_type = RTM_GETROUTE;
    request->nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags);
    request->nlmsg_seq = sequence;
    auto *route = static_cast<rtmsg *>(mnl_nlmsg_put_extra_header(request, sizeof(rtmsg)));
    route->rtm_family = AF_INET;
    return request;
}

const rtmsg *routeOf(const nlmsghdr *message) {
    return static_cast<const rtmsg *>(mnl_nlmsg_get_payload(message));
}

int visitGateway(const nlattr *attribute, void *found) {
    const int kind = mnl_attr_get_type(attribute);
    if (kind == RTA_GATEWAY || kind == RTA_VIA) {
        *static_cast<bool *>(found) = true;
    }
    return MNL_CB_OK;
}

struct Destination {
    std::uint32_t address = 0;
    std::uint32_t device = 0;
};

int visitDestination(const nlattr *attribute, void *found) {
    auto *destination = static_cast<Destination *>(found);
    if (mnl_attr_get_type(attribute) == RTA_DST) {
        destination->address = ntohl(mnl_attr_get_u32(attribute));
    } else if (mnl_attr_get_type(attribute) == RTA_OIF) {
        destination->device = mnl_attr_get_u32(attribute);
    }
    return MNL_CB_OK;
}

bool hasGateway(const nlmsghdr *message) {
    bool found = false;
    mnl_attr_parse(message, sizeof(rtmsg), visitGateway, &found);
    return found;
}

std::optional<int> requestRoute(std::uint32_t address, unsigned routeFlags, const RouteVisitor &visitor) {
    alignas(nlmsghdr) std::array<char, 256> buffer{};
    nlmsghdr *request = prepare(buffer.data(), 0);
    auto *route = static_cast<rtmsg *>(mnl_nlmsg_get_payload(request));
    route->rtm_dst_len = 32;
    route->rtm_flags = routeFlags;
    mnl_attr_put_u32(request, RTA_DST, htonl(address));
    return sendRequest(request, false, visitor);
}

} // namespace

std::optional<Route> routeTo(std::uint32_t address) {
    Route result;
    const auto outcome = requestRoute(address, 0, [&result](const nlmsghdr *message) {
        const unsigned char type = routeOf(message)->rtm_type;
        result.isLocal = type == RTN_LOCAL;
        result.isDirect = !hasGateway(message);
        result.exists =
            result.isLocal || type == RTN_UNICAST || type == RTN_BROADCAST || type == RTN_MULTICAST;
    });
    if (!outcome) {
        return std::nullopt;
    }
    // Any error in the kernel's own answer means that there is no route.
    return *outcome == 0 && result.exists ? result : Route();
}

std::optional<bool> isOnLink(std::uint32_t address, int prefixLength) {
    bool found = false;
    const auto outcome = requestRoute(address, RTM_F_FIB_MATCH, [&](const nlmsghdr *message) {
        const rtmsg *route = routeOf(message);
        const bool isNetwork = route->rtm_type == RTN_UNICAST || route->rtm_type == RTN_BROADCAST;
        found = isNetwork && route->rtm_dst_len >= prefixLength && !hasGateway(message);
    });
    return outcome ? std::optional(*outcome == 0 && found) : std::nullopt;
}

std::optional<std::uint32_t> carrierOfBothHalves() {
    alignas(nlmsghdr) std::array<char, 256> buffer{};
    std::array<std::uint32_t, 2> carriers{};
    const auto outcome =
        sendRequest(prepare(buffer.data(), NLM_F_DUMP), true, [&carriers](const nlmsghdr *message) {
            const rtmsg *route = routeOf(message);
            if (route->rtm_table != RT_TABLE_MAIN || route->rtm_type != RTN_UNICAST ||
                route->rtm_dst_len != 1) {
                return;
            }
            Destination found;
            mnl_attr_parse(message, sizeof(rtmsg), visitDestination, &found);
            carriers.at(found.address >> 31) = found.device;
        });
    if (!outcome || *outcome != 0) {
        return std::nullopt;
    }
    return carriers[0] == carriers[1] ? carriers[0] : 0;
}

std::optional<bool> hasDefaultRoute() {
    alignas(nlmsghdr) std::array<char, 256> buffer{};
    bool found = false;
    const auto outcome =
        sendRequest(prepare(buffer.data(), NLM_F_DUMP), true, [&found](const nlmsghdr *message) {
            const rtmsg *route = routeOf(message);
            constexpr unsigned unusable = RTNH_F_DEAD | RTNH_F_LINKDOWN;
            found = found || (route->rtm_dst_len == 0 && route->rtm_type == RTN_UNICAST &&
                              (route->rtm_flags & unusable) == 0);
        });
    if (!outcome || *outcome != 0) {
        return std::nullopt;
    }
    return found;
}

} // namespace quorvane::platform::RouteTable
