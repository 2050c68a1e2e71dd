#pragma once

#include "common/Result.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::guard {

/// One directive of an OpenVPN configuration, as OpenVPN understands it.
struct Directive {
    std::size_t line = 0; ///< the line where it begins, from 1
    /// The name without leading dashes or angle brackets, then the parameters; never empty.
    std::vector<std::string> tokens;
    std::optional<std::string> block; ///< the lines of an inline block, each with its line feed

    [[nodiscard]] const std::string &name() const { return tokens.front(); }
};

/// The largest configuration that is parsed, in bytes.
constexpr std::size_t maximumConfigurationSize = 128 * 1024;

/// Parses a configuration by OpenVPN's own rules: comments, both kinds of quotes, inline blocks, a byte order
/// mark, "--" before a name. Where OpenVPN is lax or easily misread (bytes that end a text early, lines
/// longer than its buffer, backslashes, text after an end tag) the configuration is refused instead. An error
/// is a text made by refusal().
Result<std::vector<Directive>> parse(std::string_view text);

/// The directives in an inline block that contains directives of its own. Their lines are those of the whole
/// configuration.
Result<std::vector<Directive>> parseBlock(const Directive &directive);

/// Why a configuration is not used, as one plain line for the log without a line feed. `line` is the line of
/// the configuration, 0 for the whole file.
[[nodiscard]] Failure refusal(std::size_t line, const std::string &reason);

/// A text for a log line: printable, short, in double quotes.
[[nodiscard]] std::string quotedForLog(std::string_view text);

} // namespace quorvane::guard
