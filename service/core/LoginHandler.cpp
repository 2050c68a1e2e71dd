#include "LoginHandler.h"

#include "RequestLog.h"

#include <algorithm>

namespace quorvane::service {

LoginDesk::LoginDesk(CredentialStore &credentials, TunnelAddresses &addresses, LendingTable &table, Send send,
                     Note note)
    : m_credentials(credentials), m_addresses(addresses), m_table(table), m_send(std::move(send)),
      m_note(std::move(note)) {}

void LoginDesk::handle(const ManagementEvent &event) {
    switch (event.kind) {
    case ManagementEvent::Kind::Hold:
        m_send("state on\nhold release\n");
        break;
    case ManagementEvent::Kind::State:
        m_ready = event.text == "CONNECTED";
        break;
    case ManagementEvent::Kind::Fatal:
    case ManagementEvent::Kind::Error:
        m_note("the server says " + jsonText(event.text));
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

void LoginDesk::connect(const ManagementEvent &event) {
    endSession(event.client); // a number that comes again belongs to a new client
    const std::string user = event.field("username");
    const std::string password = event.field("password");
    const std::string source =
        event.field(event.fields.contains("untrusted_ip") ? "untrusted_ip" : "untrusted_ip6");
    const auto login = m_credentials.login(user, password, source);
    if (login.refusal != CredentialStore::Refusal::None) {
        deny(event.client, event.key, std::string(refusalName(login.refusal)));
        return;
    }
    endEarlierSession(user);
    // A tunnel that is made anew keeps its address, so the client need not give up its device and routes.
    const auto tunnel = login.tunnel ? m_addresses.takeAgain(*login.tunnel) : m_addresses.take();
    if (!tunnel) {
        deny(event.client, event.key, "no tunnel address is free");
        return;
    }
    m_credentials.usesTunnel(user, *tunnel);
    m_sessions[event.client] = {user, password, *tunnel, login.address, event.key};
    m_note("login of " + jsonText(user) + " from " + jsonText(source) + ": " + tunnel->text() + " lends " +
           login.address.text());
    m_table.lend(*tunnel, login.address,
                 [weak = weak_from_this(), client = event.client, tunnel = *tunnel](bool worked) {
                     if (const auto self = weak.lock()) {
                         self->lent(client, tunnel, worked);
                     }
                 });
}

void LoginDesk::lent(std::uint64_t client, Ipv4Address tunnel, bool worked) {
    const auto found = m_sessions.find(client);
    if (found == m_sessions.end() || found->second.tunnel != tunnel) {
        return; // the client left while the table was being changed
    }
    const std::uint64_t key = found->second.key;
    if (!worked) {
        endSession(client);
        deny(client, key, "the gateway cannot lend the address");
        return;
    }
    const std::string number = std::to_string(client) + ' ' + std::to_string(key);
    m_send("client-auth " + number + "\nifconfig-push " + tunnel.text() + ' ' +
           m_addresses.network().mask().text() + "\nEND\n");
}

void LoginDesk::reauthenticate(const ManagementEvent &event) {
    // The session was let in with these credentials; their own life does not matter to it any more.
    const auto found = m_sessions.find(event.client);
    const bool same = found != m_sessions.end() && found->second.user == event.field("username") &&
                      found->second.password == event.field("password");
    if (same) {
        m_send("client-auth-nt " + std::to_string(event.client) + ' ' + std::to_string(event.key) + '\n');
    } else {
        deny(event.client, event.key, "not the session's credentials");
    }
}

void LoginDesk::endEarlierSession(const std::string &user) {
    // A client that was killed comes back before the server has missed it.
    const auto found = std::find_if(m_sessions.begin(), m_sessions.end(),
                                    [&](const auto &entry) { return entry.second.user == user; });
    if (found != m_sessions.end()) {
        const std::uint64_t client = found->first;
        endSession(client);
        m_send("client-kill " + std::to_string(client) + '\n');
    }
}

void LoginDesk::endSession(std::uint64_t client) {
    const auto found = m_sessions.find(client);
    if (found == m_sessions.end()) {
        return;
    }
    m_table.takeBack(found->second.tunnel);
    m_addresses.giveBack(found->second.tunnel);
    m_sessions.erase(found);
}

void LoginDesk::deny(std::uint64_t client, std::uint64_t key, const std::string &reason) {
    m_note("login refused: " + reason);
    m_send("client-deny " + std::to_string(client) + ' ' + std::to_string(key) + " \"" + reason +
           "\" \"login refused\"\n");
}

void LoginDesk::connectionLost() {
    m_ready = false;
    m_send = [](const std::string &) {
    };
    while (!m_sessions.empty()) {
        endSession(m_sessions.begin()->first);
    }
}

} // namespace quorvane::service
