#include "SharedOrders.h"

#include "JsonTime.h"

#include <algorithm>

namespace quorvane::service {

namespace {

using nlohmann::json;
using TimePoint = SharedOrders::TimePoint;

constexpr std::string_view userPrefix = "users/";
constexpr std::string_view addressPrefix = "addresses/";
constexpr std::size_t maximumUser = 256;

std::int64_t numberOf(TimePoint time) {
    return time.time_since_epoch().count();
}

/// Throws json::exception when there is none.
TimePoint timeIn(const json &object, const char *key) {
    return timeUnder<TimePoint::duration>(object, key);
}

/// The users' tokens contain nothing else.
bool isUser(std::string_view user) {
    return !user.empty() && user.size() <= maximumUser &&
           std::all_of(user.begin(), user.end(), [](char letter) {
               return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
                      (letter >= '0' && letter <= '9');
           });
}

std::optional<std::string_view> after(std::string_view prefix, std::string_view key) {
    return key.starts_with(prefix) ? std::optional(key.substr(prefix.size())) : std::nullopt;
}

} // namespace

std::string userOrder(std::string_view user) {
    return std::string(userPrefix) + std::string(user);
}

std::string addressOrder(Ipv4Address address) {
    return std::string(addressPrefix) + address.text();
}

bool SharedOrders::add(std::string_view key, std::string_view value) {
    try {
        const json object = json::parse(value);
        if (key == drainOrder) {
            const Drain read{object.at("on").get<bool>(), timeIn(object, "given")};
            drain = read.given >= drain.given ? read : drain;
        } else if (const auto user = after(userPrefix, key)) {
            if (!isUser(*user)) {
                return false;
            }
            const TimePoint end = timeIn(object, "end");
            TimePoint &known = users[std::string(*user)];
            known = std::max(known, end);
        } else if (const auto name = after(addressPrefix, key)) {
            const auto address = Ipv4Address::parse(*name);
            const Address read{timeIn(object, "issued_until"), timeIn(object, "end")};
            if (!address) {
                return false;
            }
            Address &known = addresses[*address];
            known = {std::max(known.issuedUntil, read.issuedUntil), std::max(known.end, read.end)};
        } else {
            return false;
        }
        return true;
    } catch (const json::exception &) {
        return false;
    }
}

void SharedOrders::remove(std::string_view key) {
    if (key == drainOrder) {
        drain = {};
    } else if (const auto user = after(userPrefix, key)) {
        users.erase(std::string(*user));
    } else if (const auto name = after(addressPrefix, key)) {
        if (const auto address = Ipv4Address::parse(*name)) {
            addresses.erase(*address);
        }
    }
}

std::optional<std::string> SharedOrders::value(std::string_view key) const {
    if (key == drainOrder && drain.given != TimePoint()) {
        return json{{"on", drain.on}, {"given", numberOf(drain.given)}}.dump();
    }
    if (const auto user = after(userPrefix, key)) {
        const auto found = users.find(*user);
        return found == users.end() ? std::nullopt
                                    : std::optional(json{{"end", numberOf(found->second)}}.dump());
    }
    if (const auto name = after(addressPrefix, key)) {
        const auto address = Ipv4Address::parse(*name);
        const auto found = address ? addresses.find(*address) : addresses.end();
        if (found != addresses.end()) {
            return json{{"issued_until", numberOf(found->second.issuedUntil)},
                        {"end", numberOf(found->second.end)}}
                .dump();
        }
    }
    return std::nullopt;
}

std::optional<TimePoint> SharedOrders::end(std::string_view key) const {
    if (const auto user = after(userPrefix, key)) {
        const auto found = users.find(*user);
        return found == users.end() ? std::nullopt : std::optional(found->second);
    }
    if (const auto name = after(addressPrefix, key)) {
        const auto address = Ipv4Address::parse(*name);
        const auto found = address ? addresses.find(*address) : addresses.end();
        return found == addresses.end() ? std::nullopt : std::optional(found->second.end);
    }
    return std::nullopt;
}

std::vector<std::string> SharedOrders::keys() const {
    std::vector<std::string> keys;
    if (drain.given != TimePoint()) {
        keys.emplace_back(drainOrder);
    }
    for (const auto &[user, end] : users) {
        keys.push_back(userOrder(user));
    }
    for (const auto &[address, order] : addresses) {
        keys.push_back(addressOrder(address));
    }
    return keys;
}

bool SharedOrders::isIn(std::string_view key, const SharedOrders &other) const {
    if (key == drainOrder) {
        return other.drain.given >= drain.given;
    }
    if (const auto user = after(userPrefix, key)) {
        const auto mine = users.find(*user);
        const auto found = other.users.find(*user);
        return mine == users.end() || (found != other.users.end() && found->second >= mine->second);
    }
    const auto name = after(addressPrefix, key);
    const auto address = name ? Ipv4Address::parse(*name) : std::nullopt;
    const auto mine = address ? addresses.find(*address) : addresses.end();
    if (mine == addresses.end()) {
        return true;
    }
    const auto found = other.addresses.find(*address);
    return found != other.addresses.end() && found->second.issuedUntil >= mine->second.issuedUntil;
}

} // namespace quorvane::service
