#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quorvane::guard {

/// One directive of an OpenVPN configuration, as OpenVPN understands it.
struct Directive {
    std::size_t line = 0; ///< where it begins, from 1
    std::vector<std::string>
        words; ///< the name without leading dashes or angle brackets, then its parameters
    std::optional<std::string> block; ///< the lines of an inline block, each with its line feed

    const std::string &name() const { return words.front(); }
};

/// Why a configuration is not used; line 0 stands for the whole file.
struct Refusal {
    std::size_t line = 0;
    std::string reason;

    /// One plain line for the log, without a line feed.
    std::string text() const;
};

/// The largest configuration that is looked at, in bytes.
constexpr std::size_t LargestConfiguration = 128 * 1024;

/// Takes a configuration apart by OpenVPN's own rules: comments, both kinds of quotes, inline blocks, a byte
/// order mark, "--" before a name. Where OpenVPN is lax or easily misread (bytes that end a text early, lines
/// longer than its buffer, backslashes, text after an end tag) the configuration is refused instead.
std::variant<std::vector<Directive>, Refusal> parse(std::string_view text);

/// A text for a log line: printable, short, in double quotes.
std::string shown(std::string_view text);

} // namespace quorvane::guard
