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
/// Each answer issues one user. A configuration request grants that user exactly one login with one
/// lent address; a later grant takes the place of an unused one. So a user and password seen by someone
/// else are worth nothing without a fresh grant, and nothing at all once their life is over.
/// Used from one thread.
class CredentialStore {
public:
    enum class Refusal { None, UnknownUser, WrongPassword, NotGranted };

    struct Login {
        Refusal refusal = Refusal::None;
        Ipv4Address address; ///< what to lend, when not refused
    };

    /// `most` bounds the number of users kept; the oldest make room.
    CredentialStore(std::chrono::seconds lifetime, std::chrono::seconds grantLifetime, Clock clock,
                    RandomText random, std::size_t most = 100000);

    Credentials issue();
    /// False for a user that was never issued or has expired.
    [[nodiscard]] bool knows(const std::string &user);
    /// Lets the user log in once with the address; false as for `knows`.
    bool grant(const std::string &user, Ipv4Address address);
    /// Checks a login and, when it is right, uses its grant up.
    Login login(const std::string &user, std::string_view password);

    [[nodiscard]] std::size_t size() const { return m_users.size(); }

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    struct Grant {
        Ipv4Address address;
        TimePoint end;
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
