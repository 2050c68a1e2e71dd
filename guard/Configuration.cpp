#include "Configuration.h"

namespace quorvane::guard {

namespace {

/// OpenVPN reads lines into a buffer of this many bytes, the line feed included, and goes on in the middle of
/// a longer one as if a new line began there.
constexpr std::size_t LineBuffer = 255;
constexpr std::size_t MostWords = 8;
constexpr std::size_t MostShown = 40;

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

bool isBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r';
}

bool isPrintable(char character) {
    return character == '\t' || (character >= ' ' && character <= '~');
}

struct Refused {
    Refusal why;
};

/// Hands out the lines of a text, without their line feeds; each is checked for what no line may hold.
class Lines {
public:
    explicit Lines(std::string_view text) : m_rest(text) {
        if (m_rest.starts_with(ByteOrderMark)) {
            m_rest.remove_prefix(ByteOrderMark.size());
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
        if (line.size() >= LineBuffer) {
            fail("the line is too long");
        }
        if (line.find('\0') != std::string_view::npos) {
            fail("the line holds a zero byte");
        }
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        return true;
    }

    std::size_t number() const { return m_number; }

    [[noreturn]] void fail(const std::string &reason) const { throw Refused{{m_number, reason}}; }

    void requirePrintable(char character) const {
        if (!isPrintable(character)) {
            fail("the line holds a byte that is not a printable character");
        }
    }

private:
    std::string_view m_rest;
    std::size_t m_number = 0;
};

/// One word from the start of `rest`, which is not blank there; what is left stays in `rest`.
std::string takeWord(const Lines &lines, std::string_view &rest) {
    const char quote = rest.front() == '"' || rest.front() == '\'' ? rest.front() : '\0';
    std::size_t at = quote == '\0' ? 0 : 1;
    std::string word;
    for (; at < rest.size(); ++at) {
        const char character = rest[at];
        if (quote == '\0' ? isBlank(character) : character == quote) {
            break;
        }
        lines.requirePrintable(character);
        if (character == '\\') {
            lines.fail("a backslash stands outside of a comment");
        }
        word += character;
    }
    if (quote != '\0' && at == rest.size()) {
        lines.fail("a quotation is not closed");
    }
    // The closing quote, or the blank, ends the word; another may follow a quote at once.
    rest.remove_prefix(at == rest.size() ? at : at + 1);
    return word;
}

std::vector<std::string> wordsOf(const Lines &lines, std::string_view line) {
    std::vector<std::string> words;
    while (true) {
        while (!line.empty() && isBlank(line.front())) {
            line.remove_prefix(1);
        }
        if (line.empty() || line.front() == '#' || line.front() == ';') {
            return words;
        }
        if (words.size() == MostWords) {
            lines.fail("the line has too many words");
        }
        words.push_back(takeWord(lines, line));
    }
}

std::string takeBlock(Lines &lines, const std::string &name) {
    const std::string endTag = "</" + name + ">";
    std::string block;
    std::string_view line;
    const std::size_t begun = lines.number();
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
                lines.fail("text follows the end tag " + shown(endTag));
            }
            return block;
        }
        block.append(line).append("\n");
    }
    throw Refused{{begun, "the end tag " + shown(endTag) + " is missing"}};
}

Directive directiveOf(Lines &lines, std::vector<std::string> words) {
    Directive directive{lines.number(), std::move(words), std::nullopt};
    std::string &name = directive.words.front();
    if (name.size() >= 3 && name.starts_with("--")) {
        name.erase(0, 2);
    }
    if (directive.words.size() == 1 && name.size() >= 2 && name.starts_with('<') && name.ends_with('>')) {
        name = name.substr(1, name.size() - 2);
        directive.block = takeBlock(lines, name);
    }
    return directive;
}

} // namespace

std::variant<std::vector<Directive>, Refusal> parse(std::string_view text) {
    if (text.size() > LargestConfiguration) {
        return Refusal{0, "it is too large"};
    }
    try {
        std::vector<Directive> directives;
        Lines lines(text);
        std::string_view line;
        while (lines.next(line)) {
            if (auto words = wordsOf(lines, line); !words.empty()) {
                directives.push_back(directiveOf(lines, std::move(words)));
            }
        }
        return directives;
    } catch (const Refused &refused) {
        return refused.why;
    }
}

std::string shown(std::string_view text) {
    std::string result = "\"";
    for (const char character : text.substr(0, MostShown)) {
        result += isPrintable(character) && character != '\t' && character != '"' ? character : '?';
    }
    return result + (text.size() > MostShown ? "...\"" : "\"");
}

std::string Refusal::text() const {
    return "the configuration is refused: " + (line == 0 ? "" : "line " + std::to_string(line) + ": ") +
           reason;
}

} // namespace quorvane::guard
