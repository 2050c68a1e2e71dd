#include "KernelRouting.h"

#include "RouteMessages.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/socket.h>

namespace quorvane::guard {

namespace {

constexpr unsigned ipv6RuleGroup = 1U << (RTNLGRP_IPV6_RULE - 1);
constexpr unsigned changeGroups = RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE | RTMGRP_IPV4_RULE | ipv6RuleGroup;
/// Room for some ten thousand notifications.
constexpr int notificationBytes = 8 * 1024 * 1024;
constexpr int maximumTries = 10;
constexpr std::size_t bufferSize = 32768;

/// For mnl_cb_run: calls the visitor with each message of the kernel's tables.
int visitMessage(const nlmsghdr *message, void *visitor) {
    (*static_cast<const std::function<void(const nlmsghdr *)> *>(visitor))(message);
    return MNL_CB_OK;
}

} // namespace

void KernelRouting::Closer::operator()(mnl_socket *socket) const {
    mnl_socket_close(socket);
}

KernelRouting::Socket KernelRouting::openSocket(unsigned groups) {
    Socket socket(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC));
    if (socket && mnl_socket_bind(socket.get(), groups, MNL_SOCKET_AUTOPID) != 0) {
        socket.reset();
    }
    return socket;
}

void KernelRouting::subscribe() {
    m_changes = openSocket(changeGroups);
    if (m_changes) {
        const int descriptor = changesDescriptor();
        setsockopt(descriptor, SOL_SOCKET, SO_RCVBUFFORCE, &notificationBytes, sizeof notificationBytes);
        if (fcntl(descriptor, F_SETFL, O_NONBLOCK) != 0) {
            m_changes.reset();
        }
    }
}

int KernelRouting::changesDescriptor() const {
    return m_changes ? mnl_socket_get_fd(m_changes.get()) : -1;
}

bool KernelRouting::readResponse(const Visitor &visit) {
    Visitor copy = visit;
    alignas(nlmsghdr) std::array<char, bufferSize> buffer{};
    int state = MNL_CB_OK;
    while (state == MNL_CB_OK) {
        const ssize_t size = mnl_socket_recvfrom(m_requests.get(), buffer.data(), buffer.size());
        if (size < 0 && errno == EINTR) {
            continue;
        }
        state = size <= 0 ? MNL_CB_ERROR
                          : mnl_cb_run(buffer.data(), static_cast<std::size_t>(size), m_sequence,
                                       mnl_socket_get_portid(m_requests.get()), visitMessage, &copy);
    }
    return state == MNL_CB_STOP;
}

bool KernelRouting::dump(std::uint16_t type, int family, const Visitor &visit) {
    alignas(nlmsghdr) std::array<char, 256> buffer{};
    nlmsghdr *request = mnl_nlmsg_put_header(buffer.data());
    request->nlmsg_type = type;
    request->nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request->nlmsg_seq = ++m_sequence;
    // The headers of all four kinds begin with the family, and rtmsg is the longest that may be sent for all.
    static_cast<rtmsg *>(mnl_nlmsg_put_extra_header(request, sizeof(rtmsg)))->rtm_family =
        static_cast<unsigned char>(family);
    return mnl_socket_sendto(m_requests.get(), request, request->nlmsg_len) >= 0 && readResponse(visit);
}

bool KernelRouting::readOnce(NetworkState &state) {
    const auto store = [](auto &set, auto value) {
        if (value) {
            set.insert(std::move(*value));
        }
    };
    for (const int family : {AF_INET, AF_INET6}) {
        if (!dump(RTM_GETROUTE, family, [&](const nlmsghdr *it) { store(state.routes, routeOf(it)); }) ||
            !dump(RTM_GETRULE, family, [&](const nlmsghdr *it) { store(state.rules, ruleOf(it)); }) ||
            !dump(RTM_GETADDR, family, [&](const nlmsghdr *it) { store(state.addresses, addressOf(it)); })) {
            return false;
        }
    }
    return true;
}

