#include "ManagementParser.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace quorvane::service {

namespace {

using Kind = ManagementEvent::Kind;

constexpr std::array<std::string_view, 4> WantedFields = {"username", "password", "untrusted_ip",
                                                          "untrusted_ip6"};

bool takePrefix(std::string_view &text, std::string_view prefix) {
    if (text.substr(0, prefix.size()) != prefix) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

/// Cuts the text up to the next comma, or all of it, off the front.
std::string_view takeField(std::string_view &text) {
    const auto end = std::min(text.find(','), text.size());
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return field;
}

bool readNumber(std::string_view text, std::uint64_t &number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

std::optional<Kind> clientKind(std::string_view name) {
    if (name == "CONNECT") {
        return Kind::Connect;
    }
    if (name == "REAUTH") {
        return Kind::Reauth;
    }
    if (name == "ESTABLISHED") {
        return Kind::Established;
    }
    if (name == "DISCONNECT") {
        return Kind::Disconnect;
    }
    return std::nullopt;
}

} // namespace

std::string ManagementEvent::field(std::string_view name) const {
    const auto found = fields.find(name);
    return found == fields.end() ? std::string() : found->second;
}

bool ManagementParser::feed(std::string_view bytes) {
    while (!m_broken && !bytes.empty()) {
        const auto end = bytes.find('\n');
        m_rest += bytes.substr(0, end);
        if (m_rest.size() > LongestLine) {
            m_broken = true;
            m_rest.clear();
        } else if (end == std::string_view::npos) {
            break;
        } else {
            if (!m_rest.empty() && m_rest.back() == '\r') {
                m_rest.pop_back();
            }
            line(m_rest);
            m_rest.clear();
            bytes.remove_prefix(end + 1);
        }
    }
    return !m_broken;
}

void ManagementParser::line(std::string_view line) {
    ManagementEvent event;
    if (takePrefix(line, ">CLIENT:")) {
        clientLine(line);
    } else if (takePrefix(line, ">HOLD:")) {
        m_sink(event);
    } else if (takePrefix(line, ">STATE:")) {
        takeField(line); // the time
        event.kind = Kind::State;
        event.text = takeField(line);
        m_sink(event);
    } else if (takePrefix(line, ">FATAL:")) {
        event.kind = Kind::Fatal;
        event.text = line;
        m_sink(event);
    } else if (takePrefix(line, "ERROR:")) {
        event.kind = Kind::Error;
        event.text = line;
        m_sink(event);
    }
}

void ManagementParser::clientLine(std::string_view line) {
    if (takePrefix(line, "ENV,")) {
        environment(line);
        return;
    }
    m_open.reset();
    const auto kind = clientKind(takeField(line));
    if (!kind) {
        return;
    }
    ManagementEvent event;
    event.kind = *kind;
    const bool hasKey = *kind == Kind::Connect || *kind == Kind::Reauth;
    if (readNumber(takeField(line), event.client) && (!hasKey || readNumber(takeField(line), event.key))) {
        m_open = std::move(event);
    }
}

void ManagementParser::environment(std::string_view assignment) {
    if (!m_open) {
        return;
    }
    if (assignment == "END") {
        const ManagementEvent event = std::move(*m_open);
        m_open.reset();
        m_sink(event);
        return;
    }
    const auto equals = assignment.find('=');
    const std::string_view name = assignment.substr(0, equals);
    if (equals != std::string_view::npos &&
        std::find(WantedFields.begin(), WantedFields.end(), name) != WantedFields.end()) {
        m_open->fields.insert_or_assign(std::string(name), std::string(assignment.substr(equals + 1)));
    }
}

} // namespace quorvane::service
