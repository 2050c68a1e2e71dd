#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane::service {

/// One IPv4 address, in host byte order so that networks are plain arithmetic.
struct Ipv4Address {
    std::uint32_t value = 0;

    /// Accepts exactly four decimal numbers from 0 to 255 without leading zeros; nothing for any other text.
    [[nodiscard]] static std::optional<Ipv4Address> parse(std::string_view text);
    [[nodiscard]] std::string text() const;

    bool operator==(const Ipv4Address &) const = default;

    bool operator<(const Ipv4Address &other) const { return value < other.value; }
};

/// A network written "10.8.0.0/16"; the host bits of the base must be zero.
struct Ipv4Network {
    Ipv4Address base;
    unsigned prefix = 32;

    [[nodiscard]] static std::optional<Ipv4Network> parse(std::string_view text);
    [[nodiscard]] Ipv4Address mask() const;
    [[nodiscard]] bool contains(Ipv4Address address) const;
    [[nodiscard]] bool overlaps(const Ipv4Network &other) const;
    /// Number of addresses, including those of the network itself and of broadcasts.
    [[nodiscard]] std::uint64_t size() const;
    [[nodiscard]] std::string text() const;
};

} // namespace quorvane::service
