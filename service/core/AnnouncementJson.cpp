#include "AnnouncementJson.h"

#include "AnnouncedRequests.h"

namespace quorvane::service {

namespace {

std::string readBytes(JsonReader &reader, const std::string &key) {
    auto bytes = utf8ToLatin1(reader.rawText(key));
    if (!bytes || bytes->find('\0') != std::string::npos) {
        reader.fail(key, "must hold characters from U+0001 to U+00FF only, one for each byte");
    }
    return *bytes;
}

} // namespace

std::string latin1ToUtf8(std::string_view bytes) {
    std::string text;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80) {
            text += character;
        } else {
            text += static_cast<char>(0xc0 | (byte >> 6));
            text += static_cast<char>(0x80 | (byte & 0x3f));
        }
    }
    return text;
}

std::optional<std::string> utf8ToLatin1(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x80) {
            bytes += text[i];
            continue;
        }
        const unsigned next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0U;
        if ((byte != 0xc2 && byte != 0xc3) || (next & 0xc0) != 0x80) {
            return std::nullopt;
        }
        bytes += static_cast<char>(((byte & 3U) << 6) | (next & 0x3f));
        ++i;
    }
    return bytes;
}

Announcement readAnnouncement(JsonReader &reader) {
    Announcement announcement;
    announcement.count = reader.number("count", 0, 1000000000, 1);
    const bool hasPattern = reader.has("pattern");
    if (hasPattern == reader.has("target")) {
        reader.fail("target", "exactly one of target and pattern is needed");
    }
    if (!hasPattern) {
        announcement.target = readBytes(reader, "target");
        return announcement;
    }
    announcement.pattern = readBytes(reader, "pattern");
    if (announcement.pattern.empty() || !AnnouncedRequests().announce(announcement)) {
        reader.fail("pattern", "is not a POSIX extended regular expression");
    }
    return announcement;
}

} // namespace quorvane::service
