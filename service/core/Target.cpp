#include "Target.h"

#include <algorithm>

namespace quorvane::service {

namespace {

int hexDigit(char character) {
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    if (character >= 'a' && character <= 'f') {
        return character - 'a' + 10;
    }
    if (character >= 'A' && character <= 'F') {
        return character - 'A' + 10;
    }
    return -1;
}

bool isAllowedInTarget(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte > 0x20 && byte != 0x7f && byte != '#';
}

} // namespace

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            decoded += text[i];
            continue;
        }
        const int high = i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
        const int low = i + 2 < text.size() ? hexDigit(text[i + 2]) : -1;
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        decoded += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return decoded;
}

std::optional<Target> Target::parse(std::string_view raw) {
    if (raw.empty() || raw.front() != '/' || !std::all_of(raw.begin(), raw.end(), isAllowedInTarget)) {
        return std::nullopt;
    }
    const auto mark = raw.find('?');
    auto path = percentDecoded(raw.substr(0, mark));
    if (!path) {
        return std::nullopt;
    }
    Target target;
    target.m_path = std::move(*path);
    std::string_view query = mark == std::string_view::npos ? std::string_view() : raw.substr(mark + 1);
    while (!query.empty()) {
        const auto end = std::min(query.find('&'), query.size());
        const std::string_view parameter = query.substr(0, end);
        query.remove_prefix(std::min(end + 1, query.size()));
        if (parameter.empty()) {
            continue;
        }
        const auto equals = std::min(parameter.find('='), parameter.size());
        auto key = percentDecoded(parameter.substr(0, equals));
        auto value = percentDecoded(parameter.substr(std::min(equals + 1, parameter.size())));
        if (!key || !value) {
            return std::nullopt;
        }
        target.m_parameters.emplace_back(std::move(*key), std::move(*value));
    }
    return target;
}

bool Target::has(std::string_view key) const {
    return std::any_of(m_parameters.begin(), m_parameters.end(),
                       [key](const auto &parameter) { return parameter.first == key; });
}

std::optional<std::string> Target::last(std::string_view key) const {
    const auto found = std::find_if(m_parameters.rbegin(), m_parameters.rend(),
                                    [key](const auto &parameter) { return parameter.first == key; });
    return found == m_parameters.rend() ? std::nullopt : std::optional(found->second);
}

} // namespace quorvane::service
