#pragma once

#include "guard/RouteMessages.h"

#include <array>
#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

namespace quorvane::guard {

/// A route of the main table, from a message like those of the kernel.
struct KernelMessage {
    std::string destination = "0.0.0.0"; ///< an IPv4 address
    unsigned char length = 0;
    std::string gateway; ///< empty for none
    std::uint32_t device = 0;
    std::uint32_t nextHopObject = 0;
    bool hasCounters = false;

    [[nodiscard]] Route route() const {
        alignas(nlmsghdr) std::array<char, 512> buffer{};
        nlmsghdr *message = mnl_nlmsg_put_header(buffer.data());
        auto *header = static_cast<rtmsg *>(mnl_nlmsg_put_extra_header(message, sizeof(rtmsg)));
        header->rtm_family = AF_INET;
        header->rtm_dst_len = length;
        header->rtm_table = RT_TABLE_MAIN;
        header->rtm_protocol = RTPROT_BOOT;
        header->rtm_type = RTN_UNICAST;
        header->rtm_flags = hasCounters ? RTNH_F_LINKDOWN : 0;
        mnl_attr_put_u32(message, RTA_TABLE, RT_TABLE_MAIN);
        put(message, RTA_DST, destination);
        if (nextHopObject != 0) {
            mnl_attr_put_u32(message, RTA_NH_ID, nextHopObject);
        }
        if (!gateway.empty()) {
            put(message, RTA_GATEWAY, gateway);
        }
        mnl_attr_put_u32(message, RTA_OIF, device);
        if (hasCounters) {
            const rta_cacheinfo counters{1, 2, 3, 4, 5, 6, 7, 8};
            mnl_attr_put(message, RTA_CACHEINFO, sizeof counters, &counters);
        }
        return routeOf(message).value();
    }

private:
    static void put(nlmsghdr *message, std::uint16_t type, const std::string &address) {
        const Address bytes = hostOf(address)->address;
        mnl_attr_put(message, type, bytes.size(), bytes.data());
    }
};

} // namespace quorvane::guard
