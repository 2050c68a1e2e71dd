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
/// Gives `length` random letters and digits.
using RandomText = std::function<std::string(std::size_t length)>;

/// Random letters and digits from the system's random source.
std::string systemRandomText(std::size_t length);

struct Credentials {
    std::string user;
    std::string password;
};

/// The VPN users of all server-list answers given out.
///
/// Each answer issues one user. A configuration request grants that user one lent address; a later grant
/// takes the place of the one before. The first login must come soon after the grant, and only the place
/// that it came from may log in again, to keep its address. So a user and password seen by someone
/// elsewhere are worth nothing without a fresh grant, and nothing at all once their life is over.
/// Used from one thread.
class CredentialStore {
public:
    enum class Refusal { None, UnknownUser, WrongPassword, NotGranted, UsedElsewhere };

    struct Login {
        Refusal refusal = Refusal::None;
        Ipv4Address address;               ///< what to lend, when not refused
        std::optional<Ipv4Address> tunnel; ///< the tunnel address of the grant's login before this one
    };

    /// `most` bounds the number of users kept; the oldest make room.
    CredentialStore(std::chrono::seconds lifetime, std::chrono::seconds grantLifetime, Clock clock,
                    RandomText random, std::size_t most = 100000);

    Credentials issue();
    /// False for a user that was never issued or has expired.
    [[nodiscard]] bool knows(const std::string &user);
    /// Lets the user log in with the address; false as for `knows`.
    bool grant(const std::string &user, Ipv4Address address);
    /// Checks a login from `source`, the client's own address; a right one ties its grant to that place.
    /// An unknown place ("") may use a grant, but not again.
    Login login(const std::string &user, std::string_view password, const std::string &source);
    /// Notes the tunnel address that the user's grant is used with.
    void usesTunnel(const std::string &user, Ipv4Address tunnel);

    [[nodiscard]] std::size_t size() const { return m_users.size(); }

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    struct Grant {
        Ipv4Address address;
        TimePoint end;                     ///< of the time for its first login
        std::optional<std::string> source; ///< where that login came from
        std::optional<Ipv4Address> tunnel; ///< of the last login
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
    std::size_t m_most;
    std::unordered_map<std::string, User> m_users;
    std::deque<Issued> m_byAge; ///< all live equally long, so the first to expire is the first issued
};

/// One word for a log line.
std::string_view refusalName(CredentialStore::Refusal refusal);

} // namespace quorvane::service
