#include "LoginHandler.h"

#include "RequestLog.h"

#include <algorithm>
#include <vector>

namespace quorvane::service {

LoginHandler::LoginHandler(Protocol protocol, UsedGrants &grants, TunnelAddresses &addresses,
                           AddressLeaseTable &table, Send send, Log log)
    : m_protocol(protocol), m_grants(grants), m_addresses(addresses), m_table(table), m_send(std::move(send)),
      m_log(std::move(log)) {}

void LoginHandler::handle(const ManagementEvent &event) {
    switch (event.kind) {
    case ManagementEvent::Kind::Hold:
        m_send("state on\nhold release\n");
        break;
    case ManagementEvent::Kind::State:
        m_ready = event.text == "CONNECTED";
        break;
    case ManagementEvent::Kind::Fatal:
    case ManagementEvent::Kind::Error:
        m_log("the server reports " + jsonText(event.text));
        break;
    case ManagementEvent::Kind::Connect:
        connect(event);
        break;
    case ManagementEvent::Kind::Reauth:
        reauthenticate(event);
        break;
    case ManagementEvent::Kind::Established:
        break;
    case ManagementEvent::Kind::Disconnect:
        endSession(event.client);
        break;
    }
}

void LoginHandler::connect(const ManagementEvent &event) {
    endSession(event.client); // a number that is used again belongs to a new client
    const std::string user = event.field("username");
    const std::string password = event.field("password");
    const std::string source =
        event.field(event.fields.contains("untrusted_ip") ? "untrusted_ip" : "untrusted_ip6");
    const auto grant = grantOf([&event](std::string_view name) { return event.field(name); });
    const auto login = m_grants.login({user, password, grant, m_protocol, source});
    if (login.refusal != UsedGrants::Refusal::None) {
        deny(event.client, event.key, std::string(refusalName(login.refusal)));
        return;
    }
    endEarlierSession(user);
    // A tunnel that reconnects keeps its address, so that the client can keep its device and routes.
    const auto tunnel = login.tunnel ? m_addresses.allocatePreferred(*login.tunnel) : m_addresses.allocate();
    if (!tunnel) {
        deny(event.client, event.key, "no tunnel address is free");
        return;
    }
    m_grants.setTunnelAddress(user, *tunnel);
    m_sessions[event.client] = {user, password, *tunnel, *grant, event.key};
    m_log("login of " + jsonText(user) + " from " + jsonText(source) + ": " + tunnel->text() + " lends " +
          grant->address.text());
    m_table.lend(*tunnel, grant->address,
                 [weak = weak_from_this(), client = event.client, tunnel = *tunnel](bool succeeded) {
                     if (const auto self = weak.lock()) {
                         self->leaseDone(client, tunnel, succeeded);
                     }
                 });
}

void LoginHandler::leaseDone(std::uint64_t client, Ipv4Address tunnel, bool succeeded) {
    const auto found = m_sessions.find(client);
    if (found == m_sessions.end() || found->second.tunnel != tunnel) {
        return; // the client disconnected while the table was changed
    }
    const std::uint64_t key = found->second.key;
    if (!succeeded) {
        endSession(client);
        deny(client, key, "the gateway cannot lend the address");
        return;
    }
    const std::string number = std::to_string(client) + ' ' + std::to_string(key);
    m_send("client-auth " + number + "\nifconfig-push " + tunnel.text() + ' ' +
           m_addresses.network().mask().text() + "\nEND\n");
}

void LoginHandler::reauthenticate(const ManagementEvent &event) {
    // The session was accepted with these credentials. It may continue when they have expired.
    const auto found = m_sessions.find(event.client);
    const bool same = found != m_sessions.end() && found->second.user == event.field("username") &&
                      found->second.password == event.field("password");
    if (same) {
        m_send("client-auth-nt " + std::to_string(event.client) + ' ' + std::to_string(event.key) + '\n');
    } else {
        deny(event.client, event.key, "not the session's credentials");
    }
}

void LoginHandler::endEarlierSession(const std::string &user) {
    // A client that was killed may log in again before the server has noticed its end.
    const auto found = std::find_if(m_sessions.begin(), m_sessions.end(),
                                    [&](const auto &entry) { return entry.second.user == user; });
    if (found != m_sessions.end()) {
        const std::uint64_t client = found->first;
        endSession(client);
        m_send("client-kill " + std::to_string(client) + '\n');
    }
}

std::size_t LoginHandler::endSessions(const std::function<bool(const Grant &)> &ends) {
    std::vector<std::uint64_t> clients;
    for (const auto &[client, session] : m_sessions) {
        if (ends(session.grant)) {
            clients.push_back(client);
        }
    }
    for (const std::uint64_t client : clients) {
        endSession(client);
        m_send("client-kill " + std::to_string(client) + " HALT\n");
    }
    return clients.size();
}

void LoginHandler::endSession(std::uint64_t client) {
    const auto found = m_sessions.find(client);
    if (found == m_sessions.end()) {
        return;
    }
    m_table.release(found->second.tunnel);
    m_addresses.release(found->second.tunnel);
    m_sessions.erase(found);
}

void LoginHandler::deny(std::uint64_t client, std::uint64_t key, const std::string &reason) {
    ++m_refusedLogins[reason];
    m_log("login refused: " + reason);
    m_send("client-deny " + std::to_string(client) + ' ' + std::to_string(key) + " \"" + reason +
           "\" \"login refused\"\n");
}

void LoginHandler::connectionLost() {
    m_ready = false;
    m_send = [](const std::string &) {
    };
    while (!m_sessions.empty()) {
        endSession(m_sessions.begin()->first);
    }
}

} // namespace quorvane::service