Result<NetworkState> KernelRouting::state() {
    if (!m_changes) {
        subscribe();
    }
    // A table that changes while it is read is read again.
    for (int tries = 0; m_changes && tries < maximumTries; ++tries) {
        if (!m_requests) {
            m_requests = openSocket(0);
        }
        NetworkState state;
        if (m_requests && readOnce(state)) {
            if (struct if_nameindex *devices = if_nameindex(); devices != nullptr) {
                for (struct if_nameindex *one = devices; one->if_index != 0; ++one) {
                    state.devices[one->if_index] = one->if_name;
                }
                if_freenameindex(devices);
            }
            return state;
        }
        m_requests.reset();
    }
    return Failure{"the kernel's routes cannot be read"};
}

RouteChanges KernelRouting::changes() {
    RouteChanges found;
    Visitor visit = [&found](const nlmsghdr *message) {
        if (message->nlmsg_type == RTM_NEWRULE || message->nlmsg_type == RTM_DELRULE) {
            found.isIncomplete = true;
        } else if (message->nlmsg_type == RTM_NEWROUTE || message->nlmsg_type == RTM_DELROUTE) {
            if (auto route = routeOf(message)) {
                (message->nlmsg_type == RTM_NEWROUTE ? found.added : found.removed)
                    .push_back(std::move(*route));
            }
        }
    };
    alignas(nlmsghdr) std::array<char, bufferSize> buffer{};
    while (m_changes) {
        const ssize_t size = mnl_socket_recvfrom(m_changes.get(), buffer.data(), buffer.size());
        if (size > 0) {
            mnl_cb_run(buffer.data(), static_cast<std::size_t>(size), 0, 0, visitMessage, &visit);
        } else if (size < 0 && errno == ENOBUFS) {
            found.isIncomplete = true;
        } else if (size == 0 || errno != EINTR) {
            break;
        }
    }
    return found;
}

bool KernelRouting::change(std::uint16_t type, std::uint16_t flags, const Route &route) {
    const std::string body = requestFor(route);
    std::vector<std::uint64_t> aligned((MNL_NLMSG_HDRLEN + body.size()) / sizeof(std::uint64_t) + 1);
    auto *buffer = reinterpret_cast<char *>(aligned.data());
    nlmsghdr *request = mnl_nlmsg_put_header(buffer);
    request->nlmsg_type = type;
    request->nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | NLM_F_ACK | flags);
    request->nlmsg_seq = ++m_sequence;
    std::memcpy(buffer + MNL_NLMSG_HDRLEN, body.data(), body.size());
    request->nlmsg_len = static_cast<std::uint32_t>(MNL_NLMSG_HDRLEN + body.size());
    return m_requests && mnl_socket_sendto(m_requests.get(), request, request->nlmsg_len) >= 0 &&
           readResponse([](const nlmsghdr *) {});
}

bool KernelRouting::add(const Route &route) {
    // IPv4 keeps several routes with the same destination apart, IPv6 would join them.
    return change(RTM_NEWROUTE,
                  static_cast<std::uint16_t>(
                      NLM_F_CREATE | (route.destination.family == AF_INET ? NLM_F_APPEND : NLM_F_EXCL)),
                  route);
}

bool KernelRouting::remove(const Route &route) {
    return change(RTM_DELROUTE, 0, route);
}

std::optional<unsigned> KernelRouting::tunnelDeviceOf(pid_t process) {
    constexpr std::string_view key = "iff:\t";
    std::error_code error;
    const std::filesystem::path folder = "/proc/" + std::to_string(process) + "/fdinfo";
    for (const auto &entry : std::filesystem::directory_iterator(folder, error)) {
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with(key)) {
                const unsigned index = if_nametoindex(line.substr(key.size()).c_str());
                return index == 0 ? std::nullopt : std::optional(index);
            }
        }
    }
    return std::nullopt;
}

} // namespace quorvane::guard
