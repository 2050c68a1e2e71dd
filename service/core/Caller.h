#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace quorvane::service {

/// What counts as one caller: an IPv4 address, or the /64 network of an IPv6 address, as a provider assigns
/// it to one home.
struct Caller {
    std::array<std::uint8_t, 16> bytes{};

    /// From a numeric address. All texts that are no address are the same caller.
    [[nodiscard]] static Caller of(std::string_view peer);
    /// The address, or the network with "/64".
    [[nodiscard]] std::string text() const;

    bool operator==(const Caller &) const = default;
};

struct CallerHash {
    [[nodiscard]] std::size_t operator()(const Caller &caller) const;
};

} // namespace quorvane::service
