#include "Ipv4.h"

#include <charconv>

namespace quorvane::service {

namespace {

/// Reads one decimal number without sign or leading zeros and removes it from the text.
std::optional<std::uint32_t> readNumber(std::string_view &text, std::uint32_t maximum) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto length = static_cast<std::size_t>(end - text.data());
    if (error != std::errc() || number > maximum || (length > 1 && text.front() == '0')) {
        return std::nullopt;
    }
    text.remove_prefix(length);
    return number;
}

} // namespace

std::optional<Ipv4Address> Ipv4Address::parse(std::string_view text) {
    Ipv4Address address;
    for (int part = 0; part < 4; ++part) {
        if (part > 0) {
            if (text.empty() || text.front() != '.') {
                return std::nullopt;
            }
            text.remove_prefix(1);
        }
        const auto number = readNumber(text, 255);
        if (!number) {
            return std::nullopt;
        }
        address.value = (address.value << 8) | *number;
    }
    return text.empty() ? std::optional(address) : std::nullopt;
}

std::string Ipv4Address::text() const {
    return std::to_string(value >> 24) + '.' + std::to_string((value >> 16) & 255) + '.' +
           std::to_string((value >> 8) & 255) + '.' + std::to_string(value & 255);
}

std::optional<Ipv4Network> Ipv4Network::parse(std::string_view text) {
    const auto slash = text.find('/');
    if (slash == std::string_view::npos) {
        return std::nullopt;
    }
    const auto base = Ipv4Address::parse(text.substr(0, slash));
    std::string_view rest = text.substr(slash + 1);
    const auto prefix = readNumber(rest, 32);
    if (!base || !prefix || !rest.empty()) {
        return std::nullopt;
    }
    const Ipv4Network network{*base, *prefix};
    return (base->value & ~network.mask().value) == 0 ? std::optional(network) : std::nullopt;
}

Ipv4Address Ipv4Network::mask() const {
    return {prefix == 0 ? 0 : ~std::uint32_t{0} << (32 - prefix)};
}

bool Ipv4Network::contains(Ipv4Address address) const {
    return (address.value & mask().value) == base.value;
}

bool Ipv4Network::overlaps(const Ipv4Network &other) const {
    return contains(other.base) || other.contains(base);
}

std::uint64_t Ipv4Network::size() const {
    return std::uint64_t{1} << (32 - prefix);
}

std::string Ipv4Network::text() const {
    return base.text() + '/' + std::to_string(prefix);
}

} // namespace quorvane::service
