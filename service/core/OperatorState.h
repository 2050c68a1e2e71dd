#pragma once

#include "Grant.h"
#include "SharedOrders.h"
#include "VpnUsers.h"
#include "common/Result.h"

#include <chrono>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::service {

/// What the operator has ordered while the service runs: whether it drains, and what is revoked. Every change
/// is written to a file, so that it counts after a restart, too. Use it from one thread only.
class OperatorState : public Revocations {
public:
    using TimePoint = std::chrono::system_clock::time_point;

    explicit OperatorState(Clock clock) : m_clock(std::move(clock)) {}

    /// Call it before load(): there are other nodes, for which the orders are, too. All but setDraining() are
    /// pending until takeShared() reports that the other nodes can know them.
    void share() { m_shares = true; }

    /// Reads the file, and writes changes to it from now on. A file that does not exist contains nothing.
    Result<> load(const std::string &path);

    /// While it drains, the service lends nothing to new sessions.
    [[nodiscard]] bool draining() const { return m_draining || (m_shares && m_orders.drain.on); }

    /// The drain of this process alone.
    [[nodiscard]] bool drainingHere() const { return m_draining; }

    /// These count at once also when the file cannot be written, which is the failure they report.
    Result<> setDraining(bool draining);
    /// Of all nodes.
    Result<> setAllDraining(bool draining);
    /// Refuses the user, who would expire at `end`.
    Result<> revokeUser(const std::string &user, TimePoint end);
    /// Refuses all grants of the address that were issued until now. `end`: when the users of all of them
    /// have expired.
    Result<> revokeAddress(Ipv4Address address, TimePoint end);

    /// Takes the orders that all nodes can know. Others that are not pending have been withdrawn.
    Result<> takeShared(const SharedOrders &shared);

    /// The keys of the orders that other nodes cannot know yet.
    [[nodiscard]] const std::set<std::string, std::less<>> &pending() const { return m_pending; }

    [[nodiscard]] const SharedOrders &orders() const { return m_orders; }

    [[nodiscard]] bool revokesUser(std::string_view user) const override;
    [[nodiscard]] bool revokesGrant(const Grant &grant) const override;

    /// The number of users and addresses that are revoked.
    [[nodiscard]] std::size_t revocations() const {
        return m_orders.users.size() + m_orders.addresses.size();
    }

private:
    Result<> read(std::string_view text);
    Result<> write();
    Result<> ordered(const std::string &key);
    void dropExpired();

    Clock m_clock;
    std::string m_path; ///< empty before load()
    bool m_shares = false;
    bool m_draining = false;
    SharedOrders m_orders;
    std::set<std::string, std::less<>> m_pending;
};

} // namespace quorvane::service
