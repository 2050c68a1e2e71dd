#include "CredentialStore.h"

#include <array>
#include <stdexcept>
#include <sys/random.h>
#include <utility>

namespace quorvane::service {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
constexpr std::size_t userLength = 20;
constexpr std::size_t passwordLength = 32;

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

std::string systemRandomText(std::size_t length) {
    // Bytes from 248 on are discarded: 248 is the largest multiple of 62 in a byte, so all characters are
    // equally likely.
    constexpr unsigned fairLimit = 256 / alphabet.size() * alphabet.size();
    std::string text;
    while (text.size() < length) {
        std::array<unsigned char, 64> bytes{};
        if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
            throw std::runtime_error("the system returned no random bytes");
        }
        for (const unsigned char byte : bytes) {
            if (byte < fairLimit && text.size() < length) {
                text += alphabet[byte % alphabet.size()];
            }
        }
    }
    return text;
}

CredentialStore::CredentialStore(std::chrono::seconds lifetime, std::chrono::seconds grantLifetime,
                                 Clock clock, RandomText random, std::size_t maximumUsers)
    : m_lifetime(lifetime), m_grantLifetime(grantLifetime), m_clock(std::move(clock)),
      m_random(std::move(random)), m_maximumUsers(maximumUsers) {}

Credentials CredentialStore::issue() {
    dropExpired();
    while (!m_byAge.empty() && m_byAge.size() >= m_maximumUsers) {
        dropOldest();
    }
    Credentials fresh{m_random(userLength), m_random(passwordLength)};
    while (m_users.contains(fresh.user)) {
        fresh.user = m_random(userLength);
    }
    m_users.emplace(fresh.user, User{fresh.password, std::nullopt});
    m_byAge.push_back({fresh.user, m_clock() + m_lifetime});
    return fresh;
}

bool CredentialStore::knows(const std::string &user) {
    dropExpired();
    return m_users.contains(user);
}

bool CredentialStore::grant(const std::string &user, Ipv4Address address) {
    dropExpired();
    const auto found = m_users.find(user);
    if (found == m_users.end()) {
        return false;
    }
    found->second.grant = Grant{address, m_clock() + m_grantLifetime, std::nullopt, std::nullopt};
    return true;
}

CredentialStore::Login CredentialStore::login(const std::string &user, std::string_view password,
                                              const std::string &source) {
    dropExpired();
    const auto found = m_users.find(user);
    if (found == m_users.end()) {
        return {Refusal::UnknownUser, {}, {}};
    }
    if (!sameSecret(found->second.password, password)) {
        return {Refusal::WrongPassword, {}, {}};
    }
    std::optional<Grant> &grant = found->second.grant;
    if (!grant || (!grant->source && grant->end <= m_clock())) {
        return {Refusal::NotGranted, {}, {}};
    }
    if (grant->source && (grant->source->empty() || *grant->source != source)) {
        return {Refusal::UsedElsewhere, {}, {}};
    }
    grant->source = source;
    return {Refusal::None, grant->address, grant->tunnel};
}

void CredentialStore::setTunnelAddress(const std::string &user, Ipv4Address tunnel) {
    const auto found = m_users.find(user);
    if (found != m_users.end() && found->second.grant) {
        found->second.grant->tunnel = tunnel;
    }
}

void CredentialStore::dropExpired() {
    const auto now = m_clock();
    while (!m_byAge.empty() && m_byAge.front().end <= now) {
        dropOldest();
    }
}

void CredentialStore::dropOldest() {
    m_users.erase(m_byAge.front().user);
    m_byAge.pop_front();
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
