#pragma once

#include "Announcement.h"
#include "JsonReader.h"

#include <optional>
#include <string>
#include <string_view>

namespace quorvane::service {

/// Reads an announcement from its JSON object. Throws ConfigError like the reader itself.
[[nodiscard]] Announcement readAnnouncement(JsonReader &reader);

/// Targets are bytes and JSON texts are characters: byte N is written as character U+00NN, as in the request
/// log.
[[nodiscard]] std::string latin1ToUtf8(std::string_view bytes);

/// The reverse. Nothing for a text with other characters, or one that is not UTF-8.
[[nodiscard]] std::optional<std::string> utf8ToLatin1(std::string_view text);

} // namespace quorvane::service
