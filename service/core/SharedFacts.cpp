#include "SharedFacts.h"

#include "JsonTime.h"
#include "NodeName.h"

namespace quorvane::service {

namespace {

using nlohmann::json;

constexpr std::string_view gatewayPart = "gateways/";
constexpr std::string_view ownerPart = "owners/";
constexpr std::string_view orderPart = "orders/";
constexpr std::size_t maximumInstance = 64;

std::optional<std::string_view> after(std::string_view prefix, std::string_view key) {
    return key.starts_with(prefix) ? std::optional(key.substr(prefix.size())) : std::nullopt;
}

} // namespace

std::string RegisteredGateway::text() const {
    json names = json::array();
    for (const Ipv4Address address : addresses) {
        names.push_back(address.text());
    }
    return json{{"addresses", names},
                {"draining", draining},
                {"since", since.time_since_epoch().count()},
                {"instance", instance}}
        .dump();
}

std::optional<RegisteredGateway> RegisteredGateway::parse(std::string_view text) {
    try {
        const json object = json::parse(text);
        RegisteredGateway gateway;
        for (const json &name : object.at("addresses")) {
            const auto address = Ipv4Address::parse(name.get<std::string>());
            if (!address) {
                return std::nullopt;
            }
            gateway.addresses.push_back(*address);
        }
        gateway.draining = object.at("draining").get<bool>();
        gateway.since = timeUnder<std::chrono::seconds>(object, "since");
        gateway.instance = object.at("instance").get<std::string>();
        return gateway.instance.size() <= maximumInstance ? std::optional(gateway) : std::nullopt;
    } catch (const json::exception &) {
        return std::nullopt;
    }
}

std::string SharedFacts::gatewayKey(std::string_view name) const {
    return m_prefix + std::string(gatewayPart) + std::string(name);
}

std::string SharedFacts::ownerKey(Ipv4Address address) const {
    return m_prefix + std::string(ownerPart) + address.text();
}

std::string SharedFacts::orderKey(std::string_view order) const {
    return m_prefix + std::string(orderPart) + std::string(order);
}

void SharedFacts::replace(const std::vector<etcd::Entry> &entries) {
    m_keys.clear();
    m_gateways.clear();
    m_owners.clear();
    m_orders = {};
    for (const etcd::Entry &entry : entries) {
        put(entry);
    }
    m_known = true;
    computeOffered();
}

void SharedFacts::apply(const etcd::Event &event) {
    if (event.deleted) {
        remove(event.entry.key);
    } else {
        put(event.entry);
    }
    computeOffered();
}

void SharedFacts::put(const etcd::Entry &entry) {
    if (!std::string_view(entry.key).starts_with(m_prefix)) {
        return;
    }
    remove(entry.key);
    m_keys.insert(entry.key);
    const std::string_view key = std::string_view(entry.key).substr(m_prefix.size());
    if (const auto name = after(gatewayPart, key); name && isNodeName(*name)) {
        if (auto gateway = RegisteredGateway::parse(entry.value)) {
            m_gateways.emplace(*name, std::move(*gateway));
        }
    } else if (const auto owned = after(ownerPart, key)) {
        const auto address = Ipv4Address::parse(*owned);
        if (address && isNodeName(entry.value)) {
            m_owners.emplace(*address, entry.value);
        }
    } else if (const auto order = after(orderPart, key)) {
        m_orders.add(*order, entry.value);
    }
}

void SharedFacts::remove(const std::string &key) {
    m_keys.erase(key);
    if (!key.starts_with(m_prefix)) {
        return;
    }
    const std::string_view inner = std::string_view(key).substr(m_prefix.size());
    if (const auto name = after(gatewayPart, inner)) {
        m_gateways.erase(std::string(*name));
    } else if (const auto owned = after(ownerPart, inner)) {
        if (const auto address = Ipv4Address::parse(*owned)) {
            m_owners.erase(*address);
        }
    } else if (const auto order = after(orderPart, inner)) {
        m_orders.remove(*order);
    }
}

void SharedFacts::computeOffered() {
    m_offered.clear();
    for (const auto &[name, gateway] : m_gateways) {
        for (const Ipv4Address address : gateway.addresses) {
            if (!gateway.draining && isOwnedBy(address, name)) {
                m_offered.insert(address);
            }
        }
    }
}

bool SharedFacts::isOwnedBy(Ipv4Address address, std::string_view gateway) const {
    const auto found = m_owners.find(address);
    return found != m_owners.end() && found->second == gateway;
}

std::vector<Ipv4Address> SharedFacts::addressesOf(std::string_view gateway) const {
    std::vector<Ipv4Address> addresses;
    for (const auto &[address, owner] : m_owners) {
        if (owner == gateway) {
            addresses.push_back(address);
        }
    }
    return addresses;
}

std::string SharedFacts::text() const {
    json gateways = json::object();
    for (const auto &[name, gateway] : m_gateways) {
        gateways[name] = gateway.text();
    }
    json owners = json::object();
    for (const auto &[address, owner] : m_owners) {
        owners[address.text()] = owner;
    }
    return json{{"gateways", gateways}, {"owners", owners}}.dump(1) + '\n';
}

Result<> SharedFacts::load(std::string_view text) {
    try {
        const json document = json::parse(text);
        std::vector<etcd::Entry> entries;
        for (const auto &[name, gateway] : document.at("gateways").items()) {
            entries.push_back({gatewayKey(name), gateway.get<std::string>()});
        }
        for (const auto &[address, owner] : document.at("owners").items()) {
            entries.push_back({m_prefix + std::string(ownerPart) + address, owner.get<std::string>()});
        }
        replace(entries);
        return {};
    } catch (const json::exception &error) {
        return Failure{error.what()};
    }
}

} // namespace quorvane::service
