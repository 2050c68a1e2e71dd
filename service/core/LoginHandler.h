#pragma once

#include "CredentialStore.h"
#include "ManagementParser.h"
#include "TunnelAddresses.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace quorvane::service {

/// Where tunnel addresses are tied to lent addresses. Calls take effect in the order they are made.
class LendingTable {
public:
    virtual ~LendingTable() = default;
    /// Lets traffic of the tunnel address leave with the lent one. `done` is called once, later, with
    /// whether it worked.
    virtual void lend(Ipv4Address tunnel, Ipv4Address lent, std::function<void(bool)> done) = 0;
    /// Ends it; never called for an address that `lend` was not called for before.
    virtual void takeBack(Ipv4Address tunnel) = 0;
};

/// Decides over the logins of one OpenVPN server, from the server's events to the commands it gets back.
///
/// A login is answered only when its row is in the lending table, so no packet of a session can leave
/// with another address than the one that was asked for. A user has one session at a time on a server: the
/// newest. A login again on the same grant gets the tunnel address it had, if that is free. Make it with
/// std::make_shared: answers of the table may come after the connection to the server, and with it the desk's
/// owner, is gone.
class LoginDesk : public std::enable_shared_from_this<LoginDesk> {
public:
    using Send = std::function<void(const std::string &commands)>;
    using Note = std::function<void(const std::string &line)>;

    /// None of the references is owned.
    LoginDesk(CredentialStore &credentials, TunnelAddresses &addresses, LendingTable &table, Send send,
              Note note);

    void handle(const ManagementEvent &event);
    /// The server is gone: its sessions end and nothing is sent any more.
    void connectionLost();

    /// The server accepts clients.
    [[nodiscard]] bool ready() const { return m_ready; }

    [[nodiscard]] std::size_t sessions() const { return m_sessions.size(); }

private:
    struct Session {
        std::string user;
        std::string password;
        Ipv4Address tunnel;
        Ipv4Address lent;
        std::uint64_t key = 0;
    };

    void connect(const ManagementEvent &event);
    void reauthenticate(const ManagementEvent &event);
    void lent(std::uint64_t client, Ipv4Address tunnel, bool worked);
    void endEarlierSession(const std::string &user);
    void endSession(std::uint64_t client);
    void deny(std::uint64_t client, std::uint64_t key, const std::string &reason);

    CredentialStore &m_credentials;
    TunnelAddresses &m_addresses;
    LendingTable &m_table;
    Send m_send;
    Note m_note;
    std::map<std::uint64_t, Session> m_sessions;
    bool m_ready = false;
};

} // namespace quorvane::service
