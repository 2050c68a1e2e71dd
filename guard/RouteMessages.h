#pragma once

#include "Routing.h"

struct nlmsghdr;

namespace quorvane::guard {

/// What the kernel's netlink messages contain. Absent: the message is about something that is not part of
/// NetworkState.
[[nodiscard]] std::optional<Route> routeOf(const nlmsghdr *message);
[[nodiscard]] std::optional<Rule> ruleOf(const nlmsghdr *message);
[[nodiscard]] std::optional<DeviceAddress> addressOf(const nlmsghdr *message);

/// A route as it was stored; absent when the bytes are not a route's message.
[[nodiscard]] std::optional<Route> storedRoute(const std::string &message);

/// The body of the request that makes or removes the route.
[[nodiscard]] std::string requestFor(const Route &route);

} // namespace quorvane::guard
