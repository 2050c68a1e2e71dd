#include "ControlCommands.h"

#include "AnnouncementJson.h"

#include <algorithm>

namespace quorvane::service {

namespace {

using nlohmann::json;

json report(const AnnouncedRequests &announced) {
    json unexpected = json::array();
    for (const std::string &target : announced.unexpected()) {
        unexpected.push_back(latin1ToUtf8(target));
    }
    json outstanding = json::array();
    for (const Announcement &announcement : announced.outstanding()) {
        json entry = {{"count", announcement.count}};
        if (announcement.pattern.empty()) {
            entry["target"] = latin1ToUtf8(announcement.target);
        } else {
            entry["pattern"] = latin1ToUtf8(announcement.pattern);
        }
        outstanding.push_back(entry);
    }
    return {{"ok", true}, {"unexpected", unexpected}, {"outstanding", outstanding}};
}

json statusReport(const ServiceStatus &status) {
    json entries = json::object();
    for (const ServerStatus &server : status.servers) {
        entries[server.name] = {{"running", server.running},
                                {"ready", server.ready},
                                {"clients", server.clients},
                                {"refused_logins", server.refusedLogins}};
    }
    const Facts &facts = status.facts;
    json report = {
        {"ok", true},
        {"ready", allReady(status.servers)},
        {"credentials", status.credentials},
        {"draining", status.draining},
        {"revocations", status.revocations},
        {"confined", status.confined},
        {"servers", entries},
        {"lends", {{"now", facts.currentLends}, {"all", facts.lends}, {"failed", facts.failedLends}}},
        {"refused", std::map(facts.refused.begin(), facts.refused.end())},
        {"certificates", std::map(facts.certificates.begin(), facts.certificates.end())}};
    if (status.shared) {
        report["etcd"] = sharedReport(*status.shared);
    }
    return report;
}

json failure(const std::string &message) {
    return {{"ok", false}, {"error", message}};
}

/// The answer to an order that was carried out.
json done(const OperatorOrders &orders) {
    json answer = {{"ok", true}};
    if (orders.unshared()) {
        answer["shared"] = "not yet";
    }
    return answer;
}

json drain(JsonReader &reader, const OperatorOrders &orders) {
    const bool on = reader.boolean("on", true);
    reader.finish();
    const auto drained = orders.drain(on);
    return drained ? done(orders) : failure(drained.error());
}

json revoked(const Result<std::size_t> &ended, const OperatorOrders &orders) {
    if (!ended) {
        return failure(ended.error());
    }
    json answer = done(orders);
    answer["ended"] = ended.value();
    return answer;
}

json revoke(JsonReader &reader, const OperatorOrders &orders) {
    if (reader.has("user") == reader.has("address")) {
        return failure("either user or address is needed");
    }
    if (reader.has("user")) {
        const std::string user = reader.text("user");
        reader.finish();
        return revoked(orders.revokeUser(user), orders);
    }
    const auto address = Ipv4Address::parse(reader.text("address"));
    reader.finish();
    if (!address) {
        return failure("address: must be an IPv4 address");
    }
    return revoked(orders.revokeAddress(*address), orders);
}

std::string textOf(const json &answer) {
    return answer.dump(-1, ' ', false, json::error_handler_t::replace);
}

void release(JsonReader &reader, const OperatorOrders &orders, const ControlCommands::Reply &reply) {
    const std::string gateway = reader.text("gateway");
    reader.finish();
    orders.release(gateway, [reply](const Result<std::size_t> &addresses) {
        reply(textOf(addresses ? json{{"ok", true}, {"released", addresses.value()}}
                               : failure(addresses.error())));
    });
}

} // namespace

bool allReady(const std::vector<ServerStatus> &servers) {
    return std::all_of(servers.begin(), servers.end(),
                       [](const ServerStatus &server) { return server.ready; });
}

ControlCommands::ControlCommands(AnnouncedRequests &announced, Status status, OperatorOrders orders)
    : m_announced(announced), m_status(std::move(status)), m_orders(std::move(orders)) {}

void ControlCommands::answer(std::string_view line, const Reply &reply) {
    json answer;
    try {
        const json document = json::parse(line);
        JsonReader reader(document, {});
        const std::string command = reader.text("command");
        if (command == "announce") {
            const Announcement announcement = readAnnouncement(reader);
            reader.finish();
            const auto announced = m_announced.announce(announcement);
            answer = announced ? json{{"ok", true}} : failure(announced.error());
        } else if (command == "clear") {
            m_announced.clear();
            answer = {{"ok", true}};
        } else if (command == "report") {
            answer = report(m_announced);
        } else if (command == "drain") {
            answer = drain(reader, m_orders);
        } else if (command == "revoke") {
            answer = revoke(reader, m_orders);
        } else if (command == "release") {
            release(reader, m_orders, reply);
            return;
        } else if (command == "reload") {
            reader.finish();
            m_orders.reload();
            answer = {{"ok", true}};
        } else if (command == "status") {
            answer = statusReport(m_status());
        } else {
            answer = failure("unknown command");
        }
    } catch (const ConfigError &error) {
        answer = failure(error.what());
    } catch (const json::exception &) {
        answer = failure("not valid JSON");
    }
    reply(textOf(answer));
}

} // namespace quorvane::service
