#include "Api.h"

#include "Answers.h"
#include "VpnConfiguration.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>

namespace quorvane::service {

namespace {

constexpr const char *plainText = "text/plain; charset=utf-8";
constexpr const char *html = "text/html; charset=utf-8";
constexpr const char *parsingError = "ERR: Argument parsing error";
constexpr std::size_t maximumArgumentLength = 256;

bool isDigits(const std::string &text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char digit) { return digit >= '0' && digit <= '9'; });
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

/// The values of all keys in order. Nothing when one is missing, empty or too long.
std::optional<std::vector<std::string>> arguments(const Target &target,
                                                  std::initializer_list<std::string_view> keys) {
    std::vector<std::string> values;
    for (const std::string_view key : keys) {
        auto value = target.last(key);
        if (!value || value->empty() || value->size() > maximumArgumentLength) {
            return std::nullopt;
        }
        values.push_back(std::move(*value));
    }
    return values;
}

HttpResponse plain(int status, std::string body) {
    return {status, plainText, std::move(body), {}};
}

} // namespace

bool requestsConfiguration(std::string_view target) {
    if (target.find("VPNC") == std::string_view::npos && target.find('%') == std::string_view::npos) {
        return false; // without the work of reading it
    }
    const auto parsed = Target::parse(target);
    return parsed && parsed->last("cmd") == "VPNC";
}

Api::Api(const Config &config, std::string caPem, VpnUsers &users)
    : m_config(config), m_caPem(std::move(caPem)), m_users(users) {}

HttpResponse Api::answer(const HttpRequest &request) {
    if (request.method != "GET") {
        HttpResponse refusal{405, html, errorPage(405, "Method Not Allowed", "Only GET is understood."),
                             "GET"};
        return refusal;
    }
    const auto target = Target::parse(request.target);
    if (!target) {
        // A configuration request is answered in the form of its answers even when its target is malformed.
        if (request.target.rfind("/?cmd=VPNC", 0) == 0) {
            return plain(200, parsingError);
        }
        return {400, html, errorPage(400, "Bad Request", "The address is malformed."), {}};
    }
    if (target->path() == "/" && target->has("cmd")) {
        return command(*target, *target->last("cmd"), request.peer);
    }
    if (target->path() == "/") {
        return {200, html, webPage(request.peer, m_config.countryOf(request.peer)), {}};
    }
    if (target->path() == "/ip") {
        return addressPage(request);
    }
    return {404, html, errorPage(404, "Not Found", "There is no such page."), {}};
}

HttpResponse Api::addressPage(const HttpRequest &request) const {
    if (lowerCase(request.accept).find("text/html") == std::string::npos) {
        return plain(200, request.peer + '\n');
    }
    return {200, html, webPage(request.peer, m_config.countryOf(request.peer)), {}};
}

HttpResponse Api::command(const Target &target, const std::string &name, const std::string &peer) {
    if (name == "MRTSL") {
        return plain(200, serverList(target, peer));
    }
    if (name == "VPNC") {
        return plain(200, vpnConfiguration(target));
    }
    if (name.rfind("phs", 0) == 0) {
        return plain(200, statusAnswer(0, peer));
    }
    return plain(400, "ERR: Unknown command");
}

std::string Api::serverList(const Target &target, const std::string &peer) {
    if (!arguments(target, {"ver", "device", "systamp", "uniqueid"})) {
        return statusAnswer(1, peer);
    }
    return serverListAnswer(m_config, offeredGroups(), peer, m_users.issue());
}

/// A group without an available address is no location.
std::vector<Group> Api::offeredGroups() const {
    if (m_draining()) {
        return {};
    }
    std::vector<Group> groups = m_config.groups;
    if (m_offered) {
        for (Group &group : groups) {
            std::erase_if(group.addresses, [this](Ipv4Address address) { return !m_offered(address); });
        }
        std::erase_if(groups, [](const Group &group) { return group.addresses.empty(); });
    }
    return groups;
}

std::string Api::vpnConfiguration(const Target &target) {
    const auto values =
        arguments(target, {"ver", "device", "server", "desiredip", "sessid", "systamp", "uniqueid", "proto"});
    if (!values) {
        return parsingError;
    }
    const auto desired = Ipv4Address::parse((*values)[3]);
    const std::string proto = lowerCase((*values)[7]);
    if (!isDigits((*values)[1]) || !isDigits((*values)[2]) || !desired ||
        (proto != "udp" && proto != "tcp")) {
        return parsingError;
    }
    const auto &server = m_config.vpn.server(proto == "udp" ? Protocol::Udp : Protocol::Tcp);
    if (!server) {
        return "ERR: Protocol not offered";
    }
    if (!m_users.find((*values)[4])) {
        return "ERR: Unknown or expired session";
    }
    const bool available = m_config.groupOf(*desired) != nullptr && (!m_offered || m_offered(*desired));
    if (m_draining() || !available) {
        return "ERR: Address not available";
    }
    const auto grant = m_users.grant((*values)[4], *desired, server->protocol);
    std::string text = clientConfiguration(m_config.vpn, *server, *desired, m_caPem);
    if (grant && m_authority != nullptr) {
        text += m_authority->clientBlocks(*grant);
    }
    if (m_controlKey != nullptr) {
        text += m_controlKey->clientBlock(std::chrono::system_clock::now());
    }
    return configurationAnswer(text);
}

} // namespace quorvane::service
