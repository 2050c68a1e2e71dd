#include <utility>

#include <boost/asio/io_context.hpp>

#include "SharedNode.h"

#include "EtcdTls.h"
#include "ServiceLog.h"
#include "core/PrivateFile.h"
#include "core/RequestLog.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <sys/random.h>
#include <unistd.h>

namespace quorvane::service {

namespace asio = boost::asio;

namespace {

constexpr std::size_t maximumFactsFile = 64 << 20;
/// Below etcd's limit of 128 operations for a transaction.
constexpr std::size_t releasedAtOnce = 100;
/// An order stays longer than it counts, for nodes whose clock is late.
constexpr std::chrono::seconds orderMargin{60};

std::chrono::sys_seconds now() {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

std::string randomText() {
    std::array<unsigned char, 16> bytes{};
    if (getentropy(bytes.data(), bytes.size()) != 0) {
        return std::to_string(getpid());
    }
    std::string text;
    for (const unsigned char byte : bytes) {
        constexpr const char *digits = "0123456789abcdef";
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::vector<Ipv4Address> addressesOf(const Config &config) {
    std::vector<Ipv4Address> addresses;
    for (const Group &group : config.groups) {
        addresses.insert(addresses.end(), group.addresses.begin(), group.addresses.end());
    }
    return addresses;
}

} // namespace

SharedNode::SharedNode(asio::io_context &context, const Config &config, OperatorState &orders, Local local)
    : m_context(context), m_config(config), m_orders(orders), m_local(std::move(local)),
      m_facts(config.etcd->prefix), m_since(now()), m_tick(context) {
    m_self.since = now();
    m_self.instance = randomText();
}

Result<> SharedNode::start() {
    const EtcdSettings &settings = *m_config.etcd;
    auto tls = makeEtcdTls(settings);
    if (!tls) {
        return Failure{tls.error()};
    }
    const std::string path = m_config.sharedFactsPath();
    if (access(path.c_str(), F_OK) == 0 || errno != ENOENT) {
        const auto text = privateFileText(path, maximumFactsFile);
        const auto loaded = text ? m_facts.load(text.value()) : Result<>(Failure{text.error()});
        if (!loaded) {
            return Failure{"state_file: " + path + ": " + loaded.error()};
        }
        m_savedFacts = text.value();
    }
    m_client = std::make_unique<EtcdClient>(
        m_context, settings, std::move(tls).value(),
        EtcdClient::Events{[this](const std::vector<etcd::Entry> &entries) { replaced(entries); },
                           [this](const std::vector<etcd::Event> &events) { changed(events); },
                           [this] {
                               m_since = now();
                               writeLog("etcd: connected to " + m_client->endpoint());
                               update();
                           },
                           [this](const std::string &reason) { lost(reason); },
                           [this] {
                               return m_facts.keyCount();
                           }});
    if (m_config.lendsAddresses()) {
        m_registration = std::make_unique<GatewayRegistration>(*m_client, m_facts.gatewayKey(settings.name),
                                                               settings.lease);
    }
    m_client->start();
    tick();
    return {};
}

void SharedNode::stop() {
    if (!m_client || std::exchange(m_stopped, true)) {
        return;
    }
    m_tick.cancel();
    saveFacts();
    if (m_registration) {
        m_registration->revoke([this] { m_client->stop(); });
    } else {
        m_client->stop();
    }
}

bool SharedNode::offers(Ipv4Address address) const {
    return !m_facts.known() || m_facts.isOffered(address);
}

bool SharedNode::lends(Ipv4Address address) const {
    return m_facts.isOwnedBy(address, m_config.etcd->name) && !isReplaced();
}

bool SharedNode::isLost(Ipv4Address address) const {
    return isReplaced() || (isOwned(address) && !m_facts.isOwnedBy(address, m_config.etcd->name));
}

/// The newest process with a name is the gateway: an older one that did not end must not lend, too.
bool SharedNode::isReplaced() const {
    if (!m_registration || !m_registration->everWritten()) {
        return false;
    }
    const auto found = m_facts.gateways().find(m_config.etcd->name);
    return found != m_facts.gateways().end() && found->second.instance != m_self.instance;
}

void SharedNode::replaced(const std::vector<etcd::Entry> &entries) {
    m_facts.replace(entries);
    takeFacts();
}

void SharedNode::changed(const std::vector<etcd::Event> &events) {
    for (const etcd::Event &event : events) {
        m_facts.apply(event);
    }
    takeFacts();
    update();
}

void SharedNode::lost(const std::string &reason) {
    if (m_problem.empty()) {
        m_since = now();
    }
    // Further attempts fail in the same way.
    if (m_problem.empty() || !std::exchange(m_wasTried, true)) {
        writeLog("etcd: not connected to " + m_client->endpoint() + ": " + jsonText(reason));
    }
    m_problem = reason;
    m_claiming.clear();
    m_sharing.clear();
    if (m_registration) {
        m_registration->lost();
    }
    for (const auto &work : std::exchange(m_releases, {})) {
        work->released(Failure{"etcd cannot be reached: " + reason});
    }
    if (m_stopped) {
        m_client->stop(); // the registration ends with its lease
    }
}

void SharedNode::takeFacts() {
    m_unsaved = true;
    const bool ordered = m_orders.orders() != m_facts.orders() || !m_orders.pending().empty();
    if (ordered) {
        if (const auto written = m_orders.takeShared(m_facts.orders()); !written) {
            writeLog("state_file: " + written.error());
        }
    }
    m_local.changed();
}

void SharedNode::saveFacts() {
    if (!std::exchange(m_unsaved, false)) {
        return;
    }
    std::string text = m_facts.text();
    if (text == m_savedFacts) {
        return;
    }
    if (const auto written = writePrivateFile(m_config.sharedFactsPath(), text); !written) {
        writeLog("state_file: " + written.error());
        return;
    }
    m_savedFacts = std::move(text);
}

void SharedNode::tick() {
    m_tick.expires_after(std::chrono::milliseconds(m_config.etcd->lease) / 3);
    m_tick.async_wait([this](boost::system::error_code cancelled) {
        if (!cancelled && !m_stopped) {
            saveFacts();
            repeatAnswered();
            update();
            m_client->check();
            if (m_registration) {
                m_registration->keep();
            }
            tick();
        }
    });
}

/// The watch reports what was done. If it does not, another node has changed the same key meanwhile.
void SharedNode::repeatAnswered() {
    std::erase_if(m_claiming, [](const auto &entry) { return entry.second; });
    std::erase_if(m_sharing, [](const auto &entry) { return entry.second.answered; });
    if (m_registration && connected() && !m_facts.gateways().contains(m_config.etcd->name)) {
        m_registration->writeAgain();
    }
}

void SharedNode::update() {
    if (!connected() || m_stopped) {
        return;
    }
    m_problem.clear();
    if (m_registration) {
        updateClaims();
        updateRegistration();
    }
    shareOrders();
}

void SharedNode::updateClaims() {
    const GatewayClaims claims =
        GatewayClaims::of(m_facts, m_config.etcd->name, addressesOf(m_config), m_local.inUse);
    m_owned = claims.owned;
    reportOthers(claims.ownedByOthers);
    if (isReplaced()) {
        return;
    }
    for (const Ipv4Address address : claims.claim) {
        claim(address);
    }
    for (const Ipv4Address address : claims.release) {
        giveUp(address);
    }
}

void SharedNode::claim(Ipv4Address address) {
    changeOwner(address, etcd::claimRequest(m_facts.ownerKey(address), m_config.etcd->name));
}

void SharedNode::giveUp(Ipv4Address address) {
    changeOwner(address, etcd::deletionRequest({m_facts.ownerKey(address)}, m_config.etcd->name, {}));
}

void SharedNode::changeOwner(Ipv4Address address, const std::string &transaction) {
    if (!m_claiming.emplace(address, false).second) {
        return;
    }
    m_client->post("/v3/kv/txn", transaction, [this, address](const Result<std::string> &answer) {
        if (const auto done = etcd::parseTransaction(answer.value()); !done) {
            writeLog("etcd: the owner of " + address.text() + " is not changed: " + done.error());
        }
        m_claiming[address] = true;
    });
}

void SharedNode::reportOthers(std::map<Ipv4Address, std::string> others) {
    for (const auto &[address, owner] : others) {
        if (!m_ownedByOthers.contains(address)) {
            writeLog("etcd: " + address.text() + " is not lent here: gateway " + owner + " owns it");
        }
    }
    m_ownedByOthers = std::move(others);
}

void SharedNode::updateRegistration() {
    const bool replaced = isReplaced();
    if (replaced && !m_wasReplaced) {
        writeLog("etcd: another gateway is registered as " + m_config.etcd->name + ": nothing is lent here");
        m_local.changed();
    }
    m_wasReplaced = replaced;
    // From the first time on: a server that ends is started again within seconds.
    m_wasReady = m_wasReady || m_local.ready();
    m_self.addresses = m_owned;
    m_self.draining = m_orders.drainingHere();
    m_registration->setValue(m_wasReady && !replaced ? m_self.text() : std::string());
}

void SharedNode::shareOrders() {
    const auto &pending = m_orders.pending();
    std::erase_if(m_sharing, [&pending](const auto &entry) { return !pending.contains(entry.first); });
    for (const std::string &order : pending) {
        const auto value = m_orders.orders().value(order);
        const auto found = m_sharing.find(order);
        if (value && (found == m_sharing.end() || found->second.value != *value)) {
            m_sharing[order] = {*value, false};
            shareOrder(order, *value);
        }
    }
}

/// With a lease, etcd forgets the order when it has no effect any more.
void SharedNode::shareOrder(const std::string &order, const std::string &value) {
    const auto end = m_orders.orders().end(order);
    if (!end) {
        putOrder(order, value, 0);
        return;
    }
    const auto left = std::chrono::ceil<std::chrono::seconds>(*end - std::chrono::system_clock::now());
    const auto lease = std::max(left, std::chrono::seconds(0)) + orderMargin;
    m_client->post("/v3/lease/grant", etcd::leaseRequest(lease.count()),
                   [this, order, value](const Result<std::string> &answer) {
                       if (const auto granted = etcd::parseLease(answer.value())) {
                           putOrder(order, value, granted.value().id);
                       } else {
                           writeLog("etcd: an order is not shared: " + granted.error());
                           m_sharing[order].answered = true;
                       }
                   });
}

void SharedNode::putOrder(const std::string &order, const std::string &value, std::int64_t lease) {
    m_client->post("/v3/kv/put", etcd::putRequest(m_facts.orderKey(order), value, lease),
                   [this, order](const Result<std::string> &answer) {
                       if (const auto written = etcd::parseDone(answer.value()); !written) {
                           writeLog("etcd: an order is not shared: " + written.error());
                       }
                       m_sharing[order].answered = true;
                   });
}

void SharedNode::release(const std::string &gateway, const Released &released) {
    if (!connected()) {
        released(Failure{"etcd cannot be reached: " + m_problem});
        return;
    }
    if (m_facts.gateways().contains(gateway)) {
        released(Failure{"the gateway is registered: it is up, or ended less than " +
                         std::to_string(m_config.etcd->lease.count()) + " s ago"});
        return;
    }
    auto addresses = m_facts.addressesOf(gateway);
    if (addresses.empty()) {
        released(Failure{"there is no address of a gateway with that name"});
        return;
    }
    m_releases.push_back(std::make_shared<Release>(Release{gateway, std::move(addresses), 0, released}));
    releaseNext(m_releases.back());
}

void SharedNode::releaseNext(const std::shared_ptr<Release> &work) {
    if (work->addresses.empty()) {
        std::erase(m_releases, work);
        work->released(work->done);
        return;
    }
    std::vector<std::string> keys;
    while (!work->addresses.empty() && keys.size() < releasedAtOnce) {
        keys.push_back(m_facts.ownerKey(work->addresses.back()));
        work->addresses.pop_back();
    }
    m_client->post("/v3/kv/txn",
                   etcd::deletionRequest(keys, work->gateway, m_facts.gatewayKey(work->gateway)),
                   [this, work, count = keys.size()](const Result<std::string> &answer) {
                       const auto done = etcd::parseTransaction(answer.value());
                       if (!done || !done.value().succeeded) {
                           std::erase(m_releases, work);
                           work->released(Failure{done ? "the gateway has come back" : done.error()});
                           return;
                       }
                       work->done += count;
                       releaseNext(work);
                   });
}

SharedStatus SharedNode::status() const {
    SharedStatus status;
    status.node = m_config.etcd->name;
    status.connected = connected();
    status.endpoint = m_client->endpoint();
    status.since = m_since;
    status.problem = m_problem;
    status.gateways = m_facts.gateways();
    status.pendingOrders = m_orders.pending().size();
    status.ownedByOthers = m_ownedByOthers;
    status.replaced = isReplaced();
    return status;
}

} // namespace quorvane::service
