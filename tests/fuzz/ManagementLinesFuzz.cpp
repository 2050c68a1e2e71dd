#include "Fuzz.h"
#include "core/ManagementParser.h"

#include <algorithm>
#include <set>
#include <string>
#include <tuple>
#include <vector>

using namespace quorvane;

namespace {

using quorvane::service::ManagementEvent;
using quorvane::service::ManagementParser;
using Kind = ManagementEvent::Kind;

struct Reading {
    std::vector<ManagementEvent> events;
    bool trusted = true;
};

/// Feeds the stream in pieces of the given size.
Reading readInPieces(std::string_view stream, std::size_t piece) {
    Reading reading;
    ManagementParser parser([&reading](const ManagementEvent &event) { reading.events.push_back(event); });
    for (std::size_t at = 0; at < stream.size(); at += piece) {
        const bool trusted = parser.feed(stream.substr(at, piece));
        must(reading.trusted || !trusted, "a stream that is not trusted stays so");
        reading.trusted = trusted;
    }
    return reading;
}

bool same(const ManagementEvent &a, const ManagementEvent &b) {
    return std::tie(a.kind, a.client, a.key, a.fields, a.text) ==
           std::tie(b.kind, b.client, b.key, b.fields, b.text);
}

void checkEvent(const ManagementEvent &event) {
    static const std::set<std::string> wanted{"username", "password", "untrusted_ip", "untrusted_ip6"};
    for (const auto &[name, value] : event.fields) {
        must(wanted.count(name) == 1, "only the needed fields are kept");
        must(value.find('\n') == std::string::npos, "a field is one line");
        must(event.field(name) == value, "a field returns its value");
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
        if (end > ManagementParser::LongestLine) {
            return true;
        }
        stream.remove_prefix(std::min(end + 1, stream.size()));
    }
    return false;
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const Reading whole = readInPieces(bytes, bytes.size() + 1);
    std::for_each(whole.events.begin(), whole.events.end(), checkEvent);
    must(whole.trusted != hasLongLine(bytes), "only a line beyond the limit makes the stream untrusted");
    const auto lines = static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
    must(whole.events.size() <= lines, "each event has its own line");
    for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{4096}}) {
        const Reading cut = readInPieces(bytes, piece);
        must(cut.trusted == whole.trusted,
             "the size of the pieces does not change whether the stream is trusted");
        must(std::equal(cut.events.begin(), cut.events.end(), whole.events.begin(), whole.events.end(), same),
             "the size of the pieces does not change the events");
    }
}
