#include "EtcdMessages.h"

#include "Base64.h"

#include <charconv>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace quorvane::service::etcd {

namespace {

using nlohmann::json;

constexpr std::size_t maximumErrorText = 200;

/// Thrown while an answer is read.
class Malformed : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The first key that does not begin with the prefix.
std::string endOf(std::string_view prefix) {
    std::string end(prefix);
    while (!end.empty() && static_cast<unsigned char>(end.back()) == 0xff) {
        end.pop_back();
    }
    if (end.empty()) {
        return std::string(1, '\0'); // up to the last key
    }
    ++end.back();
    return end;
}

/// Absent, or a number as a JSON string or number that is not negative. etcd leaves out zeros.
std::int64_t number(const json &object, const char *key) {
    const auto found = object.find(key);
    if (found == object.end()) {
        return 0;
    }
    std::int64_t value = -1;
    if (found->is_number_integer()) {
        const auto fits = found->is_number_unsigned()
                              ? found->get<std::uint64_t>() <= static_cast<std::uint64_t>(INT64_MAX)
                              : found->get<std::int64_t>() >= 0;
        value = fits ? found->get<std::int64_t>() : -1;
    } else if (found->is_string()) {
        const auto &text = found->get_ref<const std::string &>();
        const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
        if (read.ec != std::errc() || read.ptr != text.data() + text.size()) {
            value = -1;
        }
    }
    if (value < 0) {
        throw Malformed(std::string(key) + " is no number");
    }
    return value;
}

bool flag(const json &object, const char *key) {
    const auto found = object.find(key);
    if (found == object.end()) {
        return false;
    }
    if (!found->is_boolean()) {
        throw Malformed(std::string(key) + " is neither true nor false");
    }
    return found->get<bool>();
}

std::string bytes(const json &object, const char *key, std::size_t maximum) {
    const auto found = object.find(key);
    if (found == object.end()) {
        return {};
    }
    auto read = found->is_string() ? bytesInBase64(found->get_ref<const std::string &>()) : std::nullopt;
    if (!read || read->size() > maximum) {
        throw Malformed(std::string(key) + " is no base64, or too long");
    }
    return std::move(*read);
}

const json &part(const json &object, const char *key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_object()) {
        throw Malformed(std::string(key) + " is missing");
    }
    return *found;
}

const json &list(const json &object, const char *key) {
    static const json none = json::array();
    const auto found = object.find(key);
    if (found == object.end()) {
        return none;
    }
    if (!found->is_array()) {
        throw Malformed(std::string(key) + " is no list");
    }
    return *found;
}

std::int64_t revisionOf(const json &answer) {
    return number(part(answer, "header"), "revision");
}

Entry entryOf(const json &object) {
    if (!object.is_object()) {
        throw Malformed("a key is no object");
    }
    Entry entry{bytes(object, "key", maximumKey), bytes(object, "value", maximumValue),
                number(object, "mod_revision")};
    if (entry.key.empty()) {
        throw Malformed("a key is empty");
    }
    return entry;
}

std::vector<Entry> entriesOf(const json &answer) {
    std::vector<Entry> entries;
    for (const json &object : list(answer, "kvs")) {
        entries.push_back(entryOf(object));
    }
    return entries;
}

Event eventOf(const json &object) {
    if (!object.is_object()) {
        throw Malformed("an event is no object");
    }
    const auto type = object.find("type");
    const bool deleted = type != object.end() && *type == "DELETE";
    if (type != object.end() && !deleted && *type != "PUT") {
        throw Malformed("an event of unknown type");
    }
    return {deleted, entryOf(part(object, "kv"))};
}

/// The message of an error, which comes from the server: short, and printable.
std::string errorText(const json &error) {
    const json *text = &error;
    if (error.is_object() && error.contains("message")) {
        text = &error.at("message");
    }
    if (!text->is_string()) {
        return "an error without a text";
    }
    std::string shown = text->get<std::string>().substr(0, maximumErrorText);
    for (char &letter : shown) {
        if (letter < ' ' || letter > '~') {
            letter = '?';
        }
    }
    return shown;
}

/// Calls `read` with the answer, an object that reports no error.
template <typename Answer, typename Read>
Result<Answer> parsed(std::string_view text, const Read &read) {
    if (text.size() > maximumAnswer) {
        return Failure{"an answer is too long"};
    }
    try {
        const json answer = json::parse(text);
        if (!answer.is_object()) {
            return Failure{"an answer is no object"};
        }
        if (const auto error = answer.find("error"); error != answer.end()) {
            return Failure{errorText(*error)};
        }
        return read(answer);
    } catch (const Malformed &malformed) {
        return Failure{std::string("an answer is malformed: ") + malformed.what()};
    } catch (const json::exception &) {
        return Failure{"an answer is malformed: not valid JSON"};
    }
}

