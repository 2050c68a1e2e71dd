#include "Base64.h"

#include <cstdint>

namespace quorvane::service {

namespace {

constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t groupLength = 4;

} // namespace

std::string base64Of(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * groupLength);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::string_view group = bytes.substr(i, 3);
        std::uint32_t bits = 0;
        for (std::size_t j = 0; j < 3; ++j) {
            bits = bits << 8 | (j < group.size() ? static_cast<unsigned char>(group[j]) : 0U);
        }
        for (std::size_t j = 0; j < groupLength; ++j) {
            text += j <= group.size() ? digits[bits >> (18 - 6 * j) & 63] : '=';
        }
    }
    return text;
}

std::optional<std::string> bytesInBase64(std::string_view text) {
    if (text.size() % groupLength != 0) {
        return std::nullopt;
    }
    std::string bytes;
    bytes.reserve(text.size() / groupLength * 3);
    for (std::size_t i = 0; i < text.size(); i += groupLength) {
        std::string_view group = text.substr(i, groupLength);
        if (i + groupLength == text.size()) {
            group = group.substr(0, group.find_last_not_of('=') + 1);
        }
        if (group.size() < 2) {
            return std::nullopt;
        }
        std::uint32_t bits = 0;
        for (std::size_t j = 0; j < groupLength; ++j) {
            const std::size_t digit = j < group.size() ? digits.find(group[j]) : 0;
            if (digit == std::string_view::npos) {
                return std::nullopt;
            }
            bits = bits << 6 | static_cast<std::uint32_t>(digit);
        }
        const std::size_t length = group.size() - 1;
        for (std::size_t j = 0; j < 3; ++j) {
            const auto byte = static_cast<char>(bits >> (16 - 8 * j) & 255);
            if (j < length) {
                bytes += byte;
            } else if (byte != 0) {
                return std::nullopt; // bits that the encoder leaves 0
            }
        }
    }
    return bytes;
}

} // namespace quorvane::service
