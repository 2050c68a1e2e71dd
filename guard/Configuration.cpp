#include "Configuration.h"

namespace quorvane::guard {

namespace {

/// OpenVPN reads lines into a buffer of this many bytes, the line feed included, and continues in the middle
/// of a longer one as if a new line began there.
constexpr std::size_t lineBufferSize = 255;
constexpr std::size_t maximumTokens = 8;
constexpr std::size_t maximumQuotedLength = 40;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r';
}

bool isPrintable(char character) {
    return character == '\t' || (character >= ' ' && character <= '~');
}

/// Thrown by the functions below; parse() returns the failure.
struct Refused {
    Failure failure;
};

/// Returns the lines of a text one by one, without their line feeds, and refuses the ones that are too
/// long or contain a zero byte.
class Lines {
public:
    Lines(std::string_view text, std::size_t linesBefore) : m_rest(text), m_number(linesBefore) {
        if (m_rest.starts_with(byteOrderMark)) {
            m_rest.remove_prefix(byteOrderMark.size());
            m_markSize = byteOrderMark.size();
        }
    }

    bool next(std::string_view &line) {
        if (m_rest.empty()) {
            return false;
        }
        ++m_number;
        const auto end = m_rest.find('\n');
        line = m_rest.substr(0, end);
        m_rest.remove_prefix(end == std::string_view::npos ? m_rest.size() : end + 1);
        // The byte order mark is in OpenVPN's buffer, too.
        if (m_markSize + line.size() >= lineBufferSize) {
            fail("the line is too long");
        }
        m_markSize = 0;
        if (line.find('\0') != std::string_view::npos) {
            fail("the line contains a zero byte");
        }
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        return true;
    }

    [[nodiscard]] std::size_t number() const { return m_number; }

    [[noreturn]] void fail(const std::string &reason) const { throw Refused{refusal(m_number, reason)}; }

    void requirePrintable(char character) const {
        if (!isPrintable(character)) {
            fail("the line contains a byte that is not a printable character");
        }
    }

private:
    std::string_view m_rest;
    std::size_t m_number;
    std::size_t m_markSize = 0; ///< of the byte order mark that precedes the next line
};

/// Removes one token from the start of `rest`, which does not begin with a blank, and returns it.
std::string readToken(const Lines &lines, std::string_view &rest) {
    const char quote = rest.front() == '"' || rest.front() == '\'' ? rest.front() : '\0';
    std::size_t position = quote == '\0' ? 0 : 1;
    std::string token;
    for (; position < rest.size(); ++position) {
        const char character = rest[position];
        if (quote == '\0' ? isBlank(character) : character == quote) {
            break;
        }
        lines.requirePrintable(character);
        if (character == '\\') {
            lines.fail("a backslash is outside of a comment");
        }
        token += character;
    }
    if (quote != '\0' && position == rest.size()) {
        lines.fail("a quotation is not closed");
    }
    // The closing quote, or the blank, ends the token; the next one may follow a quote without a blank.
    rest.remove_prefix(position == rest.size() ? position : position + 1);
    return token;
}

std::vector<std::string> tokensOf(const Lines &lines, std::string_view line) {
    std::vector<std::string> tokens;
    while (true) {
        while (!line.empty() && isBlank(line.front())) {
            line.remove_prefix(1);
        }
        if (line.empty() || line.front() == '#' || line.front() == ';') {
            return tokens;
        }
        if (tokens.size() == maximumTokens) {
            lines.fail("the line has too many words");
        }
        tokens.push_back(readToken(lines, line));
    }
}

std::string readBlock(Lines &lines, const std::string &name) {
    const std::string endTag = "</" + name + ">";
    std::string block;
    std::string_view line;
    const std::size_t firstLine = lines.number();
    while (lines.next(line)) {
        for (const char character : line) {
            lines.requirePrintable(character);
        }
        std::string_view text = line;
        while (!text.empty() && isBlank(text.front())) {
            text.remove_prefix(1);
        }
        if (text.starts_with(endTag)) {
            text.remove_prefix(endTag.size());
            if (text.find_first_not_of(" \t") != std::string_view::npos) {
                lines.fail("text follows the end tag " + quotedForLog(endTag));
            }
            return block;
        }
        block.append(line).append("\n");
    }
    throw Refused{refusal(firstLine, "the end tag " + quotedForLog(endTag) + " is missing")};
}

Directive directiveOf(Lines &lines, std::vector<std::string> tokens) {
    Directive directive{lines.number(), std::move(tokens), std::nullopt};
    std::string &name = directive.tokens.front();
    if (name.size() >= 3 && name.starts_with("--")) {
        name.erase(0, 2);
    }
    if (directive.tokens.size() == 1 && name.size() >= 2 && name.starts_with('<') && name.ends_with('>')) {
        name = name.substr(1, name.size() - 2);
        directive.block = readBlock(lines, name);
    }
    return directive;
}

Result<std::vector<Directive>> parseLines(Lines lines) {
    try {
        std::vector<Directive> directives;
        std::string_view line;
        while (lines.next(line)) {
            if (auto tokens = tokensOf(lines, line); !tokens.empty()) {
                directives.push_back(directiveOf(lines, std::move(tokens)));
            }
        }
        return directives;
    } catch (const Refused &refused) {
        return refused.failure;
    }
}

} // namespace

Result<std::vector<Directive>> parse(std::string_view text) {
    if (text.size() > maximumConfigurationSize) {
        return refusal(0, "it is too large");
    }
    return parseLines(Lines(text, 0));
}

Result<std::vector<Directive>> parseBlock(const Directive &directive) {
    return parseLines(Lines(directive.block ? *directive.block : std::string_view(), directive.line));
}

Failure refusal(std::size_t line, const std::string &reason) {
    return {"the configuration is refused: " + (line == 0 ? "" : "line " + std::to_string(line) + ": ") +
            reason};
}

std::string quotedForLog(std::string_view text) {
    std::string result = "\"";
    for (const char character : text.substr(0, maximumQuotedLength)) {
        result += isPrintable(character) && character != '\t' && character != '"' ? character : '?';
    }
    return result + (text.size() > maximumQuotedLength ? "...\"" : "\"");
}

} // namespace quorvane::guard
