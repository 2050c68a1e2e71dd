#include "VpnUsers.h"

#include <algorithm>

namespace quorvane::service {

using std::chrono::floor;
using std::chrono::microseconds;

VpnUsers::VpnUsers(const UserTokens &tokens, std::chrono::seconds lifetime,
                   std::chrono::seconds grantLifetime, Clock clock, const Revocations *revocations)
    : m_tokens(tokens), m_lifetime(lifetime), m_grantLifetime(grantLifetime), m_clock(std::move(clock)),
      m_revocations(revocations) {}

Credentials VpnUsers::issue() const {
    auto sealed = m_tokens.seal(m_clock() + m_lifetime);
    return {std::move(sealed.token), std::move(sealed.password)};
}

std::optional<UserTokens::User> VpnUsers::find(std::string_view user) const {
    auto opened = m_tokens.open(user);
    const bool revoked = m_revocations != nullptr && m_revocations->revokesUser(user);
    return opened && opened->end > m_clock() && !revoked ? opened : std::nullopt;
}

std::optional<Grant> VpnUsers::grant(const std::string &user, Ipv4Address address, Protocol protocol) {
    const auto found = find(user);
    if (!found) {
        return std::nullopt;
    }
    // Also after the clock was set back, and for two requests within a microsecond.
    m_lastIssued = std::max(floor<microseconds>(m_clock()), m_lastIssued + microseconds(1));
    const auto limit = std::min(m_clock() + m_grantLifetime, found->end);
    return Grant{user, address, protocol, m_lastIssued, floor<microseconds>(limit)};
}

} // namespace quorvane::service
