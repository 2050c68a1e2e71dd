#include "UsedGrants.h"

#include <cstdio>
#include <vector>

namespace quorvane::service {

namespace {

/// So many lines more than twice those that count are not worth writing the journal anew.
constexpr std::size_t sparseLines = 1000;

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
    const UsedGrant used{attempt.user,   attempt.grant->issued, attempt.grant->address,
                         attempt.source, std::nullopt,          user->end};
    remember(used);
    write(used);
    return {};
}

Result<> UsedGrants::restore(const std::string &journalPath) {
    m_journal.emplace();
    auto grants = m_journal->open(journalPath);
    if (!grants) {
        return Failure{grants.error()};
    }
    for (UsedGrant &grant : std::move(grants).value()) {
        remember(std::move(grant));
    }
    return rewriteJournal();
}

void UsedGrants::remember(UsedGrant grant) {
    if (!m_used.contains(grant.user)) {
        while (!m_byEnd.empty() && m_used.size() >= m_maximum) {
            dropFirst();
        }
    }
    m_byEnd.emplace(grant.userEnd, grant.user);
    m_used.insert_or_assign(grant.user, std::move(grant));
}

void UsedGrants::write(const UsedGrant &grant) {
    if (!m_journal) {
        return;
    }
    m_journal->append(grant);
    // Without this the journal would grow with each login.
    if (m_journal->lines() > 2 * m_used.size() + sparseLines) {
        if (const auto written = rewriteJournal(); !written) {
            std::fprintf(stderr, "quorvane-service: %s\n", written.error().c_str());
        }
    }
}

Result<> UsedGrants::rewriteJournal() {
    dropExpired();
    std::vector<UsedGrant> grants;
    grants.reserve(m_used.size());
    for (const auto &[user, grant] : m_used) {
        grants.push_back(grant);
    }
    return m_journal->rewrite(grants);
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
    const UsedGrant &used = found->second;
    if (grant->issued < used.issued || grant->address != used.address) {
        return Refusal::Replaced;
    }
    return used.source.empty() || used.source != attempt.source ? Refusal::UsedElsewhere : Refusal::None;
}

void UsedGrants::setTunnelAddress(const std::string &user, Ipv4Address tunnel) {
    const auto found = m_used.find(user);
    if (found != m_used.end() && found->second.tunnel != tunnel) {
        found->second.tunnel = tunnel;
        write(found->second);
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
