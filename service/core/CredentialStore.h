#pragma once

#include "Ipv4.h"
#include "UserTokens.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace quorvane::service {

using Clock = std::function<std::chrono::system_clock::time_point()>;

struct Credentials {
    std::string user;
    std::string password;
};

/// The VPN users of server lists and what they were granted.
///
/// Each server list issues one user, of which nothing is stored. A configuration request grants that user one
/// lent address; a later grant replaces the one before. The first login must come soon after the grant. Only
/// the address from which it came may log in again, to keep the lent address. So a stolen user name and
/// password are useless elsewhere without a new grant, and useless everywhere once the user has expired.
/// Grants are stored: an unused one until the limit of its first login, a used one until its user expires.
/// Use it from one thread only.
class CredentialStore {
public:
    enum class Refusal { None, UnknownUser, WrongPassword, NotGranted, UsedElsewhere };

    struct Login {
        Refusal refusal = Refusal::None;
        Ipv4Address address;               ///< the address to lend, when not refused
        std::optional<Ipv4Address> tunnel; ///< the tunnel address of the previous login with this grant
    };

    /// `tokens` is not owned. `maximumUnused`: when so many grants wait for their first login, a new one
    /// replaces the oldest of them. Used grants are never replaced by those of other users.
    CredentialStore(const UserTokens &tokens, std::chrono::seconds lifetime,
                    std::chrono::seconds grantLifetime, Clock clock, std::size_t maximumUnused = 100000);

    [[nodiscard]] Credentials issue() const;
    /// False for a user that was never issued or has expired.
    [[nodiscard]] bool knows(const std::string &user) const;
    /// Lets the user log in with the address. False as for knows().
    bool grant(const std::string &user, Ipv4Address address);
    /// Checks a login from `source`, the client's own address. An accepted login ties the grant to that
    /// source. From an unknown source ("") a grant can be used once only.
    Login login(const std::string &user, std::string_view password, const std::string &source);
    /// Remembers the tunnel address of a login with the user's grant.
    void setTunnelAddress(const std::string &user, Ipv4Address tunnel);

    /// The number of stored grants.
    [[nodiscard]] std::size_t size();

private:
    using TimePoint = UserTokens::TimePoint;

    struct Grant {
        Ipv4Address address;
        TimePoint end;                     ///< the first login must come before
        TimePoint userEnd;                 ///< when the user expires
        std::uint64_t number = 0;          ///< of this grant; a later one of the same user has another
        std::optional<std::string> source; ///< of the first login; unset before it
        std::optional<Ipv4Address> tunnel; ///< tunnel address of the last login
    };

    struct Unused {
        std::string user;
        std::uint64_t number = 0;
        TimePoint end;
    };

    /// Nothing for a user that was never issued or has expired.
    [[nodiscard]] std::optional<UserTokens::User> open(const std::string &user) const;
    void dropExpired();
    void dropOldestUnused();

    const UserTokens &m_tokens;
    std::chrono::seconds m_lifetime;
    std::chrono::seconds m_grantLifetime;
    Clock m_clock;
    std::size_t m_maximumUnused;
    std::uint64_t m_grantCount = 0;
    std::unordered_map<std::string, Grant> m_grants;
    std::deque<Unused> m_unused; ///< oldest first; a grant that was used or replaced meanwhile is left in it
    std::set<std::pair<TimePoint, std::string>> m_usedByEnd; ///< the users of used grants
};

/// A short text for a log line.
[[nodiscard]] std::string_view refusalName(CredentialStore::Refusal refusal);

} // namespace quorvane::service
