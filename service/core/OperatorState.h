#pragma once

#include "Grant.h"
#include "VpnUsers.h"
#include "common/Result.h"

#include <chrono>
#include <map>
#include <string>
#include <string_view>

namespace quorvane::service {

/// What the operator has ordered while the service runs: whether it drains, and what is revoked. Every change
/// is written to a file, so that it counts after a restart, too. Use it from one thread only.
class OperatorState : public Revocations {
public:
    using TimePoint = std::chrono::system_clock::time_point;

    explicit OperatorState(Clock clock) : m_clock(std::move(clock)) {}

    /// Reads the file, and writes changes to it from now on. A file that does not exist contains nothing.
    Result<> load(const std::string &path);

    /// While it drains, the service lends nothing to new sessions.
    [[nodiscard]] bool draining() const { return m_draining; }

    /// These count at once also when the file cannot be written, which is the failure they report.
    Result<> setDraining(bool draining);
    /// Refuses the user, who would expire at `end`.
    Result<> revokeUser(const std::string &user, TimePoint end);
    /// Refuses all grants of the address that were issued until now. `end`: when the users of all of them
    /// have expired.
    Result<> revokeAddress(Ipv4Address address, TimePoint end);

    [[nodiscard]] bool revokesUser(std::string_view user) const override;
    [[nodiscard]] bool revokesGrant(const Grant &grant) const override;

    /// The number of users and addresses that are revoked.
    [[nodiscard]] std::size_t revocations() const { return m_users.size() + m_addresses.size(); }

private:
    struct Address {
        Grant::TimePoint issuedUntil;
        TimePoint end;
    };

    Result<> read(std::string_view text);
    Result<> write();
    void dropExpired();

    Clock m_clock;
    std::string m_path; ///< empty before load()
    bool m_draining = false;
    std::map<std::string, TimePoint, std::less<>> m_users;
    std::map<Ipv4Address, Address> m_addresses;
};

} // namespace quorvane::service
