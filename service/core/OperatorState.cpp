#include "OperatorState.h"

#include "PrivateFile.h"

#include <cerrno>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace quorvane::service {

namespace {

using nlohmann::json;
using std::chrono::microseconds;

constexpr std::size_t maximumLength = 64 << 20;

std::int64_t numberOf(std::chrono::system_clock::time_point time) {
    return std::chrono::ceil<microseconds>(time.time_since_epoch()).count();
}

std::chrono::sys_time<microseconds> timeIn(const json &number) {
    return std::chrono::sys_time<microseconds>(microseconds(number.get<std::int64_t>()));
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
            m_users.emplace(user, timeIn(end));
        }
        for (const auto &[name, entry] : document.at("addresses").items()) {
            const auto address = Ipv4Address::parse(name);
            if (!address) {
                return Failure{"not an address: " + name};
            }
            m_addresses.emplace(*address, Address{timeIn(entry.at(0)), timeIn(entry.at(1))});
        }
        return {};
    } catch (const json::exception &error) {
        return Failure{error.what()};
    }
}

Result<> OperatorState::write() {
    dropExpired();
    json users = json::object();
    for (const auto &[user, end] : m_users) {
        users[user] = numberOf(end);
    }
    json addresses = json::object();
    for (const auto &[address, entry] : m_addresses) {
        addresses[address.text()] = {numberOf(entry.issuedUntil), numberOf(entry.end)};
    }
    const json document = {{"draining", m_draining}, {"users", users}, {"addresses", addresses}};
    auto written = writePrivateFile(m_path, document.dump(1) + '\n');
    return written ? Result<>() : Failure{written.error() + " (the order counts until the next start)"};
}

Result<> OperatorState::setDraining(bool draining) {
    m_draining = draining;
    return write();
}

Result<> OperatorState::revokeUser(const std::string &user, TimePoint end) {
    m_users[user] = end;
    return write();
}

Result<> OperatorState::revokeAddress(Ipv4Address address, TimePoint end) {
    m_addresses[address] = {std::chrono::floor<microseconds>(m_clock()), end};
    return write();
}

bool OperatorState::revokesUser(std::string_view user) const {
    return m_users.find(user) != m_users.end();
}

bool OperatorState::revokesGrant(const Grant &grant) const {
    const auto found = m_addresses.find(grant.address);
    return found != m_addresses.end() && grant.issued <= found->second.issuedUntil;
}

void OperatorState::dropExpired() {
    const TimePoint now = m_clock();
    std::erase_if(m_users, [now](const auto &entry) { return entry.second <= now; });
    std::erase_if(m_addresses, [now](const auto &entry) { return entry.second.end <= now; });
}

} // namespace quorvane::service
