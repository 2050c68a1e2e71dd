#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane::service {

/// One IPv4 address, kept in host byte order so that networks are plain arithmetic.
struct Ipv4Address {
    std::uint32_t value = 0;

    /// Takes exactly four decimal numbers of 0 to 255 without leading zeros; anything else gives nothing.
    static std::optional<Ipv4Address> parse(std::string_view text);
    [[nodiscard]] std::string text() const;

    bool operator==(const Ipv4Address &) const = default;

    bool operator<(const Ipv4Address &other) const { return value < other.value; }
};

/// A network written "10.8.0.0/16"; the host bits of the base must be zero.
struct Ipv4Network {
    Ipv4Address base;
    unsigned prefix = 32;

    static std::optional<Ipv4Network> parse(std::string_view text);
    [[nodiscard]] Ipv4Address mask() const;
    [[nodiscard]] bool contains(Ipv4Address address) const;
    [[nodiscard]] bool overlaps(const Ipv4Network &other) const;
    /// Number of addresses, the network's and the broadcast address included.
    [[nodiscard]] std::uint64_t size() const;
    [[nodiscard]] std::string text() const;
};

} // namespace quorvane::service
