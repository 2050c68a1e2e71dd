#include "JsonReader.h"

#include <algorithm>

namespace quorvane::service {

namespace {

bool isControl(char character) {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7f;
}

} // namespace

JsonReader::JsonReader(const nlohmann::json &object, std::string where)
    : m_object(object), m_where(std::move(where)) {
    if (!m_object.is_object()) {
        throw ConfigError(m_where.empty() ? "configuration" : m_where, "must be an object");
    }
}

std::string JsonReader::pathOf(const std::string &key) const {
    return m_where.empty() ? key : m_where + '.' + key;
}

void JsonReader::fail(const std::string &key, const std::string &what) const {
    throw ConfigError(pathOf(key), what);
}

bool JsonReader::has(const std::string &key) {
    m_readKeys.insert(key);
    const auto found = m_object.find(key);
    return found != m_object.end() && !found->is_null();
}

const nlohmann::json &JsonReader::required(const std::string &key) {
    if (!has(key)) {
        fail(key, "is missing");
    }
    return m_object.at(key);
}

std::string JsonReader::rawText(const std::string &key) {
    const nlohmann::json &value = required(key);
    if (!value.is_string()) {
        fail(key, "must be a text");
    }
    return value.get<std::string>();
}

std::string JsonReader::text(const std::string &key) {
    std::string text = rawText(key);
    if (text.empty()) {
        fail(key, "must not be empty");
    }
    if (std::any_of(text.begin(), text.end(), isControl)) {
        fail(key, "must not hold control characters");
    }
    return text;
}

std::string JsonReader::text(const std::string &key, const std::string &fallback) {
    return has(key) ? text(key) : fallback;
}

bool JsonReader::boolean(const std::string &key, bool fallback) {
    if (!has(key)) {
        return fallback;
    }
    const nlohmann::json &value = m_object.at(key);
    if (!value.is_boolean()) {
        fail(key, "must be true or false");
    }
    return value.get<bool>();
}

std::uint32_t JsonReader::number(const std::string &key, std::uint32_t minimum, std::uint32_t maximum) {
    const nlohmann::json &value = required(key);
    const bool fits = value.is_number_unsigned() && value.get<std::uint64_t>() >= minimum &&
                      value.get<std::uint64_t>() <= maximum;
    if (!fits) {
        fail(key,
             "must be a whole number from " + std::to_string(minimum) + " to " + std::to_string(maximum));
    }
    return static_cast<std::uint32_t>(value.get<std::uint64_t>());
}

std::uint32_t JsonReader::number(const std::string &key, std::uint32_t minimum, std::uint32_t maximum,
                                 std::uint32_t fallback) {
    return has(key) ? number(key, minimum, maximum) : fallback;
}

Ipv4Network JsonReader::network(const std::string &key) {
    const auto network = Ipv4Network::parse(text(key));
    if (!network) {
        fail(key, "must be a network such as 10.8.0.0/16, with no host bits set");
    }
    return *network;
}

const nlohmann::json *JsonReader::list(const std::string &key) {
    if (!has(key)) {
        return nullptr;
    }
    const nlohmann::json &value = m_object.at(key);
    if (!value.is_array()) {
        fail(key, "must be a list");
    }
    return &value;
}

std::vector<std::string> JsonReader::texts(const std::string &key) {
    std::vector<std::string> texts;
    const nlohmann::json *values = list(key);
    for (std::size_t i = 0; values != nullptr && i < values->size(); ++i) {
        const nlohmann::json &value = (*values)[i];
        if (!value.is_string() || value.get_ref<const std::string &>().empty()) {
            fail(key + '[' + std::to_string(i) + ']', "must be a text that is not empty");
        }
        texts.push_back(value.get<std::string>());
    }
    return texts;
}

std::vector<Ipv4Address> JsonReader::addresses(const std::string &key) {
    std::vector<Ipv4Address> addresses;
    for (const std::string &text : texts(key)) {
        const auto address = Ipv4Address::parse(text);
        if (!address) {
            fail(key + '[' + std::to_string(addresses.size()) + ']', "must be an IPv4 address");
        }
        addresses.push_back(*address);
    }
    return addresses;
}

std::vector<Ipv4Network> JsonReader::networks(const std::string &key) {
    std::vector<Ipv4Network> networks;
    for (const std::string &text : texts(key)) {
        const auto network = Ipv4Network::parse(text);
        if (!network) {
            fail(key + '[' + std::to_string(networks.size()) + ']',
                 "must be a network such as 10.8.0.0/16, with no host bits set");
        }
        networks.push_back(*network);
    }
    return networks;
}

void JsonReader::object(const std::string &key, const std::function<void(JsonReader &)> &read) {
    JsonReader reader(required(key), pathOf(key));
    read(reader);
    reader.finish();
}

void JsonReader::objects(const std::string &key, const std::function<void(JsonReader &)> &read) {
    const nlohmann::json *values = list(key);
    for (std::size_t i = 0; values != nullptr && i < values->size(); ++i) {
        JsonReader reader((*values)[i], pathOf(key) + '[' + std::to_string(i) + ']');
        read(reader);
        reader.finish();
    }
}

void JsonReader::finish() const {
    for (const auto &item : m_object.items()) {
        if (!m_readKeys.contains(item.key())) {
            fail(item.key(), "is not a known key");
        }
    }
}

} // namespace quorvane::service
