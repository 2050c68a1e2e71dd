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
    const bool ready = std::all_of(status.servers.begin(), status.servers.end(),
                                   [](const ServerStatus &server) { return server.ready; });
    const Facts &facts = status.facts;
    return {{"ok", true},
            {"ready", ready},
            {"credentials", status.credentials},
            {"draining", status.draining},
            {"revocations", status.revocations},
            {"confined", status.confined},
            {"servers", entries},
            {"lends", {{"now", facts.currentLends}, {"all", facts.lends}, {"failed", facts.failedLends}}},
            {"refused", std::map(facts.refused.begin(), facts.refused.end())},
            {"certificates", std::map(facts.certificates.begin(), facts.certificates.end())}};
}

json failure(const std::string &message) {
    return {{"ok", false}, {"error", message}};
}

json drain(JsonReader &reader, const OperatorOrders &orders) {
    const bool on = reader.boolean("on", true);
    reader.finish();
    const auto done = orders.drain(on);
    return done ? json{{"ok", true}} : failure(done.error());
}

json revoke(JsonReader &reader, const OperatorOrders &orders) {
    if (reader.has("user") == reader.has("address")) {
        return failure("either user or address is needed");
    }
    if (reader.has("user")) {
        const std::string user = reader.text("user");
        reader.finish();
        const auto ended = orders.revokeUser(user);
        return ended ? json{{"ok", true}, {"ended", ended.value()}} : failure(ended.error());
    }
    const auto address = Ipv4Address::parse(reader.text("address"));
    reader.finish();
    if (!address) {
        return failure("address: must be an IPv4 address");
    }
    const auto ended = orders.revokeAddress(*address);
    return ended ? json{{"ok", true}, {"ended", ended.value()}} : failure(ended.error());
}

} // namespace

ControlCommands::ControlCommands(AnnouncedRequests &announced, Status status, OperatorOrders orders)
    : m_announced(announced), m_status(std::move(status)), m_orders(std::move(orders)) {}

std::string ControlCommands::answer(std::string_view line) {
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
    return answer.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace quorvane::service
