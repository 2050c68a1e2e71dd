#pragma once

#include "Grant.h"
#include "GrantJournal.h"
#include "VpnUsers.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace quorvane::service {

/// Judges the logins of a gateway by the grants in the clients' certificates, and remembers the grants that
/// were used.
///
/// The first login must come soon after the grant was issued. After it, only the address from which it came
/// may log in again, to keep the lent address, until the user expires. Once a grant was used, all earlier
/// ones of its user are refused. So what a thief reads from a configuration is useless elsewhere. With a
/// journal this holds over a restart, too. Use it from one thread only.
class UsedGrants {
public:
    enum class Refusal {
        None,
        UnknownUser,
        WrongPassword,
        NoGrant,
        OtherUser,
        OtherServer,
        ForeignAddress,
        Revoked,
        Draining,
        TooLate,
        Replaced,
        UsedElsewhere
    };

    struct Login {
        Refusal refusal = Refusal::None;
        std::optional<Ipv4Address> tunnel; ///< the tunnel address of the previous login with this grant
    };

    /// One login: the name and password, the certificate's grant if it has one, and where it comes from.
    struct Attempt {
        std::string user;
        std::string_view password;
        std::optional<Grant> grant;
        Protocol protocol = Protocol::Udp; ///< of the server
        std::string
            source; ///< the client's own address; with an unknown one ("") a grant is good for one login
    };

    /// What the gateway lends now.
    struct Offer {
        std::function<bool(Ipv4Address)> lends; ///< true for an address of the gateway
        std::function<bool()> draining = [] {
            return false;
        }; ///< true: to no new session
    };

    /// `users` is not owned. When so many grants are
    /// remembered, a new one replaces the one whose user expires first: that session stays, but a further
    /// login with its grant is refused.
    UsedGrants(const VpnUsers &users, Offer offer, Clock clock, std::size_t maximum = 500000);

    /// Remembers what the journal at that path contains, and writes further grants to it from now on.
    Result<> restore(const std::string &journalPath);

    /// Remembers the attempt's grant when it is accepted.
    Login login(const Attempt &attempt);
    /// Remembers the tunnel address of a login with the user's last used grant.
    void setTunnelAddress(const std::string &user, Ipv4Address tunnel);

    /// The number of remembered grants.
    [[nodiscard]] std::size_t size();

private:
    using TimePoint = UserTokens::TimePoint;

    [[nodiscard]] Refusal refusalOf(const Attempt &attempt,
                                    const std::optional<UserTokens::User> &user) const;
    void remember(UsedGrant grant);
    void write(const UsedGrant &grant);
    Result<> rewriteJournal();
    void dropExpired();
    void dropFirst();

    const VpnUsers &m_users;
    Offer m_offer;
    Clock m_clock;
    std::size_t m_maximum;
    std::optional<GrantJournal> m_journal;             ///< after restore()
    std::unordered_map<std::string, UsedGrant> m_used; ///< by user
    std::set<std::pair<TimePoint, std::string>> m_byEnd;
};

/// A short text for a log line.
[[nodiscard]] std::string_view refusalName(UsedGrants::Refusal refusal);

} // namespace quorvane::service
