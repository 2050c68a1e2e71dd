#include "LentAddresses.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

namespace quorvane::service {

namespace {

/// Server lists contain every address.
constexpr std::size_t maximumAddresses = 4096;
/// Our own routes have this number as their origin, of which the kernel takes no notice.
constexpr const char *routeOrigin = "171";

std::vector<std::string_view> split(std::string_view list) {
    std::vector<std::string_view> parts;
    for (std::size_t begin = 0; begin <= list.size();) {
        const std::size_t end = std::min(list.find(',', begin), list.size());
        parts.push_back(list.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

bool isUsable(const Ipv4Network &network, Ipv4Address address, const MachineNetwork &machine) {
    if (network.prefix == 32) {
        return true;
    }
    if (machine.owns(address) || machine.nextHop == address) {
        return false;
    }
    return std::none_of(machine.addresses.begin(), machine.addresses.end(), [&](const OwnAddress &own) {
        const Ipv4Network linked = own.network();
        const std::uint32_t last = linked.base.value + static_cast<std::uint32_t>(linked.size() - 1);
        return linked.prefix < 31 && (address == linked.base || address.value == last);
    });
}

} // namespace

Result<std::vector<Ipv4Address>> lentAddresses(std::string_view list, const MachineNetwork &machine) {
    std::vector<Ipv4Address> addresses;
    std::set<Ipv4Address> seen;
    for (const std::string_view part : split(list)) {
        const std::string text(part);
        const auto single = Ipv4Address::parse(part);
        const auto network = single ? Ipv4Network{*single, 32} : Ipv4Network::parse(part);
        if (!network) {
            return Failure{'"' + text + "\" is neither an IPv4 address nor a network such as 203.0.113.0/28"};
        }
        if (network->size() > maximumAddresses) {
            return Failure{text + " has more than " + std::to_string(maximumAddresses) + " addresses"};
        }
        for (std::uint64_t offset = 0; offset < network->size(); ++offset) {
            const Ipv4Address address{network->base.value + static_cast<std::uint32_t>(offset)};
            if (isUsable(*network, address, machine) && seen.insert(address).second) {
                addresses.push_back(address);
            }
        }
    }
    if (addresses.size() > maximumAddresses) {
        return Failure{"more than " + std::to_string(maximumAddresses) + " addresses"};
    }
    return addresses.empty() ? Result<std::vector<Ipv4Address>>(Failure{"no address is left to lend"})
                             : addresses;
}

std::vector<Ipv4Network> networksOf(std::vector<Ipv4Address> addresses) {
    std::sort(addresses.begin(), addresses.end());
    addresses.erase(std::unique(addresses.begin(), addresses.end()), addresses.end());
    std::vector<Ipv4Network> networks;
    for (const Ipv4Address address : addresses) {
        networks.push_back({address, 32});
        // Two neighbours of the same size make one network of twice the size.
        while (networks.size() > 1) {
            const Ipv4Network &last = networks.back();
            Ipv4Network &before = networks[networks.size() - 2];
            const Ipv4Network both{before.base, before.prefix - 1};
            if (last.prefix != before.prefix || !both.contains(last.base) ||
                (both.base.value & both.mask().value) != both.base.value) {
                break;
            }
            before = both;
            networks.pop_back();
        }
    }
    return networks;
}

Result<> routeLentAddresses(Machine &machine, const std::vector<Ipv4Address> &addresses,
                            FormerRoutes former) {
    const auto network = MachineNetwork::read(machine);
    const auto shown =
        machine.run({"ip", "-json", "-4", "route", "show", "table", "local", "proto", routeOrigin});
    if (!network || !shown) {
        return Failure{network ? shown.error() : network.error()};
    }
    std::vector<Ipv4Address> missing;
    std::copy_if(addresses.begin(), addresses.end(), std::back_inserter(missing),
                 [&](Ipv4Address address) { return !network.value().owns(address); });
    std::set<std::string> wanted;
    for (const Ipv4Network &part : networksOf(missing)) {
        wanted.insert(part.prefix == 32 ? part.base.text() : part.text());
    }
    std::string commands;
    const auto add = [&commands](const char *what, const std::string &destination) {
        commands += std::string("route ") + what + " local " + destination + " dev lo table local proto " +
                    routeOrigin + '\n';
    };
    const auto routes = nlohmann::json::parse(shown.value().empty() ? "[]" : shown.value(), nullptr, false);
    if (!routes.is_array()) {
        return Failure{"ip: its answer is not understood"};
    }
    for (const auto &route : routes) {
        const std::string destination = route.value("dst", "");
        if (wanted.erase(destination) == 0 && former == FormerRoutes::Remove) {
            add("del", destination);
        }
    }
    for (const std::string &destination : wanted) {
        add("replace", destination);
    }
    if (commands.empty()) {
        return {};
    }
    const auto done = machine.run({"ip", "-batch", "-"}, commands);
    return done ? Result<>() : Failure{done.error()};
}

} // namespace quorvane::service
