#include "RouteMessages.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <libmnl/libmnl.h>
#include <linux/fib_rules.h>
#include <linux/if_addr.h>
#include <linux/rtnetlink.h>

namespace quorvane::guard {

namespace {

constexpr unsigned keptHopFlags = RTNH_F_ONLINK | RTNH_F_PERVASIVE;

template <typename Number>
Number numberOf(const nlattr *attribute) {
    Number number{};
    std::memcpy(&number, mnl_attr_get_payload(attribute),
                std::min<std::size_t>(sizeof number, mnl_attr_get_payload_len(attribute)));
    return number;
}

std::string payloadOf(const nlattr *attribute) {
    return {static_cast<const char *>(mnl_attr_get_payload(attribute)), mnl_attr_get_payload_len(attribute)};
}

void append(std::string &message, std::uint16_t type, std::string_view payload) {
    const nlattr head{static_cast<std::uint16_t>(MNL_ATTR_HDRLEN + payload.size()), type};
    message.append(reinterpret_cast<const char *>(&head), sizeof head).append(payload);
    message.resize(MNL_ALIGN(message.size()), '\0');
}

std::size_t sizeOfAddress(int family) {
    return family == AF_INET ? 4 : 16;
}

/// An address of the message, filled up with zeros: of a default route there is none.
Address addressOf(int family, std::string_view bytes) {
    Address address(bytes.substr(0, sizeOfAddress(family)));
    address.resize(sizeOfAddress(family), '\0');
    return address;
}

/// Calls `visit(hop, begin of its attributes, their size)` for each hop of a route with several ways.
template <typename Visit>
void eachHop(std::string &payload, Visit visit) {
    std::size_t at = 0;
    while (at + sizeof(rtnexthop) <= payload.size()) {
        rtnexthop hop{};
        std::memcpy(&hop, payload.data() + at, sizeof hop);
        if (hop.rtnh_len < sizeof hop || at + hop.rtnh_len > payload.size()) {
            return;
        }
        visit(hop, payload.data() + at + sizeof hop, hop.rtnh_len - sizeof hop);
        std::memcpy(payload.data() + at, &hop, sizeof hop);
        at += RTNH_ALIGN(hop.rtnh_len);
    }
}

bool isGateway(unsigned type) {
    return type == RTA_GATEWAY || type == RTA_VIA;
}

bool containsGateway(const char *attributes, std::size_t size) {
    std::size_t at = 0;
    while (at + sizeof(nlattr) <= size) {
        nlattr head{};
        std::memcpy(&head, attributes + at, sizeof head);
        if (head.nla_len < sizeof head || at + head.nla_len > size) {
            return false;
        }
        if (isGateway(head.nla_type & NLA_TYPE_MASK)) {
            return true;
        }
        at += MNL_ALIGN(head.nla_len);
    }
    return false;
}

/// Reads one attribute of a route, and adds it to the message unless it is a counter.
void readAttribute(Route &route, Hop &only, const nlattr *attribute) {
    const unsigned type = mnl_attr_get_type(attribute);
    std::string payload = payloadOf(attribute);
    if (type == RTA_DST) {
        route.destination.address = addressOf(route.destination.family, payload);
    } else if (type == RTA_TABLE) {
        route.table = numberOf<std::uint32_t>(attribute);
    } else if (type == RTA_OIF) {
        only.device = numberOf<std::uint32_t>(attribute);
    } else if (isGateway(type)) {
        only.hasGateway = true;
    } else if (type == RTA_MULTIPATH) {
        eachHop(payload, [&route](rtnexthop &hop, const char *attributes, std::size_t size) {
            hop.rtnh_flags &= keptHopFlags;
            route.hops.push_back(
                {static_cast<unsigned>(hop.rtnh_ifindex), containsGateway(attributes, size)});
        });
    } else if (type == RTA_CACHEINFO) {
        return;
    }
    append(route.message, static_cast<std::uint16_t>(type), payload);
}

/// A message of this kind whose attributes follow a header of `Header`; null when it is too short.
template <typename Header>
const Header *headerOf(const nlmsghdr *message) {
    return mnl_nlmsg_get_payload_len(message) < sizeof(Header)
               ? nullptr
               : static_cast<const Header *>(mnl_nlmsg_get_payload(message));
}

using AttributeVisitor = std::function<void(const nlattr *)>;

void eachAttribute(const nlmsghdr *message, std::size_t headerSize, AttributeVisitor visit) {
    mnl_attr_parse(
        message, static_cast<unsigned>(headerSize),
        [](const nlattr *attribute, void *visitor) {
            (*static_cast<AttributeVisitor *>(visitor))(attribute);
            return MNL_CB_OK;
        },
        &visit);
}

} // namespace

std::optional<Route> routeOf(const nlmsghdr *message) {
    const auto *found = headerOf<rtmsg>(message);
    if (found == nullptr || (found->rtm_family != AF_INET && found->rtm_family != AF_INET6) ||
        (found->rtm_flags & RTM_F_CLONED) != 0) {
        return std::nullopt;
    }
    rtmsg header = *found;
    header.rtm_flags &= keptHopFlags;
    Route route;
    route.destination = {header.rtm_family, addressOf(header.rtm_family, {}), header.rtm_dst_len};
    route.table = header.rtm_table;
    route.type = header.rtm_type;
    route.protocol = header.rtm_protocol;
    route.message.assign(reinterpret_cast<const char *>(&header), sizeof header);
    Hop only;
    eachAttribute(message, sizeof(rtmsg),
                  [&](const nlattr *attribute) { readAttribute(route, only, attribute); });
    if (route.hops.empty() && (only.device != 0 || only.hasGateway)) {
        route.hops.push_back(only);
    }
    return route.table == RT_TABLE_LOCAL && route.protocol == RTPROT_KERNEL ? std::nullopt
                                                                            : std::optional(route);
}

std::optional<Rule> ruleOf(const nlmsghdr *message) {
    const auto *header = headerOf<fib_rule_hdr>(message);
    if (header == nullptr) {
        return std::nullopt;
    }
    Rule rule{header->family, header->table, 0, {}};
    rule.message.assign(reinterpret_cast<const char *>(header), sizeof *header);
    eachAttribute(message, sizeof *header, [&](const nlattr *attribute) {
        if (mnl_attr_get_type(attribute) == FRA_TABLE) {
            rule.table = numberOf<std::uint32_t>(attribute);
        } else if (mnl_attr_get_type(attribute) == FRA_PRIORITY) {
            rule.priority = numberOf<std::uint32_t>(attribute);
        }
        append(rule.message, static_cast<std::uint16_t>(mnl_attr_get_type(attribute)), payloadOf(attribute));
    });
    return rule;
}

std::optional<DeviceAddress> addressOf(const nlmsghdr *message) {
    const auto *header = headerOf<ifaddrmsg>(message);
    if (header == nullptr || (header->ifa_family != AF_INET && header->ifa_family != AF_INET6)) {
        return std::nullopt;
    }
    std::string address;
    eachAttribute(message, sizeof *header, [&](const nlattr *attribute) {
        const unsigned type = mnl_attr_get_type(attribute);
        // With a peer's address, IFA_LOCAL is the computer's own one.
        if (type == IFA_LOCAL || (type == IFA_ADDRESS && address.empty())) {
            address = payloadOf(attribute);
        }
    });
    return DeviceAddress{header->ifa_index,
                         {header->ifa_family, addressOf(header->ifa_family, address), header->ifa_prefixlen}};
}

std::optional<Route> storedRoute(const std::string &message) {
    constexpr std::size_t maximumSize = 65536;
    if (message.size() < sizeof(rtmsg) || message.size() > maximumSize) {
        return std::nullopt;
    }
    std::vector<std::uint64_t> aligned((MNL_NLMSG_HDRLEN + message.size()) / sizeof(std::uint64_t) + 1);
    auto *buffer = reinterpret_cast<char *>(aligned.data());
    nlmsghdr *whole = mnl_nlmsg_put_header(buffer);
    std::memcpy(buffer + MNL_NLMSG_HDRLEN, message.data(), message.size());
    whole->nlmsg_len = static_cast<std::uint32_t>(MNL_NLMSG_HDRLEN + message.size());
    auto route = routeOf(whole);
    return route && route->message == message ? route : std::nullopt;
}

std::string requestFor(const Route &route) {
    // A route through a next-hop object is reported with the object and with what is in it; a request may
    // name only one of them.
    const auto attributesOf = [&route](auto visit) {
        std::size_t at = sizeof(rtmsg);
        while (at + sizeof(nlattr) <= route.message.size()) {
            nlattr head{};
            std::memcpy(&head, route.message.data() + at, sizeof head);
            visit(head, std::string_view(route.message).substr(at, MNL_ALIGN(head.nla_len)));
            at += std::max<std::size_t>(MNL_ALIGN(head.nla_len), sizeof head);
        }
    };
    bool hasObject = false;
    attributesOf([&hasObject](const nlattr &head, std::string_view) {
        hasObject = hasObject || head.nla_type == RTA_NH_ID;
    });
    std::string request = route.message.substr(0, sizeof(rtmsg));
    attributesOf([&](const nlattr &head, std::string_view whole) {
        const bool isHop =
            head.nla_type == RTA_OIF || isGateway(head.nla_type) || head.nla_type == RTA_MULTIPATH;
        if (!(hasObject && isHop)) {
            request.append(whole);
        }
    });
    return request;
}

} // namespace quorvane::guard
