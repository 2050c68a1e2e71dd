#include "StatusText.h"

#include <array>
#include <ctime>

namespace quorvane::service {

namespace {

using nlohmann::json;
using std::chrono::system_clock;

const json &part(const json &object, const char *key) {
    static const json nothing = json::object();
    const auto found = object.find(key);
    return found != object.end() && found->is_object() ? *found : nothing;
}

/// A line of a table.
std::string entry(const std::string &name, const std::string &value) {
    constexpr std::size_t width = 22;
    return name + std::string(name.size() < width ? width - name.size() : 1, ' ') + value + '\n';
}

std::string count(const json &number) {
    return number.is_number_integer() ? number.dump() : "unknown";
}

std::string dateOf(std::time_t seconds) {
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d", &parts)};
}

std::string serverLine(const std::string &name, const json &server) {
    std::string state = server.value("ready", false)     ? "ready"
                        : server.value("running", false) ? "starting"
                                                         : "not running";
    return entry("server " + name, state + ", " + count(server.value("clients", json(0))) + " sessions");
}

std::string countsLine(const std::string &name, const json &counts) {
    std::string text;
    for (const auto &[reason, number] : counts.items()) {
        if (number != 0) {
            text += (text.empty() ? "" : ", ") + reason + ' ' + count(number);
        }
    }
    return entry(name, text.empty() ? "none" : text);
}

std::string timeOf(const json &seconds) {
    if (!seconds.is_number_integer()) {
        return "an unknown time";
    }
    const auto time = seconds.get<std::time_t>();
    std::tm parts{};
    gmtime_r(&time, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S UTC", &parts)};
}

/// What the node knows of the others.
std::string nodesText(const json &etcd) {
    const bool connected = etcd.value("connected", false);
    std::string text =
        entry("etcd", connected ? "connected to " + etcd.value("endpoint", "") + " since " +
                                      timeOf(etcd.value("since", json()))
                                : "NOT connected since " + timeOf(etcd.value("since", json())) + ": " +
                                      etcd.value("problem", ""));
    text += entry("node", etcd.value("node", ""));
    for (const auto &[name, gateway] : part(etcd, "gateways").items()) {
        const std::string number = std::to_string(gateway.value("addresses", json::array()).size());
        text +=
            entry("gateway " + name, number + " addresses, since " + timeOf(gateway.value("since", json())) +
                                         (gateway.value("draining", false) ? ", drained" : ""));
    }
    text += entry("orders", count(etcd.value("pending_orders", json(0))) + " not yet shared");
    for (const auto &[address, owner] : part(etcd, "owned_by_others").items()) {
        text += entry(address, "NOT lent here: owned by gateway " + owner.get<std::string>());
    }
    if (etcd.value("replaced", false)) {
        text += entry("", "ANOTHER gateway has this one's name: nothing is lent here");
    }
    return text;
}

} // namespace

std::string statusText(const json &status, system_clock::time_point now) {
    const bool ready = status.value("ready", false);
    std::string text = entry("service", ready ? "ready" : "runs and is not ready");
    for (const json &role : status.value("not_running", json::array())) {
        text += entry("", "the process with the role " + role.get<std::string>() + " does NOT run");
    }
    if (status.contains("draining") && status.at("draining") == true) {
        text += entry("", "drained: no new sessions");
    }
    for (const auto &[name, server] : part(status, "servers").items()) {
        text += serverLine(name, server);
    }
    if (const json &etcd = part(status, "etcd"); !etcd.empty()) {
        text += nodesText(etcd);
    }
    if (const json &lends = part(status, "lends"); !lends.empty()) {
        text +=
            entry("lends", count(lends.value("now", json())) + " now, " + count(lends.value("all", json())) +
                               " since the start, " + count(lends.value("failed", json())) + " failed");
    }
    if (status.contains("refused")) {
        text += countsLine("refused requests", part(status, "refused"));
    }
    for (const auto &[name, server] : part(status, "servers").items()) {
        if (server.contains("refused_logins")) {
            text += countsLine("refused logins " + name, part(server, "refused_logins"));
        }
    }
    for (const auto &[key, expiry] : part(status, "certificates").items()) {
        const auto end = expiry.get<std::time_t>();
        const auto left = system_clock::from_time_t(end) - now;
        const std::string days = std::to_string(left / std::chrono::hours(24)) + " days left";
        text += entry(key, "until " + dateOf(end) + ", " + (left.count() <= 0 ? "EXPIRED" : days));
    }
    return text;
}

} // namespace quorvane::service
