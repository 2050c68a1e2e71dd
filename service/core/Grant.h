#pragma once

#include "Config.h"
#include "Ipv4.h"

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::service {

/// What a configuration request was granted: one user may log in at one server and is lent one address.
///
/// A grant is not stored where it is made. It travels in the subject of the certificate that the
/// configuration contains, and OpenVPN reports that subject for each login.
struct Grant {
    using TimePoint = std::chrono::sys_time<std::chrono::microseconds>;

    std::string user;
    Ipv4Address address; ///< to lend
    Protocol protocol = Protocol::Udp;
    TimePoint issued; ///< of two grants of a user the later one counts
    TimePoint limit;  ///< the first login must come before

    friend bool operator==(const Grant &, const Grant &) = default;
};

/// An attribute of a certificate's subject: its short name and its text.
struct SubjectAttribute {
    const char *name;
    std::string text;
};

[[nodiscard]] std::vector<SubjectAttribute> subjectOf(const Grant &grant);

/// The variables of a login in which OpenVPN reports the subject of the client's certificate.
[[nodiscard]] const std::vector<std::string_view> &grantVariables();

/// Reads the variables of a login. Nothing when one is missing or malformed.
[[nodiscard]] std::optional<Grant>
grantOf(const std::function<std::string(std::string_view variable)> &variables);

} // namespace quorvane::service
