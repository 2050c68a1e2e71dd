#include "ManagementParser.h"

#include "Grant.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace quorvane::service {

namespace {

using Kind = ManagementEvent::Kind;

constexpr std::array<std::string_view, 4> neededFields = {"username", "password", "untrusted_ip",
                                                          "untrusted_ip6"};

bool isNeeded(std::string_view name) {
    const auto &ofGrant = grantVariables();
    return std::find(neededFields.begin(), neededFields.end(), name) != neededFields.end() ||
           std::find(ofGrant.begin(), ofGrant.end(), name) != ofGrant.end();
}

bool removePrefix(std::string_view &text, std::string_view prefix) {
    if (text.substr(0, prefix.size()) != prefix) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

/// Removes the text up to the next comma, or all of it, from the front and returns it.
std::string_view nextField(std::string_view &text) {
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
    while (!m_failed && !bytes.empty()) {
        const auto end = bytes.find('\n');
        m_incompleteLine += bytes.substr(0, end);
        if (m_incompleteLine.size() > maximumLineLength) {
            m_failed = true;
            m_incompleteLine.clear();
        } else if (end == std::string_view::npos) {
            break;
        } else {
            if (!m_incompleteLine.empty() && m_incompleteLine.back() == '\r') {
                m_incompleteLine.pop_back();
            }
            line(m_incompleteLine);
            m_incompleteLine.clear();
            bytes.remove_prefix(end + 1);
        }
    }
    return !m_failed;
}

void ManagementParser::line(std::string_view line) {
    ManagementEvent event;
    if (removePrefix(line, ">CLIENT:")) {
        clientLine(line);
    } else if (removePrefix(line, ">HOLD:")) {
        m_sink(event);
    } else if (removePrefix(line, ">STATE:")) {
        nextField(line); // the time
        event.kind = Kind::State;
        event.text = nextField(line);
        m_sink(event);
    } else if (removePrefix(line, ">FATAL:")) {
        event.kind = Kind::Fatal;
        event.text = line;
        m_sink(event);
    } else if (removePrefix(line, "ERROR:")) {
        event.kind = Kind::Error;
        event.text = line;
        m_sink(event);
    }
}

void ManagementParser::clientLine(std::string_view line) {
    if (removePrefix(line, "ENV,")) {
        environment(line);
        return;
    }
    m_pending.reset();
    const auto kind = clientKind(nextField(line));
    if (!kind) {
        return;
    }
    ManagementEvent event;
    event.kind = *kind;
    const bool hasKey = *kind == Kind::Connect || *kind == Kind::Reauth;
    if (readNumber(nextField(line), event.client) && (!hasKey || readNumber(nextField(line), event.key))) {
        m_pending = std::move(event);
    }
}

void ManagementParser::environment(std::string_view assignment) {
    if (!m_pending) {
        return;
    }
    if (assignment == "END") {
        const ManagementEvent event = std::move(*m_pending);
        m_pending.reset();
        m_sink(event);
        return;
    }
    const auto equals = assignment.find('=');
    const std::string_view name = assignment.substr(0, equals);
    if (equals != std::string_view::npos && isNeeded(name)) {
        m_pending->fields.insert_or_assign(std::string(name), std::string(assignment.substr(equals + 1)));
    }
}

} // namespace quorvane::service
