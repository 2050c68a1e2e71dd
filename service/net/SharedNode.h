#pragma once

#include "EtcdClient.h"
#include "GatewayRegistration.h"
#include "core/Config.h"
#include "core/GatewayClaims.h"
#include "core/OperatorState.h"
#include "core/SharedFacts.h"
#include "core/SharedStatus.h"

#include <boost/asio/steady_timer.hpp>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace quorvane::service {

/// This process as one of the service's nodes: knows from etcd what all of them share, registers itself and
/// claims its addresses when it is a gateway, and shares the orders that are given here. While etcd is away
/// what was last known counts, which is also in a file.
class SharedNode {
public:
    struct Local {
        /// True for an address that a session of this process has.
        std::function<bool(Ipv4Address)> inUse;
        /// True when the gateway accepts clients.
        std::function<bool()> ready;
        /// Orders or owners have changed: sessions may have to end.
        std::function<void()> changed;
    };

    /// `config`, which must have "etcd", and `orders` are not owned.
    SharedNode(boost::asio::io_context &context, const Config &config, OperatorState &orders, Local local);

    /// Reads all files that it needs, and begins to connect.
    Result<> start();
    /// Ends the registration at once, if etcd can be reached.
    void stop();

    /// True for an address that a new session may request: that of a gateway which is up. All are offered
    /// while nothing was ever known.
    [[nodiscard]] bool offers(Ipv4Address address) const;
    /// True for an address that this gateway owns.
    [[nodiscard]] bool lends(Ipv4Address address) const;
    /// True when sessions with the address must end: another gateway lends it.
    [[nodiscard]] bool isLost(Ipv4Address address) const;

    /// True for an address that any gateway owns.
    [[nodiscard]] bool isOwned(Ipv4Address address) const { return m_facts.owners().contains(address); }

    [[nodiscard]] bool connected() const { return m_client && m_client->connected(); }

    /// Shares what was ordered here, and registers what has changed here.
    void update();

    using Released = std::function<void(const Result<std::size_t> &addresses)>;
    /// Removes the claims of a gateway that is not registered.
    void release(const std::string &gateway, const Released &released);

    [[nodiscard]] SharedStatus status() const;

private:
    struct Release {
        std::string gateway;
        std::vector<Ipv4Address> addresses; ///< that are still to be released
        std::size_t done = 0;
        Released released;
    };

    void replaced(const std::vector<etcd::Entry> &entries);
    void changed(const std::vector<etcd::Event> &events);
    void lost(const std::string &reason);
    void tick();
    void repeatAnswered();
    void takeFacts();
    void saveFacts();
    [[nodiscard]] bool isReplaced() const;
    void updateClaims();
    void claim(Ipv4Address address);
    void giveUp(Ipv4Address address);
    void changeOwner(Ipv4Address address, const std::string &transaction);
    void reportOthers(std::map<Ipv4Address, std::string> others);
    void updateRegistration();
    /// An order is repeated every tick until the watch reports it, and so is a claim.
    void shareOrders();
    void shareOrder(const std::string &order, const std::string &value);
    void putOrder(const std::string &order, const std::string &value, std::int64_t lease);
    void releaseNext(const std::shared_ptr<Release> &work);

    boost::asio::io_context &m_context;
    const Config &m_config;
    OperatorState &m_orders;
    Local m_local;
    SharedFacts m_facts;
    std::string m_savedFacts; ///< the file's text
    bool m_unsaved = false;
    std::unique_ptr<EtcdClient> m_client;                ///< null before start()
    std::unique_ptr<GatewayRegistration> m_registration; ///< null when this is no gateway
    RegisteredGateway m_self;
    std::vector<Ipv4Address> m_owned;
    std::map<Ipv4Address, bool> m_claiming; ///< a claim or a release was requested; true: and answered
    std::map<Ipv4Address, std::string> m_ownedByOthers;

    struct Sharing {
        std::string value;
        bool answered = false;
    };

    std::map<std::string, Sharing> m_sharing; ///< by order
    std::vector<std::shared_ptr<Release>> m_releases;
    bool m_wasTried = false;
    bool m_wasReplaced = false;
    bool m_wasReady = false;
    std::chrono::sys_seconds m_since; ///< of being connected or not
    std::string m_problem = "it was not reached yet";
    boost::asio::steady_timer m_tick;
    bool m_stopped = false;
};

} // namespace quorvane::service
