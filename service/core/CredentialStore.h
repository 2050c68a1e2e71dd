#pragma once

#include "Ipv4.h"

#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quorvane::service {

using Clock = std::function<std::chrono::steady_clock::time_point()>;
/// Returns `length` random letters and digits.
using RandomText = std::function<std::string(std::size_t length)>;

/// Random letters and digits from the system's random source. Throws std::runtime_error when it fails.
[[nodiscard]] std::string systemRandomText(std::size_t length);

struct Credentials {
    std::string user;
    std::string password;
};

/// The VPN users of all server lists that were sent.
///
/// Each server list issues one user. A configuration request grants that user one lent address; a later grant
/// replaces the one before. The first login must come soon after the grant. Only the address from which it
/// came may log in again, to keep the lent address. So a stolen user name and password are useless elsewhere
/// without a new grant, and useless everywhere once the user has expired. Use it from one thread only.
class CredentialStore {
public:
    enum class Refusal { None, UnknownUser, WrongPassword, NotGranted, UsedElsewhere };

    struct Login {
        Refusal refusal = Refusal::None;
        Ipv4Address address;               ///< the address to lend, when not refused
        std::optional<Ipv4Address> tunnel; ///< the tunnel address of the previous login with this grant
    };

    /// `maximumUsers`: when so many users are known, a new one replaces the oldest.
    CredentialStore(std::chrono::seconds lifetime, std::chrono::seconds grantLifetime, Clock clock,
                    RandomText random, std::size_t maximumUsers = 100000);

    Credentials issue();
    /// False for a user that was never issued or has expired.
    [[nodiscard]] bool knows(const std::string &user);
    /// Lets the user log in with the address. False as for knows().
    bool grant(const std::string &user, Ipv4Address address);
    /// Checks a login from `source`, the client's own address. An accepted login ties the grant to that
    /// source. From an unknown source ("") a grant can be used once only.
    Login login(const std::string &user, std::string_view password, const std::string &source);
    /// Remembers the tunnel address of a login with the user's grant.
    void setTunnelAddress(const std::string &user, Ipv4Address tunnel);

    [[nodiscard]] std::size_t size() const { return m_users.size(); }

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    struct Grant {
        Ipv4Address address;
        TimePoint end;                     ///< the first login must come before
        std::optional<std::string> source; ///< of the first login; unset before it
        std::optional<Ipv4Address> tunnel; ///< tunnel address of the last login
    };

    struct User {
        std::string password;
        std::optional<Grant> grant;
    };

    struct Issued {
        std::string user;
        TimePoint end;
    };

    void dropExpired();
    void dropOldest();

    std::chrono::seconds m_lifetime;
    std::chrono::seconds m_grantLifetime;
    Clock m_clock;
    RandomText m_random;
    std::size_t m_maximumUsers;
    std::unordered_map<std::string, User> m_users;
    std::deque<Issued> m_byAge; ///< oldest first; all have the same lifetime, so it expires first
};

/// A short text for a log line.
[[nodiscard]] std::string_view refusalName(CredentialStore::Refusal refusal);

} // namespace quorvane::service
