#pragma once

#include "guard/Routing.h"

#include <algorithm>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

namespace quorvane::guard {

/// Makes up a route as the kernel would report it. `text`: address/length. A gateway makes it lead through
/// one.
inline Route routeTo(const std::string &text, unsigned device, bool hasGateway,
                     unsigned char protocol = RTPROT_BOOT) {
    const auto slash = text.find('/');
    Route route;
    route.destination = *hostOf(text.substr(0, slash));
    route.destination.length = static_cast<unsigned>(std::stoul(text.substr(slash + 1)));
    route.table = RT_TABLE_MAIN;
    route.type = RTN_UNICAST;
    route.protocol = protocol;
    route.hops = {{device, hasGateway}};
    route.message = text + " device " + std::to_string(device) + (hasGateway ? " gateway" : "") + " by " +
                    std::to_string(protocol);
    return route;
}

/// The routes of a computer at home, in memory.
class FakeRouting : public Routing {
public:
    static constexpr unsigned cable = 2;
    static constexpr unsigned tunnel = 7;

    FakeRouting() {
        current.devices = {{1, "lo"}, {cable, "eth0"}};
        current.addresses = {{cable, *hostOf("192.168.77.2")}};
        current.routes = {routeTo("0.0.0.0/0", cable, true),
                          routeTo("192.168.77.0/24", cable, false, RTPROT_KERNEL)};
        current.rules = {{AF_INET, RT_TABLE_MAIN, 32766, "main"}};
    }

    /// What OpenVPN does for a session with this server.
    void bringUp(const std::string &server) {
        current.devices[tunnel] = "tun0";
        device = tunnel;
        for (const Route &route :
             {routeTo("0.0.0.0/1", tunnel, true), routeTo("128.0.0.0/1", tunnel, true),
              routeTo("10.8.0.0/16", tunnel, false, RTPROT_KERNEL), routeTo(server + "/32", cable, true)}) {
            appear(route);
        }
    }

    /// What the kernel does when OpenVPN has ended.
    void takeDown() {
        std::erase_if(current.routes, [](const Route &route) { return route.usesOnly(tunnel); });
        current.devices.erase(tunnel);
        device.reset();
    }

    void appear(const Route &route) {
        current.routes.insert(route);
        pending.added.push_back(route);
    }

    void vanish(const Route &route) {
        current.routes.erase(route);
        pending.removed.push_back(route);
    }

    Result<NetworkState> state() override {
        return isReadable ? Result<NetworkState>(current) : Failure{"the kernel's routes cannot be read"};
    }

    [[nodiscard]] int changesDescriptor() const override { return -1; }

    RouteChanges changes() override { return std::exchange(pending, {}); }

    bool add(const Route &route) override { return current.routes.insert(route).second; }

    bool remove(const Route &route) override { return current.routes.erase(route) > 0; }

    std::optional<unsigned> tunnelDeviceOf(pid_t) override { return device; }

    NetworkState current;
    RouteChanges pending;
    std::optional<unsigned> device;
    bool isReadable = true;
};

} // namespace quorvane::guard
