#include "CredentialStore.h"

#include <algorithm>

namespace quorvane::service {

namespace {

/// Compares in a time that depends only on the lengths.
bool sameSecret(std::string_view left, std::string_view right) {
    if (left.size() != right.size()) {
        return false;
    }
    unsigned difference = 0;
    for (std::size_t i = 0; i < left.size(); ++i) {
        difference |= static_cast<unsigned char>(left[i]) ^ static_cast<unsigned char>(right[i]);
    }
    return difference == 0;
}

} // namespace

CredentialStore::CredentialStore(const UserTokens &tokens, std::chrono::seconds lifetime,
                                 std::chrono::seconds grantLifetime, Clock clock, std::size_t maximumUnused)
    : m_tokens(tokens), m_lifetime(lifetime), m_grantLifetime(grantLifetime), m_clock(std::move(clock)),
      m_maximumUnused(maximumUnused) {}

Credentials CredentialStore::issue() const {
    auto sealed = m_tokens.seal(m_clock() + m_lifetime);
    return {std::move(sealed.token), std::move(sealed.password)};
}

bool CredentialStore::knows(const std::string &user) const {
    return open(user).has_value();
}

bool CredentialStore::grant(const std::string &user, Ipv4Address address) {
    dropExpired();
    const auto opened = open(user);
    if (!opened) {
        return false;
    }
    while (!m_unused.empty() && m_unused.size() >= m_maximumUnused) {
        dropOldestUnused();
    }
    const TimePoint end = std::min(m_clock() + m_grantLifetime, opened->end);
    const std::uint64_t number = ++m_grantCount;
    m_grants[user] = Grant{address, end, opened->end, number, std::nullopt, std::nullopt};
    m_unused.push_back({user, number, end});
    return true;
}

CredentialStore::Login CredentialStore::login(const std::string &user, std::string_view password,
                                              const std::string &source) {
    const auto opened = open(user);
    if (!opened) {
        return {Refusal::UnknownUser, {}, {}};
    }
    if (!sameSecret(opened->password, password)) {
        return {Refusal::WrongPassword, {}, {}};
    }
    dropExpired();
    const auto found = m_grants.find(user);
    if (found == m_grants.end() || (!found->second.source && found->second.end <= m_clock())) {
        return {Refusal::NotGranted, {}, {}};
    }
    Grant &grant = found->second;
    if (grant.source && (grant.source->empty() || *grant.source != source)) {
        return {Refusal::UsedElsewhere, {}, {}};
    }
    grant.source = source;
    m_usedByEnd.emplace(grant.userEnd, user);
    return {Refusal::None, grant.address, grant.tunnel};
}

void CredentialStore::setTunnelAddress(const std::string &user, Ipv4Address tunnel) {
    const auto found = m_grants.find(user);
    if (found != m_grants.end()) {
        found->second.tunnel = tunnel;
    }
}

std::size_t CredentialStore::size() {
    dropExpired();
    return m_grants.size();
}

std::optional<UserTokens::User> CredentialStore::open(const std::string &user) const {
    auto opened = m_tokens.open(user);
    return opened && opened->end > m_clock() ? opened : std::nullopt;
}

void CredentialStore::dropExpired() {
    const TimePoint now = m_clock();
    while (!m_unused.empty() && m_unused.front().end <= now) {
        dropOldestUnused();
    }
    while (!m_usedByEnd.empty() && m_usedByEnd.begin()->first <= now) {
        m_grants.erase(m_usedByEnd.begin()->second);
        m_usedByEnd.erase(m_usedByEnd.begin());
    }
}

void CredentialStore::dropOldestUnused() {
    const Unused &oldest = m_unused.front();
    const auto found = m_grants.find(oldest.user);
    if (found != m_grants.end() && found->second.number == oldest.number && !found->second.source) {
        m_grants.erase(found);
    }
    m_unused.pop_front();
}

std::string_view refusalName(CredentialStore::Refusal refusal) {
    switch (refusal) {
    case CredentialStore::Refusal::None:
        return "accepted";
    case CredentialStore::Refusal::UnknownUser:
        return "unknown or expired user";
    case CredentialStore::Refusal::WrongPassword:
        return "wrong password";
    case CredentialStore::Refusal::NotGranted:
        return "no fresh grant";
    case CredentialStore::Refusal::UsedElsewhere:
        return "the grant was used elsewhere";
    }
    return "";
}

} // namespace quorvane::service