LeaseAnswer leaseOf(const json &answer) {
    return {number(answer, "ID"), number(answer, "TTL")};
}

json keyRange(std::string_view prefix) {
    return {{"key", base64Of(prefix)}, {"range_end", base64Of(endOf(prefix))}};
}

json absence(std::string_view key) {
    return {{"result", "EQUAL"}, {"target", "CREATE"}, {"key", base64Of(key)}, {"create_revision", "0"}};
}

} // namespace

std::string rangeRequest(std::string_view prefix) {
    return keyRange(prefix).dump();
}

std::string changesRequest(std::string_view prefix, std::int64_t revision) {
    json request = keyRange(prefix);
    request["keys_only"] = true;
    request["min_mod_revision"] = std::to_string(revision + 1);
    return request.dump();
}

std::string watchRequest(std::string_view prefix, std::int64_t revision) {
    json request = keyRange(prefix);
    request["start_revision"] = std::to_string(revision);
    return json{{"create_request", request}}.dump();
}

std::string putRequest(std::string_view key, std::string_view value, std::int64_t lease) {
    json request = {{"key", base64Of(key)}, {"value", base64Of(value)}};
    if (lease != 0) {
        request["lease"] = std::to_string(lease);
    }
    return request.dump();
}

std::string leaseRequest(std::int64_t seconds) {
    return json{{"TTL", std::to_string(seconds)}}.dump();
}

std::string leaseNumber(std::int64_t id) {
    return json{{"ID", std::to_string(id)}}.dump();
}

std::string claimRequest(std::string_view key, std::string_view value) {
    const json put = {{"request_put", {{"key", base64Of(key)}, {"value", base64Of(value)}}}};
    const json read = {{"request_range", {{"key", base64Of(key)}}}};
    return json{{"compare", json::array({absence(key)})},
                {"success", json::array({put})},
                {"failure", json::array({read})}}
        .dump();
}

std::string deletionRequest(const std::vector<std::string> &keys, std::string_view value,
                            std::string_view absent) {
    json conditions = json::array();
    json deletions = json::array();
    if (!absent.empty()) {
        conditions.push_back(absence(absent));
    }
    for (const std::string &key : keys) {
        conditions.push_back(
            {{"result", "EQUAL"}, {"target", "VALUE"}, {"key", base64Of(key)}, {"value", base64Of(value)}});
        deletions.push_back({{"request_delete_range", {{"key", base64Of(key)}}}});
    }
    return json{{"compare", conditions}, {"success", deletions}}.dump();
}

Result<RangeAnswer> parseRange(std::string_view answer) {
    return parsed<RangeAnswer>(answer, [](const json &object) {
        return RangeAnswer{revisionOf(object), number(object, "count"), entriesOf(object)};
    });
}

Result<WatchAnswer> parseWatch(std::string_view line) {
    return parsed<WatchAnswer>(line, [](const json &object) {
        const json &result = part(object, "result");
        WatchAnswer answer{revisionOf(result), flag(result, "created"), flag(result, "canceled"), {}};
        for (const json &event : list(result, "events")) {
            answer.events.push_back(eventOf(event));
        }
        return answer;
    });
}

Result<LeaseAnswer> parseLease(std::string_view answer) {
    return parsed<LeaseAnswer>(answer, [](const json &object) {
        const LeaseAnswer lease = leaseOf(object);
        if (lease.id == 0) {
            throw Malformed("ID is missing");
        }
        return lease;
    });
}

Result<LeaseAnswer> parseKeptLease(std::string_view line) {
    return parsed<LeaseAnswer>(line, [](const json &object) { return leaseOf(part(object, "result")); });
}

Result<TransactionAnswer> parseTransaction(std::string_view answer) {
    return parsed<TransactionAnswer>(answer, [](const json &object) {
        TransactionAnswer read;
        read.succeeded = flag(object, "succeeded");
        static_cast<void>(revisionOf(object)); // every answer has it
        for (const json &response : list(object, "responses")) {
            if (!response.is_object() || !response.contains("response_range")) {
                continue;
            }
            const auto entries = entriesOf(part(response, "response_range"));
            if (!entries.empty()) {
                read.found = entries.front();
            }
        }
        return read;
    });
}

Result<> parseDone(std::string_view answer) {
    const auto read = parsed<std::int64_t>(answer, revisionOf);
    return read ? Result<>() : Failure{read.error()};
}

} // namespace quorvane::service::etcd
