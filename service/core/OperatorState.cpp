#include "OperatorState.h"

#include "PrivateFile.h"

#include <algorithm>
#include <cerrno>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace quorvane::service {

namespace {

using nlohmann::json;
using std::chrono::microseconds;

constexpr std::size_t maximumLength = 64 << 20;

std::int64_t numberOf(SharedOrders::TimePoint time) {
    return time.time_since_epoch().count();
}

SharedOrders::TimePoint timeIn(const json &number) {
    return SharedOrders::TimePoint(microseconds(number.get<std::int64_t>()));
}

} // namespace

Result<> OperatorState::load(const std::string &path) {
    m_path = path;
    if (access(path.c_str(), F_OK) != 0 && errno == ENOENT) {
        return {};
    }
    const auto text = privateFileText(path, maximumLength);
    if (!text) {
        return Failure{text.error()};
    }
    const auto read = this->read(text.value());
    return read ? Result<>() : Failure{path + " is damaged: " + read.error()};
}

Result<> OperatorState::read(std::string_view text) {
    try {
        const json document = json::parse(text);
        m_draining = document.at("draining").get<bool>();
        for (const auto &[user, end] : document.at("users").items()) {
            m_orders.users.emplace(user, timeIn(end));
        }
        for (const auto &[name, entry] : document.at("addresses").items()) {
            const auto address = Ipv4Address::parse(name);
            if (!address) {
                return Failure{"not an address: " + name};
            }
            m_orders.addresses.emplace(*address,
                                       SharedOrders::Address{timeIn(entry.at(0)), timeIn(entry.at(1))});
        }
        if (document.contains("all_draining")) {
            const json &drain = document.at("all_draining");
            m_orders.drain = {drain.at(0).get<bool>(), timeIn(drain.at(1))};
        }
        if (document.contains("pending")) {
            document.at("pending").get_to(m_pending);
        } else if (m_shares) { // written before there were other nodes
            const auto keys = m_orders.keys();
            m_pending.insert(keys.begin(), keys.end());
        }
        return {};
    } catch (const json::exception &error) {
        return Failure{error.what()};
    }
}

Result<> OperatorState::write() {
    dropExpired();
    json users = json::object();
    for (const auto &[user, end] : m_orders.users) {
        users[user] = numberOf(end);
    }
    json addresses = json::object();
    for (const auto &[address, entry] : m_orders.addresses) {
        addresses[address.text()] = {numberOf(entry.issuedUntil), numberOf(entry.end)};
    }
    json document = {{"draining", m_draining}, {"users", users}, {"addresses", addresses}};
    if (m_shares) {
        document["all_draining"] = {m_orders.drain.on, numberOf(m_orders.drain.given)};
        document["pending"] = m_pending;
    }
    auto written = writePrivateFile(m_path, document.dump(1) + '\n');
    return written ? Result<>() : Failure{written.error() + " (the order counts until the next start)"};
}

Result<> OperatorState::ordered(const std::string &key) {
    if (m_shares) {
        m_pending.insert(key);
    }
    return write();
}

Result<> OperatorState::setDraining(bool draining) {
    m_draining = draining;
    return write();
}

Result<> OperatorState::setAllDraining(bool draining) {
    // Also after the clock was set back.
    const auto given =
        std::max(std::chrono::floor<microseconds>(m_clock()), m_orders.drain.given + microseconds(1));
    m_orders.drain = {draining, given};
    return ordered(drainOrder);
}

Result<> OperatorState::revokeUser(const std::string &user, TimePoint end) {
    m_orders.users[user] = std::chrono::ceil<microseconds>(end);
    return ordered(userOrder(user));
}

Result<> OperatorState::revokeAddress(Ipv4Address address, TimePoint end) {
    m_orders.addresses[address] = {std::chrono::floor<microseconds>(m_clock()),
                                   std::chrono::ceil<microseconds>(end)};
    return ordered(addressOrder(address));
}

Result<> OperatorState::takeShared(const SharedOrders &shared) {
    SharedOrders merged = shared;
    std::erase_if(m_pending, [&](const std::string &key) { return m_orders.isIn(key, shared); });
    for (const std::string &key : m_pending) {
        if (const auto value = m_orders.value(key)) {
            merged.add(key, *value);
        }
    }
    m_orders = std::move(merged);
    return write();
}

bool OperatorState::revokesUser(std::string_view user) const {
    return m_orders.users.find(user) != m_orders.users.end();
}

bool OperatorState::revokesGrant(const Grant &grant) const {
    const auto found = m_orders.addresses.find(grant.address);
    return found != m_orders.addresses.end() && grant.issued <= found->second.issuedUntil;
}

void OperatorState::dropExpired() {
    const TimePoint now = m_clock();
    std::erase_if(m_orders.users, [now](const auto &entry) { return entry.second <= now; });
    std::erase_if(m_orders.addresses, [now](const auto &entry) { return entry.second.end <= now; });
    std::erase_if(m_pending, [this](const std::string &key) { return !m_orders.value(key); });
}

} // namespace quorvane::service
