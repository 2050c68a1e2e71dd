#pragma once

#include "Grant.h"
#include "Ipv4.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::service {

/// What the operator has ordered for the whole service. Of orders about the same thing the latest counts.
struct SharedOrders {
    using TimePoint = std::chrono::sys_time<std::chrono::microseconds>;

    struct Drain {
        bool on = false;
        TimePoint given;

        bool operator==(const Drain &) const = default;
    };

    struct Address {
        TimePoint issuedUntil; ///< grants of before are refused
        TimePoint end;         ///< when the users of all of them have expired

        bool operator==(const Address &) const = default;
    };

    Drain drain;
    std::map<std::string, TimePoint, std::less<>> users; ///< and when they expire
    std::map<Ipv4Address, Address> addresses;

    bool operator==(const SharedOrders &) const = default;

    /// Adds an order, unless a later one about the same thing is there. False when key or value is malformed:
    /// then nothing is changed. Keys are without the prefix: "drain", "users/USER", "addresses/ADDRESS".
    bool add(std::string_view key, std::string_view value);
    /// Removes the order of the key.
    void remove(std::string_view key);
    /// The value of the key, or nothing.
    [[nodiscard]] std::optional<std::string> value(std::string_view key) const;
    /// The time after which the order has no effect; nothing for one that has none, or when it is not there.
    [[nodiscard]] std::optional<TimePoint> end(std::string_view key) const;
    [[nodiscard]] std::vector<std::string> keys() const;
    /// True when the order of the key is in the other orders, too, or a later one.
    [[nodiscard]] bool isIn(std::string_view key, const SharedOrders &other) const;
};

[[nodiscard]] std::string userOrder(std::string_view user);
[[nodiscard]] std::string addressOrder(Ipv4Address address);
inline constexpr const char *drainOrder = "drain";

} // namespace quorvane::service
