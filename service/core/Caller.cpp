#include "Caller.h"

#include <algorithm>
#include <arpa/inet.h>
#include <functional>

namespace quorvane::service {

namespace {

/// The first bytes of an IPv4 address in the form of IPv6.
constexpr std::array<std::uint8_t, 12> mapped{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff};
constexpr std::size_t networkBytes = 8;

bool isMapped(const Caller &caller) {
    return std::equal(mapped.begin(), mapped.end(), caller.bytes.begin());
}

} // namespace

Caller Caller::of(std::string_view peer) {
    Caller caller;
    const std::string text(peer.substr(0, peer.find('%')));
    if (inet_pton(AF_INET, text.c_str(), caller.bytes.data() + mapped.size()) == 1) {
        std::copy(mapped.begin(), mapped.end(), caller.bytes.begin());
    } else if (inet_pton(AF_INET6, text.c_str(), caller.bytes.data()) == 1 && !isMapped(caller)) {
        std::fill(caller.bytes.begin() + networkBytes, caller.bytes.end(), 0);
    }
    return caller;
}

std::string Caller::text() const {
    std::array<char, INET6_ADDRSTRLEN> buffer{};
    if (isMapped(*this)) {
        inet_ntop(AF_INET, bytes.data() + mapped.size(), buffer.data(), buffer.size());
        return buffer.data();
    }
    inet_ntop(AF_INET6, bytes.data(), buffer.data(), buffer.size());
    return std::string(buffer.data()) + "/64";
}

std::size_t CallerHash::operator()(const Caller &caller) const {
    const std::string_view view(reinterpret_cast<const char *>(caller.bytes.data()), caller.bytes.size());
    return std::hash<std::string_view>()(view);
}

} // namespace quorvane::service
