#include "Routing.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>

namespace quorvane::guard {

namespace {

constexpr unsigned bitsOfByte = 8;
constexpr unsigned allBits = 0xFF;

} // namespace

bool Network::contains(const Network &other) const {
    if (family != other.family || length > other.length || address.size() != other.address.size()) {
        return false;
    }
    const std::size_t bytes = length / bitsOfByte;
    if (address.compare(0, bytes, other.address, 0, bytes) != 0) {
        return false;
    }
    const unsigned rest = length % bitsOfByte;
    const unsigned mask = allBits & (allBits << (bitsOfByte - rest));
    return rest == 0 ||
           ((static_cast<unsigned char>(address[bytes]) ^ static_cast<unsigned char>(other.address[bytes])) &
            mask) == 0;
}

bool Route::leadsThroughGateway() const {
    return std::ranges::any_of(hops, &Hop::hasGateway);
}

bool Route::usesOnly(unsigned device) const {
    return !hops.empty() &&
           std::ranges::all_of(hops, [device](const Hop &hop) { return hop.device == device; });
}

std::optional<Network> hostOf(const std::string &text) {
    std::array<char, sizeof(in6_addr)> bytes{};
    for (const int family : {AF_INET, AF_INET6}) {
        const std::size_t size = family == AF_INET ? sizeof(in_addr) : sizeof(in6_addr);
        if (inet_pton(family, text.c_str(), bytes.data()) == 1) {
            return Network{family, Address(bytes.data(), size), static_cast<unsigned>(size) * bitsOfByte};
        }
    }
    return std::nullopt;
}

std::string textOf(const Network &network) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (inet_ntop(network.family, network.address.data(), text.data(), text.size()) == nullptr) {
        return "?";
    }
    return std::string(text.data()) + '/' + std::to_string(network.length);
}

} // namespace quorvane::guard
