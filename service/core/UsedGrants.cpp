#include "UsedGrants.h"

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

UsedGrants::UsedGrants(const VpnUsers &users, Offer offer, Clock clock, std::size_t maximum)
    : m_users(users), m_offer(std::move(offer)), m_clock(std::move(clock)), m_maximum(maximum) {}

UsedGrants::Login UsedGrants::login(const Attempt &attempt) {
    dropExpired();
    const auto user = m_users.find(attempt.user);
    const Refusal refusal = refusalOf(attempt, user);
    if (refusal != Refusal::None) {
        return {refusal, {}};
    }
    const auto found = m_used.find(attempt.user);
    if (found != m_used.end() && found->second.issued == attempt.grant->issued) {
        return {Refusal::None, found->second.tunnel};
    }
    while (!m_byEnd.empty() && found == m_used.end() && m_used.size() >= m_maximum) {
        dropFirst();
    }
    m_used[attempt.user] =
        Used{attempt.grant->issued, attempt.grant->address, attempt.source, std::nullopt, user->end};
    m_byEnd.emplace(user->end, attempt.user);
    return {};
}

UsedGrants::Refusal UsedGrants::refusalOf(const Attempt &attempt,
                                          const std::optional<UserTokens::User> &user) const {
    if (!user) {
        return Refusal::UnknownUser;
    }
    if (!sameSecret(user->password, attempt.password)) {
        return Refusal::WrongPassword;
    }
    const auto &grant = attempt.grant;
    if (!grant) {
        return Refusal::NoGrant;
    }
    if (grant->user != attempt.user) {
        return Refusal::OtherUser;
    }
    if (grant->protocol != attempt.protocol) {
        return Refusal::OtherServer;
    }
    if (!m_offer.lends(grant->address)) {
        return Refusal::ForeignAddress;
    }
    if (m_users.isRevoked(*grant)) {
        return Refusal::Revoked;
    }
    const auto found = m_used.find(attempt.user);
    if (found == m_used.end() || grant->issued > found->second.issued) {
        if (m_offer.draining()) {
            return Refusal::Draining;
        }
        return m_clock() < grant->limit ? Refusal::None : Refusal::TooLate;
    }
    const Used &used = found->second;
    if (grant->issued < used.issued || grant->address != used.address) {
        return Refusal::Replaced;
    }
    return used.source.empty() || used.source != attempt.source ? Refusal::UsedElsewhere : Refusal::None;
}

void UsedGrants::setTunnelAddress(const std::string &user, Ipv4Address tunnel) {
    const auto found = m_used.find(user);
    if (found != m_used.end()) {
        found->second.tunnel = tunnel;
    }
}

std::size_t UsedGrants::size() {
    dropExpired();
    return m_used.size();
}

void UsedGrants::dropExpired() {
    const TimePoint now = m_clock();
    while (!m_byEnd.empty() && m_byEnd.begin()->first <= now) {
        dropFirst();
    }
}

void UsedGrants::dropFirst() {
    m_used.erase(m_byEnd.begin()->second);
    m_byEnd.erase(m_byEnd.begin());
}

std::string_view refusalName(UsedGrants::Refusal refusal) {
    switch (refusal) {
    case UsedGrants::Refusal::None:
        return "accepted";
    case UsedGrants::Refusal::UnknownUser:
        return "unknown or expired user";
    case UsedGrants::Refusal::WrongPassword:
        return "wrong password";
    case UsedGrants::Refusal::NoGrant:
        return "the certificate contains no grant";
    case UsedGrants::Refusal::OtherUser:
        return "the grant is another user's";
    case UsedGrants::Refusal::OtherServer:
        return "the grant is for another server";
    case UsedGrants::Refusal::ForeignAddress:
        return "the address is not lent here";
    case UsedGrants::Refusal::Revoked:
        return "the grant is revoked";
    case UsedGrants::Refusal::Draining:
        return "the gateway drains";
    case UsedGrants::Refusal::TooLate:
        return "no fresh grant";
    case UsedGrants::Refusal::Replaced:
        return "a later grant was used";
    case UsedGrants::Refusal::UsedElsewhere:
        return "the grant was used elsewhere";
    }
    return "";
}

} // namespace quorvane::service
