#pragma once

#include "EtcdMessages.h"
#include "Ipv4.h"
#include "SharedOrders.h"
#include "common/Result.h"

#include <chrono>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::service {

/// What a gateway registers about itself.
struct RegisteredGateway {
    std::vector<Ipv4Address> addresses; ///< that it lends
    bool draining = false;
    std::chrono::sys_seconds since; ///< the start of its process
    std::string instance;           ///< differs for each process

    bool operator==(const RegisteredGateway &) const = default;

    [[nodiscard]] std::string text() const;
    static std::optional<RegisteredGateway> parse(std::string_view text);
};

/// What all nodes of the service know: the gateways that are up, which of them owns an address, and the
/// orders of the operator. A state that follows from keys and values, and from nothing else.
class SharedFacts {
public:
    explicit SharedFacts(std::string prefix) : m_prefix(std::move(prefix)) {}

    /// Replaces everything: what is not among the entries is no longer true.
    void replace(const std::vector<etcd::Entry> &entries);
    /// Keys with malformed values count as absent.
    void apply(const etcd::Event &event);

    /// False until the first replace() or load().
    [[nodiscard]] bool known() const { return m_known; }

    /// The number of keys of which it was notified.
    [[nodiscard]] std::size_t keyCount() const { return m_keys.size(); }

    [[nodiscard]] const std::map<std::string, RegisteredGateway> &gateways() const { return m_gateways; }

    [[nodiscard]] const std::map<Ipv4Address, std::string> &owners() const { return m_owners; }

    [[nodiscard]] const SharedOrders &orders() const { return m_orders; }

    /// True for an address of a registered gateway that owns it and does not drain.
    [[nodiscard]] bool isOffered(Ipv4Address address) const { return m_offered.contains(address); }

    [[nodiscard]] bool isOwnedBy(Ipv4Address address, std::string_view gateway) const;
    /// The addresses that it owns.
    [[nodiscard]] std::vector<Ipv4Address> addressesOf(std::string_view gateway) const;

    [[nodiscard]] const std::string &prefix() const { return m_prefix; }

    [[nodiscard]] std::string gatewayKey(std::string_view name) const;
    [[nodiscard]] std::string ownerKey(Ipv4Address address) const;
    /// `order`: a key of SharedOrders.
    [[nodiscard]] std::string orderKey(std::string_view order) const;

    /// Gateways and owners, for a file. The orders are kept elsewhere (OperatorState).
    [[nodiscard]] std::string text() const;
    Result<> load(std::string_view text);

private:
    void put(const etcd::Entry &entry);
    void remove(const std::string &key);
    void computeOffered();

    std::string m_prefix;
    bool m_known = false;
    std::set<std::string> m_keys;
    std::map<std::string, RegisteredGateway> m_gateways;
    std::map<Ipv4Address, std::string> m_owners;
    SharedOrders m_orders;
    std::set<Ipv4Address> m_offered;
};

} // namespace quorvane::service
