#pragma once

#include "Grant.h"
#include "UserTokens.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane::service {

using Clock = std::function<std::chrono::system_clock::time_point()>;

struct Credentials {
    std::string user;
    std::string password;
};

/// What was issued and is refused now, although its own time has not passed.
class Revocations {
public:
    virtual ~Revocations() = default;
    [[nodiscard]] virtual bool revokesUser(std::string_view user) const = 0;
    [[nodiscard]] virtual bool revokesGrant(const Grant &grant) const = 0;
};

/// The VPN users of server lists and the grants of configuration requests. Nothing is stored: a user is known
/// because its name is sealed, and a grant travels in a certificate. Use it from one thread only.
class VpnUsers {
public:
    /// Neither `tokens` nor `revocations` is owned. Nothing is revoked when the latter is null.
    VpnUsers(const UserTokens &tokens, std::chrono::seconds lifetime, std::chrono::seconds grantLifetime,
             Clock clock, const Revocations *revocations = nullptr);

    /// A new user.
    [[nodiscard]] Credentials issue() const;
    /// Nothing for a user that was never issued, has expired or is revoked.
    [[nodiscard]] std::optional<UserTokens::User> find(std::string_view user) const;
    /// Lets the user log in with the address. Nothing as for find(). Of two grants the later one has the
    /// later time of issue.
    std::optional<Grant> grant(const std::string &user, Ipv4Address address, Protocol protocol);

    [[nodiscard]] bool isRevoked(const Grant &grant) const {
        return m_revocations != nullptr && m_revocations->revokesGrant(grant);
    }

private:
    const UserTokens &m_tokens;
    std::chrono::seconds m_lifetime;
    std::chrono::seconds m_grantLifetime;
    Clock m_clock;
    const Revocations *m_revocations;
    Grant::TimePoint m_lastIssued;
};

} // namespace quorvane::service
