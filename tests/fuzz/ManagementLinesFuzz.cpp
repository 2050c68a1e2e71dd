#include "Fuzz.h"
#include "core/Grant.h"
#include "core/ManagementParser.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace {

using quorvane::service::Grant;
using quorvane::service::ManagementEvent;
using quorvane::service::ManagementParser;
using Kind = ManagementEvent::Kind;

struct Reading {
    std::vector<ManagementEvent> events;
    bool accepted = true;
};

/// Feeds the stream in parts of the given size.
Reading readInParts(std::string_view stream, std::size_t part) {
    Reading reading;
    ManagementParser parser([&reading](const ManagementEvent &event) { reading.events.push_back(event); });
    for (std::size_t at = 0; at < stream.size(); at += part) {
        const bool accepted = parser.feed(stream.substr(at, part));
        must(reading.accepted || !accepted, "a stream that was refused stays refused");
        reading.accepted = accepted;
    }
    return reading;
}

bool same(const ManagementEvent &a, const ManagementEvent &b) {
    return std::tie(a.kind, a.client, a.key, a.fields, a.text) ==
           std::tie(b.kind, b.client, b.key, b.fields, b.text);
}

using Variables = std::map<std::string, std::string, std::less<>>;

std::optional<Grant> grantIn(const Variables &variables) {
    return quorvane::service::grantOf([&variables](std::string_view name) {
        const auto found = variables.find(name);
        return found == variables.end() ? std::string() : found->second;
    });
}

void checkGrant(const Variables &fields) {
    const auto grant = grantIn(fields);
    if (!grant) {
        return;
    }
    Variables written;
    for (const auto &attribute : quorvane::service::subjectOf(*grant)) {
        written.emplace(std::string("X509_0_") + attribute.name, attribute.text);
    }
    must(grantIn(written) == grant, "a grant that is written again is read as before");
    must(written.at("X509_0_CN") == fields.at("X509_0_CN"), "the user of a grant is kept as it is");
}

std::set<std::string_view> wantedFields() {
    std::set<std::string_view> wanted{"username", "password", "untrusted_ip", "untrusted_ip6"};
    wanted.insert(quorvane::service::grantVariables().begin(), quorvane::service::grantVariables().end());
    return wanted;
}

void checkEvent(const ManagementEvent &event) {
    static const auto wanted = wantedFields();
    checkGrant(event.fields);
    for (const auto &[name, value] : event.fields) {
        must(wanted.count(name) == 1, "only the fields that are needed are kept");
        must(value.find('\n') == std::string::npos, "a field is one line");
        must(event.field(name) == value, "field() returns the value");
    }
    must(event.text.find('\n') == std::string::npos, "an event's text is one line");
    const bool login = event.kind == Kind::Connect || event.kind == Kind::Reauth;
    const bool client = login || event.kind == Kind::Established || event.kind == Kind::Disconnect;
    must(login || event.key == 0, "only a login has a key number");
    must(client || (event.client == 0 && event.fields.empty()), "only a client's event has its number");
    must(!client || event.text.empty(), "a client's event has no text");
    must(event.kind != Kind::State || event.text.find(',') == std::string::npos, "a state is one field");
}

bool hasLongLine(std::string_view stream) {
    while (!stream.empty()) {
        const auto end = std::min(stream.find('\n'), stream.size());
        if (end > ManagementParser::maximumLineLength) {
            return true;
        }
        stream.remove_prefix(std::min(end + 1, stream.size()));
    }
    return false;
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const Reading whole = readInParts(bytes, bytes.size() + 1);
    std::for_each(whole.events.begin(), whole.events.end(), checkEvent);
    must(whole.accepted != hasLongLine(bytes),
         "a line beyond the limit, and nothing else, refuses the stream");
    const auto lines = static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
    must(whole.events.size() <= lines, "an event has a line of its own");
    for (const std::size_t part : {std::size_t{1}, std::size_t{7}, std::size_t{4096}}) {
        const Reading divided = readInParts(bytes, part);
        must(divided.accepted == whole.accepted,
             "the division of the stream does not change whether it is accepted");
        must(std::equal(divided.events.begin(), divided.events.end(), whole.events.begin(),
                        whole.events.end(), same),
             "the division of the stream does not change the events");
    }
}
