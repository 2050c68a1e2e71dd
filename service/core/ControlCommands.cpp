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
        entries[server.name] = {
            {"running", server.running}, {"ready", server.ready}, {"clients", server.clients}};
    }
    const bool ready = std::all_of(status.servers.begin(), status.servers.end(),
                                   [](const ServerStatus &server) { return server.ready; });
    return {{"ok", true}, {"ready", ready}, {"credentials", status.credentials}, {"servers", entries}};
}

json failure(const std::string &message) {
    return {{"ok", false}, {"error", message}};
}

} // namespace

ControlCommands::ControlCommands(AnnouncedRequests &announced, Status status)
    : m_announced(announced), m_status(std::move(status)) {}

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
