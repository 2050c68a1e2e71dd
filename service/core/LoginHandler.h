#pragma once

#include "ManagementParser.h"
#include "TunnelAddresses.h"
#include "UsedGrants.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace quorvane::service {

/// Maps tunnel addresses to lent addresses. Calls take effect in their order.
class AddressLeaseTable {
public:
    virtual ~AddressLeaseTable() = default;
    /// Lets traffic of the tunnel address leave with the lent one. `done` is called later, once, with true
    /// for success.
    virtual void lend(Ipv4Address tunnel, Ipv4Address lent, std::function<void(bool)> done) = 0;
    /// Ends the lease of an address for which lend() was called before.
    virtual void release(Ipv4Address tunnel) = 0;
};

/// Accepts or refuses the logins of one OpenVPN server: receives the server's events and sends it commands.
///
/// A login is accepted only after its lease is in the table, so no packet of a session can leave with another
/// address than the requested one. A user has one session at a time on a server: the newest. A further login
/// with the same grant receives the same tunnel address if that is free.
///
/// Make it with std::make_shared: the table may answer after the connection to the server has ended and the
/// handler's owner is destroyed.
class LoginHandler : public std::enable_shared_from_this<LoginHandler> {
public:
    using Send = std::function<void(const std::string &commands)>;
    using Log = std::function<void(const std::string &line)>;

    /// None of the references is owned.
    LoginHandler(Protocol protocol, UsedGrants &grants, TunnelAddresses &addresses, AddressLeaseTable &table,
                 Send send, Log log);

    void handle(const ManagementEvent &event);
    /// Ends all sessions. Nothing is sent after this.
    void connectionLost();

    /// Ends the sessions for which `ends` returns true, given the grant of the login. Returns their number.
    /// Their clients end, too, instead of trying again.
    std::size_t endSessions(const std::function<bool(const Grant &)> &ends);

    /// True while the server accepts clients.
    [[nodiscard]] bool ready() const { return m_ready; }

    [[nodiscard]] std::size_t sessionCount() const { return m_sessions.size(); }

    /// The number of logins that were refused for each reason.
    [[nodiscard]] const std::map<std::string, std::uint64_t> &refusedLogins() const {
        return m_refusedLogins;
    }

private:
    struct Session {
        std::string user;
        std::string password;
        Ipv4Address tunnel;
        Grant grant;
        std::uint64_t key = 0;
    };

    void connect(const ManagementEvent &event);
    void reauthenticate(const ManagementEvent &event);
    void leaseDone(std::uint64_t client, Ipv4Address tunnel, bool worked);
    void endEarlierSession(const std::string &user);
    void endSession(std::uint64_t client);
    void deny(std::uint64_t client, std::uint64_t key, const std::string &reason);

    Protocol m_protocol;
    UsedGrants &m_grants;
    TunnelAddresses &m_addresses;
    AddressLeaseTable &m_table;
    Send m_send;
    Log m_log;
    std::map<std::uint64_t, Session> m_sessions;
    std::map<std::string, std::uint64_t> m_refusedLogins;
    bool m_ready = false;
};

} // namespace quorvane::service
